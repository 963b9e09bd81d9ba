#ifndef TEMPLATEPLUGIN_PLUGIN_COMMAND_WORKER_H
#define TEMPLATEPLUGIN_PLUGIN_COMMAND_WORKER_H

#include <QObject>
#include <QString>

// Lives on the runner's thread and calls a plug-in's script command interface there.
class PluginCommandWorker : public QObject {
    Q_OBJECT

public slots:
    // plugin is an ExtensionSystem::IPlugin; anything else fails the command.
    void execute(QObject* plugin, const QString& line);

signals:
    void executed(bool ok, const QString& answer);
};

#endif
