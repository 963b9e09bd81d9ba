// The string commands of robot scripts: parsing, dispatch and the answer texts.
#include <QJsonDocument>
#include <QJsonObject>
#include <QMutexLocker>
#include <QWriteLocker>

#include "gripper/gripper_common/object_keeper/object_keeper.h"
#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "src/plugins/templateplugin/script_command.h"
#include "src/plugins/templateplugin/templateplugin.h"

namespace {

const QString kAnswerNo = QStringLiteral("i | 0");
const QString kAnswerYes = QStringLiteral("i | 1");

QString flag_answer(bool yes) {
    return yes ? kAnswerYes : kAnswerNo;
}

// The block flag must be spelt "true" or "false"; both values wait for the move.
bool valid_block_flag(const QString& block_str) {
    if (QStringLiteral("true") != block_str && QStringLiteral("false") != block_str) {
        GRIPPER_LOG("W", "\"true\" != block_str");
        return false;
    }
    return true;
}

}  // namespace

const TemplatePlugin::CommandEntry TemplatePlugin::kCommands[] = {
    {"gripper_connect_tcp", &TemplatePlugin::run_connect_tcp},
    {"gripper_connect_usb", &TemplatePlugin::run_connect_usb},
    {"gripper_scan", &TemplatePlugin::run_scan},
    {"gripper_active", &TemplatePlugin::run_active},
    {"set_gripper_position", &TemplatePlugin::run_set_position},
    {"set_gripper_force", &TemplatePlugin::run_set_force},
    {"set_gripper_speed", &TemplatePlugin::run_set_speed},
    {"gripper_isConnect", &TemplatePlugin::run_is_connect},
    {"gripper_isActivate", &TemplatePlugin::run_is_activate},
    {"get_gripper_status", &TemplatePlugin::run_get_status},
    {"get_gripper_position", &TemplatePlugin::run_get_position},
    {"gripper_isGrip", &TemplatePlugin::run_is_grip},
    {"gripper_isArrive", &TemplatePlugin::run_is_arrive},
    {"gripper_isDrop", &TemplatePlugin::run_is_drop},
    {"gripper_disconnect", &TemplatePlugin::run_disconnect},
    {"get_2_finger_gripper_config_info", &TemplatePlugin::run_config_info},
    {"set_2_finger_gripper_param", &TemplatePlugin::run_set_param},
};

TemplatePlugin::CommandHandler TemplatePlugin::handler_of(const QString& name) {
    for (const CommandEntry& entry : kCommands) {
        if (QLatin1String(entry.name) == name) {
            return entry.handler;
        }
    }
    return nullptr;
}

bool TemplatePlugin::pluginCommonInterface(const QString& in, QString& out) {
    out = kAnswerNo;
    const ScriptCommand command(in);
    const CommandHandler handler = handler_of(command.name());
    if (nullptr == handler) {
        return false;
    }
    set_command_running(true);
    bool result = false;
    {
        // The drivers and device records the command reads stay allocated until it returns.
        const ObjectKeeper::Section section;
        result = (this->*handler)(command, out);
    }
    finish_command();
    return result;
}

void TemplatePlugin::set_command_running(bool running) {
    QWriteLocker locker(&status_lock_);
    command_running_ = running;
}

void TemplatePlugin::finish_command() {
    {
        QMutexLocker locker(&command_mutex_);
        command_finished_.wakeOne();
    }
    set_command_running(false);
}

bool TemplatePlugin::run_connect_tcp(const ScriptCommand& command, QString&) {
    if (!mode_connect(command.device_index(), QStringLiteral("TCP_CLIENT"), command.field(1))) {
        GRIPPER_LOG("W", "!mode_connect(TCP_CLIENT, connect_parameters)");
    }
    return true;
}

bool TemplatePlugin::run_connect_usb(const ScriptCommand& command, QString&) {
    if (!mode_connect(command.device_index(), QStringLiteral("USB_SERIAL"), command.field(1))) {
        GRIPPER_LOG("W", "!mode_connect(USB_SERIAL, connect_parameters)");
    }
    return true;
}

bool TemplatePlugin::run_scan(const ScriptCommand&, QString&) {
    if (!device_scan()) {
        GRIPPER_LOG("W", "!device_scan()");
    }
    return true;
}

bool TemplatePlugin::run_active(const ScriptCommand& command, QString&) {
    if (!set_activate(command.device_index())) {
        GRIPPER_LOG("W", "!set_activate()");
    }
    return true;
}

bool TemplatePlugin::run_set_position(const ScriptCommand& command, QString&) {
    if (!valid_block_flag(command.field(2))) {
        return false;
    }
    if (!set_position(command.device_index(), command.number(1), true)) {
        GRIPPER_LOG("W", "!set_position(position)");
    }
    return true;
}

bool TemplatePlugin::run_set_force(const ScriptCommand& command, QString&) {
    if (!set_force(command.device_index(), command.number(1))) {
        GRIPPER_LOG("W", "!set_force(force)");
    }
    return true;
}

// Accepted and answered without touching any gripper.
bool TemplatePlugin::run_set_speed(const ScriptCommand&, QString&) {
    return true;
}

bool TemplatePlugin::run_is_connect(const ScriptCommand& command, QString& out) {
    out = flag_answer(is_connect(command.device_index()));
    GRIPPER_LOG("W", "retValueOrError = %s", out.toUtf8().constData());
    return true;
}

bool TemplatePlugin::run_is_activate(const ScriptCommand& command, QString& out) {
    out = flag_answer(is_activate(command.device_index()));
    return true;
}

bool TemplatePlugin::run_get_status(const ScriptCommand& command, QString& out) {
    out = QStringLiteral("i | %1").arg(get_status(command.device_index()));
    return true;
}

bool TemplatePlugin::run_get_position(const ScriptCommand& command, QString& out) {
    out = QStringLiteral("i|%1").arg(get_position(command.device_index()));
    return true;
}

bool TemplatePlugin::run_is_grip(const ScriptCommand& command, QString& out) {
    out = flag_answer(is_gripped(command.device_index()));
    return true;
}

bool TemplatePlugin::run_is_arrive(const ScriptCommand& command, QString& out) {
    out = flag_answer(is_arrivate(command.device_index()));
    return true;
}

bool TemplatePlugin::run_is_drop(const ScriptCommand& command, QString& out) {
    out = flag_answer(is_dropped(command.device_index()));
    return true;
}

bool TemplatePlugin::run_disconnect(const ScriptCommand& command, QString&) {
    if (!mode_disconnect(command.device_index())) {
        GRIPPER_LOG("W", "!mode_disconnect(deviceId)");
    }
    return true;
}

bool TemplatePlugin::run_config_info(const ScriptCommand&, QString& out) {
    out = gripperUiConfig();
    return true;
}

// Force first; a refused force skips the move. The speed field is read and not used.
bool TemplatePlugin::run_set_param(const ScriptCommand& command, QString&) {
    if (!valid_block_flag(command.field(4))) {
        return false;
    }
    const int index = command.device_index();
    if (!set_force(index, command.number(2))) {
        GRIPPER_LOG("W", "set_force(force)");
        return true;
    }
    if (!set_position(index, command.number(1), true)) {
        GRIPPER_LOG("W", "!set_position(position)");
    }
    return true;
}

QString TemplatePlugin::gripperUiConfig() {
    QJsonObject config;
    config.insert(QStringLiteral("positionEnabled"), true);
    config.insert(QStringLiteral("positionMin"), 0);
    config.insert(QStringLiteral("positionMax"), 100);
    config.insert(QStringLiteral("forceEnabled"), true);
    config.insert(QStringLiteral("forceMin"), 20);
    config.insert(QStringLiteral("forceMax"), 100);
    config.insert(QStringLiteral("speedEnabled"), true);
    config.insert(QStringLiteral("speedMin"), 1);
    config.insert(QStringLiteral("speedMax"), 100);
    return QString::fromUtf8(QJsonDocument(config).toJson(QJsonDocument::Compact));
}
