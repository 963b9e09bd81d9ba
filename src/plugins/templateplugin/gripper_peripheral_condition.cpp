#include "src/plugins/templateplugin/gripper_peripheral_condition.h"

#include <QEvent>
#include <QIntValidator>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QRegularExpressionValidator>
#include <QTimer>

#include <climits>

#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "platform/iplugin.h"
#include "platform/pluginmanager.h"
#include "src/plugins/templateplugin/common/messagebox.h"
#include "src/plugins/templateplugin/gripper_condition_class.h"
#include "src/plugins/templateplugin/plugin_command_runner.h"
#include "src/plugins/templateplugin/templateplugin.h"
#include "ui_gripper_peripheral_condition.h"

namespace {

const int kHoldIntervalMs = 20;

gripper_peripheral_condition* g_instance = nullptr;

QString plugin_name() {
    return TemplatePlugin::own_name();
}

// The plug-in a step names: this plug-in's own object whatever the host named it, else the
// object of that name.
QObject* plugin_named(const QString& name) {
    if (plugin_name() == name) {
        for (QObject* object : ExtensionSystem::PluginManager::allObjects()) {
            if (nullptr != qobject_cast<TemplatePlugin*>(object)) {
                return object;
            }
        }
    }
    return ExtensionSystem::PluginManager::getObjectByName(name);
}

// The bounds of the field's integer validator; the whole int range without one.
void bounds_of(const QLineEdit* field, int& bottom, int& top) {
    const QIntValidator* validator = qobject_cast<const QIntValidator*>(field->validator());
    bottom = nullptr == validator ? INT_MIN : validator->bottom();
    top = nullptr == validator ? INT_MAX : validator->top();
}

}  // namespace

gripper_peripheral_condition::gripper_peripheral_condition(QWidget* parent)
    : AbstractWidget(parent),
      ui(new Ui::gripper_peripheral_condition),
      hold_ticks_(0),
      hold_increase_(false),
      hold_target_(nullptr),
      hold_timer_(new QTimer(this)),
      control_runner_(new PluginCommandRunner(this)) {
    ui->setupUi(this);
    setup_fields();
    hold_timer_->setObjectName(QStringLiteral("hold_timer_"));
    hold_timer_->setInterval(kHoldIntervalMs);
    connect(hold_timer_, &QTimer::timeout, this, &gripper_peripheral_condition::slot_setParam);
    for (QPushButton* button : {ui->pbn_positionSub, ui->pbn_positionAdd, ui->pbn_forceSub,
                                ui->pbn_forceAdd, ui->pbn_speedSub, ui->pbn_speedAdd}) {
        connect(button, &QPushButton::released, this,
                &gripper_peripheral_condition::slot_operationObjectRelease);
    }
    connect(control_runner_, &PluginCommandRunner::finished, this,
            &gripper_peripheral_condition::slot_controlFinished);
    ask_plugin_config();
    autoResize();
    g_instance = this;
}

gripper_peripheral_condition::~gripper_peripheral_condition() {
    if (this == g_instance) {
        g_instance = nullptr;
    }
    delete ui;
}

gripper_peripheral_condition* gripper_peripheral_condition::instance() {
    return g_instance;
}

void gripper_peripheral_condition::changeEvent(QEvent* event) {
    if (QEvent::LanguageChange == event->type()) {
        ui->retranslateUi(this);
    }
    AbstractWidget::changeEvent(event);
}

// The value fields carry the on-screen keyboard marker; the device id takes 0 to 255 without a
// leading zero.
void gripper_peripheral_condition::setup_fields() {
    for (QLineEdit* field : {ui->le_deviceID, ui->le_position, ui->le_force, ui->le_speed}) {
        field->setWhatsThis(QStringLiteral("1"));
    }
    ui->le_deviceID->setValidator(new QRegularExpressionValidator(
        QRegularExpression(QStringLiteral("^(?!0.)(2[0-4]\\d|25[0-5]|[01]?\\d\\d?)")),
        ui->le_deviceID));
}

void gripper_peripheral_condition::ask_plugin_config() {
    ExtensionSystem::IPlugin* plugin =
        qobject_cast<ExtensionSystem::IPlugin*>(plugin_named(plugin_name()));
    if (nullptr == plugin) {
        GRIPPER_LOG("W", "NULL == plugin");
        return;
    }
    QString answer;
    plugin->pluginCommonInterface(QStringLiteral("get_2_finger_gripper_config_info"), answer);
    init(plugin_name(), answer);
}

void gripper_peripheral_condition::init(const QString& pluginName, const QString& configJson) {
    plugin_config_.insert(pluginName, gripper_condition_Info::fromJson(configJson));
    if (ui->cmb_pluginName->findText(pluginName) < 0) {
        ui->cmb_pluginName->addItem(pluginName);
    }
    if (ui->cmb_pluginName->currentText() == pluginName) {
        on_cmb_pluginName_activated(ui->cmb_pluginName->currentIndex());
    }
}

void gripper_peripheral_condition::on_cmb_pluginName_activated(int index) {
    const QString name = ui->cmb_pluginName->itemText(index);
    if (plugin_config_.contains(name)) {
        show_ranges(plugin_config_.value(name));
    }
}

void gripper_peripheral_condition::show_ranges(const gripper_condition_Info& info) {
    apply_range(ui->le_position, ui->lbl_positionRange, info.position);
    apply_range(ui->le_force, ui->lbl_forceRange, info.force);
    apply_range(ui->le_speed, ui->lbl_speedRange, info.speed);
}

// A quantity the gripper does not have reads -1 and cannot be edited.
void gripper_peripheral_condition::apply_range(QLineEdit* field, QLabel* range_label,
                                               const gripper_condition_Range& range) {
    delete field->validator();
    field->setEnabled(range.enabled);
    if (!range.enabled) {
        field->setValidator(nullptr);
        field->setText(QStringLiteral("-1"));
        range_label->clear();
        return;
    }
    field->setValidator(new QIntValidator(range.min, range.max, field));
    field->setText(QString::number(range.min));
    range_label->setText(QStringLiteral("  %1 ~ %2").arg(range.min).arg(range.max));
}

void gripper_peripheral_condition::updateCondForm(AbsCondInfo* absCond) {
    const gripper_condition_class* record = qobject_cast<gripper_condition_class*>(absCond);
    if (nullptr == record || plugin_name() != record->getCondType()) {
        GRIPPER_LOG("W", "NULL == record");
        return;
    }
    alias_ = record->getAlias();
    const int index = ui->cmb_pluginName->findText(record->getPluginName());
    if (index >= 0) {
        ui->cmb_pluginName->setCurrentIndex(index);
        on_cmb_pluginName_activated(index);
    }
    ui->le_deviceID->setText(QString::number(record->getDeviceID()));
    ui->le_position->setText(QString::number(record->getPosition()));
    ui->le_force->setText(QString::number(record->getForce()));
    ui->le_speed->setText(QString::number(record->getSpeed()));
    ui->chk_isBlock->setChecked(record->isBlock());
}

bool gripper_peripheral_condition::checkCondInfo(const gripper_condition_class& record,
                                                 QString& errorInfo) {
    return plugin_config_.value(record.getPluginName()).check(record, errorInfo);
}

void gripper_peripheral_condition::on_pbn_positionSub_pressed() {
    start_hold(ui->le_position, false);
}

void gripper_peripheral_condition::on_pbn_positionAdd_pressed() {
    start_hold(ui->le_position, true);
}

void gripper_peripheral_condition::on_pbn_forceSub_pressed() {
    start_hold(ui->le_force, false);
}

void gripper_peripheral_condition::on_pbn_forceAdd_pressed() {
    start_hold(ui->le_force, true);
}

void gripper_peripheral_condition::on_pbn_speedSub_pressed() {
    start_hold(ui->le_speed, false);
}

void gripper_peripheral_condition::on_pbn_speedAdd_pressed() {
    start_hold(ui->le_speed, true);
}

// One step at once, then one every 20 ms until the button is released.
void gripper_peripheral_condition::start_hold(QLineEdit* field, bool increase) {
    if (!field->isEnabled()) {
        return;
    }
    hold_ticks_ = 0;
    hold_increase_ = increase;
    hold_target_ = field;
    slot_setParam();
    hold_timer_->start();
}

void gripper_peripheral_condition::slot_setParam() {
    if (nullptr == hold_target_) {
        return;
    }
    if (hold_target_->text().isEmpty()) {
        hold_target_->setText(QStringLiteral("0"));
    }
    int bottom = 0;
    int top = 0;
    bounds_of(hold_target_, bottom, top);
    const int value = hold_target_->text().toInt();
    int next = 0;
    if (hold_increase_) {
        next = value >= top ? top : value + 1;
    } else {
        next = value <= bottom ? bottom : value - 1;
    }
    hold_target_->setText(QString::number(next));
    ++hold_ticks_;
    if (hold_ticks_ * kHoldIntervalMs > 49) {
        hold_ticks_ = 0;
    }
}

void gripper_peripheral_condition::slot_operationObjectRelease() {
    hold_ticks_ = 0;
    hold_timer_->stop();
}

QString gripper_peripheral_condition::condition_json() const {
    QJsonObject object;
    object.insert(QStringLiteral("PluginName"), ui->cmb_pluginName->currentText());
    object.insert(QStringLiteral("DeviceID"), ui->le_deviceID->text());
    object.insert(QStringLiteral("Position"), ui->le_position->text().toInt());
    object.insert(QStringLiteral("Force"), ui->le_force->text().toInt());
    object.insert(QStringLiteral("Speed"), ui->le_speed->text().toInt());
    object.insert(QStringLiteral("IsBlock"), ui->chk_isBlock->isChecked());
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

void gripper_peripheral_condition::on_pbn_confirm_clicked() {
    if (plugin_name() != ExtensionSystem::PluginManager::curCondType()) {
        MessageBox::warning(tr("Condition type is not match"));
        return;
    }
    ExtensionSystem::PluginManager::saveCondInfo(new gripper_condition_class(
        alias_, condition_json(), ui->cmb_pluginName->currentText(),
        ui->le_deviceID->text().toInt(), ui->le_position->text().toInt(),
        ui->le_force->text().toInt(), ui->le_speed->text().toInt(), ui->chk_isBlock->isChecked()));
    MessageBox::information(tr("Condition saved."));
}

void gripper_peripheral_condition::on_pbn_remove_clicked() {
    ExtensionSystem::PluginManager::removeCondItem();
}

// Never blocking; the command runs off the interface thread and its result comes back to
// slot_controlFinished.
void gripper_peripheral_condition::on_pbn_controlGripper_clicked() {
    const QString name = ui->cmb_pluginName->currentText();
    QObject* plugin = plugin_named(name);
    if (nullptr == plugin) {
        MessageBox::warning(tr("%1 plugin does not exist").arg(name));
        return;
    }
    control_runner_->run(plugin, QStringLiteral("set_2_finger_gripper_param|%1,%2,%3,%4,false")
                                     .arg(ui->le_deviceID->text().toInt())
                                     .arg(ui->le_position->text().toInt())
                                     .arg(ui->le_force->text().toInt())
                                     .arg(ui->le_speed->text().toInt()));
}

void gripper_peripheral_condition::slot_controlFinished(bool ok, const QString& answer) {
    if (ok) {
        return;
    }
    slot_operationObjectRelease();
    MessageBox::warning(tr("Call plugin interface failed!                            \n"
                           "Function name : set_2_finger_gripper_param,                    "
                           "        \nerror info : %1")
                            .arg(answer));
}
