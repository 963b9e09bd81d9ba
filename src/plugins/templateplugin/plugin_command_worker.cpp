#include "src/plugins/templateplugin/plugin_command_worker.h"

#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "platform/iplugin.h"

void PluginCommandWorker::execute(QObject* plugin, const QString& line) {
    ExtensionSystem::IPlugin* target = qobject_cast<ExtensionSystem::IPlugin*>(plugin);
    QString answer;
    if (nullptr == target) {
        GRIPPER_LOG("W", "NULL == plugin");
        emit executed(false, answer);
        return;
    }
    const bool ok = target->pluginCommonInterface(line, answer);
    emit executed(ok, answer);
}
