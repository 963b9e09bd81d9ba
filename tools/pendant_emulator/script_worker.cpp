#include "tools/pendant_emulator/script_worker.h"

#include "platform/iplugin.h"
#include "platform/pluginmanager.h"

ScriptWorker::ScriptWorker(const QElapsedTimer& clock) : clock_(clock) {}

void ScriptWorker::execute(ScriptResult command) {
    command.started_ms = clock_.elapsed();
    emit started(command);
    QObject* object = ExtensionSystem::PluginManager::getObjectByName(command.line.plugin_name);
    auto* plugin = qobject_cast<ExtensionSystem::IPlugin*>(object);
    if (plugin == nullptr) {
        command.error = QString("no plug-in named \"%1\" is loaded").arg(command.line.plugin_name);
    } else {
        command.returned = plugin->pluginCommonInterface(command.line.command, command.answer);
    }
    command.finished_ms = clock_.elapsed();
    emit finished(command);
}
