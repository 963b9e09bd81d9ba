#include "gripper_main/userinterface_logic/gripper_link_options/gripper_link_options.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QSettings>
#include <QSignalBlocker>

#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control.h"
#include "src/plugins/templateplugin/common/combobox.h"

namespace {

// The periods offered, the specified one first.
const int32_t PERIODS[] = {GripperLogicControl::DEFAULT_MOVE_PERIOD, 50, 20};
const int PERIOD_COUNT = 3;

// The texts belong to the Setting page's catalogue context.
QString page_text(const char* text) {
    return QCoreApplication::translate("GripperSettingWidget", text);
}

QString period_text(int row) {
    static const char* const TEXTS[PERIOD_COUNT] = {
        QT_TRANSLATE_NOOP("GripperSettingWidget", "100 ms"),
        QT_TRANSLATE_NOOP("GripperSettingWidget", "50 ms"),
        QT_TRANSLATE_NOOP("GripperSettingWidget", "20 ms")};
    return page_text(TEXTS[row]);
}

QSettings* store() {
    return new QSettings(QStringLiteral("orlape"), QStringLiteral("gripper_plugin"));
}

QString key(int index, const char* name) {
    return QStringLiteral("gripper_%1/%2").arg(index).arg(QLatin1String(name));
}

bool stored_reconnect(QSettings& settings, int index) {
    return settings.value(key(index, "reconnect"), false).toBool();
}

int stored_period_row(QSettings& settings, int index) {
    const int32_t period =
        settings.value(key(index, "move_period_ms"), GripperLogicControl::DEFAULT_MOVE_PERIOD)
            .toInt();
    for (int row = 0; row < PERIOD_COUNT; ++row) {
        if (PERIODS[row] == period) {
            return row;
        }
    }
    return 0;
}

}  // namespace

GripperLinkOptions::GripperLinkOptions(QWidget* parent)
    : QWidget(parent),
      check_box_reconnect_(new QCheckBox(this)),
      label_move_period_(new QLabel(this)),
      combo_box_move_period_(new ComboBox(this)),
      index_(-1) {
    check_box_reconnect_->setObjectName(QStringLiteral("check_box_reconnect_"));
    label_move_period_->setObjectName(QStringLiteral("label_move_period_"));
    combo_box_move_period_->setObjectName(QStringLiteral("combo_box_move_period_"));
    for (int row = 0; row < PERIOD_COUNT; ++row) {
        combo_box_move_period_->addItem(QString());
    }
    // Wide enough for the longest period in any language.
    combo_box_move_period_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    retranslate();
    QHBoxLayout* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(check_box_reconnect_);
    layout->addStretch(1);
    layout->addWidget(label_move_period_);
    layout->addWidget(combo_box_move_period_);
    connect(check_box_reconnect_, &QCheckBox::toggled, this,
            &GripperLinkOptions::on_reconnect_toggled);
    connect(combo_box_move_period_, static_cast<void (QComboBox::*)(int)>(&QComboBox::activated),
            this, &GripperLinkOptions::on_period_activated);
    show_device(0);
}

void GripperLinkOptions::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (QEvent::LanguageChange == event->type()) {
        retranslate();
    }
}

void GripperLinkOptions::retranslate() {
    check_box_reconnect_->setText(
        page_text(QT_TRANSLATE_NOOP("GripperSettingWidget", "Reconnect automatically")));
    label_move_period_->setText(
        page_text(QT_TRANSLATE_NOOP("GripperSettingWidget", "Update period while moving")));
    for (int row = 0; row < PERIOD_COUNT; ++row) {
        combo_box_move_period_->setItemText(row, period_text(row));
    }
}

void GripperLinkOptions::show_device(int index) {
    if (index == index_) {
        return;
    }
    index_ = index;
    QScopedPointer<QSettings> settings(store());
    const QSignalBlocker reconnect_blocker(check_box_reconnect_);
    check_box_reconnect_->setChecked(stored_reconnect(*settings, index));
    combo_box_move_period_->setCurrentIndex(stored_period_row(*settings, index));
}

void GripperLinkOptions::apply(int index, GripperLogicControl* driver) {
    if (nullptr == driver) {
        return;
    }
    QScopedPointer<QSettings> settings(store());
    driver->set_move_period(PERIODS[stored_period_row(*settings, index)]);
    driver->set_reconnect(stored_reconnect(*settings, index));
}

void GripperLinkOptions::on_reconnect_toggled(bool checked) {
    QScopedPointer<QSettings> settings(store());
    settings->setValue(key(index_, "reconnect"), checked);
    emit changed(index_);
}

void GripperLinkOptions::on_period_activated(int row) {
    if (row < 0 || row >= PERIOD_COUNT) {
        return;
    }
    QScopedPointer<QSettings> settings(store());
    settings->setValue(key(index_, "move_period_ms"), PERIODS[row]);
    emit changed(index_);
}
