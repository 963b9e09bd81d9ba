#include "src/plugins/templateplugin/templateplugin.h"

#include <QCoreApplication>
#include <QDir>
#include <QReadLocker>
#include <QTranslator>
#include <QWriteLocker>

#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "gripper_main/business_logic/gripper_global/gripper_global.h"
#include "gripper_main/userinterface_logic/gripper_widget/gripper_widget.h"
#include "src/plugins/templateplugin/common/common.h"
#include "src/plugins/templateplugin/common/messagebox.h"
#include "src/plugins/templateplugin/custom_simple_logger.h"
#include "src/plugins/templateplugin/gripper_condition_class.h"
#include "src/plugins/templateplugin/gripper_condition_info.h"
#include "src/plugins/templateplugin/gripper_peripheral_condition.h"

TemplatePlugin::TemplatePlugin()
    : command_running_(false),
      status_lock_(QReadWriteLock::Recursive),
      robot_script_status_(RSS_STOP),
      translator_(new QTranslator(QCoreApplication::instance())),
      page_created_(false) {
    QDir::setCurrent(QCoreApplication::applicationDirPath());
    tr("Peripheral");
    tr("Zanther2F");
    install_output_message();
}

// The page and the translator belong to the host and the application. The message handler is
// handed back, so that no message reaches this library's code once it may be unloaded.
TemplatePlugin::~TemplatePlugin() {
    uninstall_output_message();
}

bool TemplatePlugin::initParms() {
    set_script_status(RSS_RUN);
    GripperGlobal::instance().set_program_state(GripperGlobal::PS_RUNNING);
    return true;
}

bool TemplatePlugin::pausePlugin() {
    set_script_status(RSS_PAUSE);
    pass_command_mutex();
    return true;
}

bool TemplatePlugin::continuePlugin() {
    set_script_status(RSS_RUN);
    return true;
}

bool TemplatePlugin::stopPlugin() {
    set_script_status(RSS_STOP);
    pass_command_mutex();
    GripperGlobal::instance().set_program_state(GripperGlobal::PS_STOPPED);
    return true;
}

// Writes the status and wakes every script command waiting for a move, so that it sees a stop,
// a pause or a resume at once.
void TemplatePlugin::set_script_status(RobotScriptStatus status) {
    {
        QWriteLocker locker(&status_lock_);
        robot_script_status_ = status;
    }
    move_wakeup_.wake();
}

// Orders the caller after an end-of-command signal in progress, without waiting for the command.
void TemplatePlugin::pass_command_mutex() {
    QReadLocker locker(&status_lock_);
    if (command_running_) {
        command_mutex_.lock();
        command_mutex_.unlock();
    }
}

QWidget* TemplatePlugin::createUI(QWidget*) {
    register_simple_logger(custom_simple_logger);
    widget_ = new GripperWidget();
    page_created_ = true;
    return widget_;
}

void TemplatePlugin::enableEdit(const bool& enable) {
    if (widget_.isNull()) {
        GRIPPER_LOG("W", "NULL == widget_");
        return;
    }
    widget_->setEnabled(enable);
}

void TemplatePlugin::setPluginMessageBoxParentWidget(QWidget* parent) {
    MessageBox::s_messageBoxParent = parent;
}

void TemplatePlugin::setPluginSharedFilePath(const QString& path) {
    Common::getCommonHandle()->setSharedFilePath(path);
}

// The catalogues travel in the resources; the pendant's own translator serves the texts.
void TemplatePlugin::loadTranslator(const QString&) {}

QWidget* TemplatePlugin::createCondUI(QWidget* parent) {
    return new gripper_peripheral_condition(parent);
}

void TemplatePlugin::updateCondForm(AbsCondInfo* absCond) {
    gripper_peripheral_condition* editor = gripper_peripheral_condition::instance();
    if (nullptr == editor) {
        GRIPPER_LOG("W", "NULL == gripper_peripheral_condition::instance()");
        return;
    }
    editor->updateCondForm(absCond);
}

QString TemplatePlugin::own_name() {
    return QStringLiteral("Zanther2F");
}

AbsCondInfo* TemplatePlugin::copyAbsCond(AbsCondInfo* srcAbsCond) {
    const gripper_condition_class* source = qobject_cast<gripper_condition_class*>(srcAbsCond);
    if (nullptr == source) {
        GRIPPER_LOG("W", "NULL == source");
        return nullptr;
    }
    return new gripper_condition_class(*source);
}

bool TemplatePlugin::checkCondInfo(AbsCondInfo* absCondInfo, QString& errorInfo) {
    const gripper_condition_class* record = qobject_cast<gripper_condition_class*>(absCondInfo);
    if (nullptr == record) {
        GRIPPER_LOG("W", "NULL == record");
        return false;
    }
    gripper_peripheral_condition* editor = gripper_peripheral_condition::instance();
    if (nullptr == editor) {
        // No editor is open: the ranges this plug-in reports apply to its own records.
        const gripper_condition_Info info =
            own_name() == record->getPluginName()
                ? gripper_condition_Info::fromJson(gripperUiConfig())
                : gripper_condition_Info();
        return info.check(*record, errorInfo);
    }
    return editor->checkCondInfo(*record, errorInfo);
}

AbsCondInfo* TemplatePlugin::xmlInfoToCondInfo(QString alias, QString xmlInfo) {
    return gripper_condition_class::xmlInfo2CondInfo(alias, xmlInfo);
}

QString TemplatePlugin::condInfo2ScriptInfo(AbsCondInfo* absCondInfo) {
    return gripper_condition_class::condInfo2ScriptInfo(absCondInfo);
}
