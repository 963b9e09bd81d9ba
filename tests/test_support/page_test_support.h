#ifndef TESTS_TEST_SUPPORT_PAGE_TEST_SUPPORT_H
#define TESTS_TEST_SUPPORT_PAGE_TEST_SUPPORT_H

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QtTest>  // with all of QtCore

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "gripper_main/business_logic/gripper_global/gripper_global.h"
#include "gripper_main/userinterface_logic/gripper_setting_widget/gripper_setting_widget.h"
#include "gripper_main/userinterface_logic/gripper_widget/gripper_widget.h"
#include "src/plugins/templateplugin/common/combobox.h"
#include "src/plugins/templateplugin/common/settings.h"
#include "tools/gripper_simulator/simulator.h"

namespace page_test {

// Runs call on a thread of its own, as the pendant's script thread would, while this (the
// interface) thread keeps running its event loop; returns what call returned.
inline bool on_script_thread(const std::function<bool()>& call) {
    std::atomic<bool> done(false);
    bool result = false;
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

// The fixture of a page test: the tab page shown at the design resolution, simulated grippers,
// and the operator's and the script's ways to the page part under test (scope_).
class PageTest : public QObject {
protected:
    // The pendant's settings store in a folder of the test, with the design resolution.
    bool show_page() {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder_.path());
        Settings().setValue(QStringLiteral("Displays/Resolution"), QStringLiteral("1024*768"));
        page_ = new GripperWidget();
        page_->resize(1024, 768);
        page_->show();
        return QTest::qWaitForWindowExposed(page_);
    }
    template <typename T>
    T* find(const char* name) const {
        T* found = scope_->findChild<T*>(QString::fromLatin1(name));
        Q_ASSERT(nullptr != found);
        return found;
    }
    void click(const char* button) { QTest::mouseClick(find<QWidget>(button), Qt::LeftButton); }
    void type_into(const char* line_edit, const QString& text) {
        QLineEdit* edit = find<QLineEdit>(line_edit);
        edit->clear();
        QTest::keyClicks(edit, text);
    }
    // A script connect of gripper to entry index; serial grippers through a link of another
    // name, since a path under /dev/pts stands for the scanned one.
    bool connect_gripper(int index, int gripper) {
        std::vector<std::string> parameters{std::to_string(index)};
        GripperCommunication::CommunicationConnection connection =
            GripperCommunication::CC_TCP_CLIENT;
        if (0 == simulator_.tcp_port(gripper)) {
            const QString link = folder_.filePath(QStringLiteral("gripper%1").arg(gripper));
            QFile::remove(link);
            QFile::link(QString::fromStdString(simulator_.endpoint(gripper)), link);
            parameters.push_back(link.toStdString());
            connection = GripperCommunication::CC_USB_SERIALPORT;
        } else {
            parameters.push_back("127.0.0.1");
            parameters.push_back(std::to_string(simulator_.tcp_port(gripper)));
        }
        return on_script_thread([&] {
                   return GripperSettingWidget::instance()->connect_gripper(connection, parameters);
               }) &&
               nullptr != driver_of(index);
    }

    QTemporaryDir folder_;
    gripper_sim::Simulator simulator_;
    GripperWidget* page_ = nullptr;
    QWidget* scope_ = nullptr;
};

}  // namespace page_test

#endif
