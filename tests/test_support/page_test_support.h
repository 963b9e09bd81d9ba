#ifndef TESTS_TEST_SUPPORT_PAGE_TEST_SUPPORT_H
#define TESTS_TEST_SUPPORT_PAGE_TEST_SUPPORT_H

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QListWidget>
#include <QSettings>
#include <QStringList>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "gripper_main/business_logic/gripper_global/gripper_global.h"
#include "gripper_main/userinterface_logic/gripper_setting_widget/gripper_setting_widget.h"
#include "src/plugins/templateplugin/common/combobox.h"
#include "src/plugins/templateplugin/common/settings.h"

namespace page_test {

// The pendant's settings store in a folder of the test, with the design resolution.
inline void use_design_resolution(const QTemporaryDir& folder) {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    Settings().setValue(QStringLiteral("Displays/Resolution"), QStringLiteral("1024*768"));
}

// Runs call on a thread of its own, as the pendant's script thread would, while this (the
// interface) thread keeps running its event loop; returns what call returned.
template <typename Call>
auto on_script_thread(Call call) -> decltype(call()) {
    std::atomic<bool> done(false);
    decltype(call()) result{};
    std::thread script([&] {
        result = call();
        done = true;
    });
    QElapsedTimer timer;
    timer.start();
    while (!done && timer.elapsed() < 30000) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    script.join();
    return result;
}

// Picks entry index of a combo box of the pages the way an operator does: open the list, click
// the entry.
inline bool pick(QComboBox* combo, int index) {
    ComboBox* ours = qobject_cast<ComboBox*>(combo);
    if (nullptr == ours || index < 0 || index >= ours->count()) {
        return false;
    }
    QTest::mouseClick(ours, Qt::LeftButton);
    QListWidget* list = ours->popupList();
    if (!list->isVisible()) {
        return false;
    }
    QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier,
                      list->visualItemRect(list->item(index)).center());
    return ours->currentIndex() == index && !list->isVisible();
}

inline QStringList items(QComboBox* combo) {
    QStringList texts;
    for (int index = 0; index < combo->count(); ++index) {
        texts << combo->itemText(index);
    }
    return texts;
}

inline GripperLogicControl* driver_of(int index) {
    GripperDevice* device = GripperGlobal::instance().get_device(static_cast<uint32_t>(index));
    return nullptr != device ? device->gripper_abstract_control_ : nullptr;
}

// Disconnects every connected gripper of the registry, on this (the interface) thread.
inline void disconnect_all() {
    const int count = static_cast<int>(GripperGlobal::instance().vector_device().size());
    for (int index = 0; index < count; ++index) {
        if (nullptr != driver_of(index)) {
            GripperSettingWidget::instance()->disconnect_gripper(index);
        }
    }
}

// Every text a label showed, in order, sampled between the events of the interface thread.
class LabelHistory {
public:
    explicit LabelHistory(QLabel* label) {
        QObject::connect(&timer_, &QTimer::timeout, [this, label] {
            if (texts_.isEmpty() || texts_.last() != label->text()) {
                texts_ << label->text();
            }
        });
        timer_.start(0);
    }
    void clear() { texts_.clear(); }
    // True when expected appear in this order (others may come between).
    bool saw_in_order(const QStringList& expected) const {
        int next = 0;
        for (const QString& text : texts_) {
            next += next < expected.size() && text == expected.at(next) ? 1 : 0;
        }
        return next == expected.size();
    }

private:
    QTimer timer_;
    QStringList texts_;
};

}  // namespace page_test

#endif
