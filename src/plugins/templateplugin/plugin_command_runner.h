#ifndef TEMPLATEPLUGIN_PLUGIN_COMMAND_RUNNER_H
#define TEMPLATEPLUGIN_PLUGIN_COMMAND_RUNNER_H

#include <QObject>
#include <QString>

class QThread;
class PluginCommandWorker;

// Runs script commands of a plug-in object on a thread of its own, one after the other, so that
// the interface thread never waits for a gripper; each result is reported by finished() on the
// thread that owns the runner.
class PluginCommandRunner : public QObject {
    Q_OBJECT

public:
    explicit PluginCommandRunner(QObject* parent = nullptr);
    // Waits a moment for a command in progress; one that still waits for a move is left to
    // finish on its own, and its thread and worker go when it ends.
    ~PluginCommandRunner() override;

    // plugin must outlive the command: the pendant keeps plug-in objects for the whole session.
    void run(QObject* plugin, const QString& line);

signals:
    void finished(bool ok, const QString& answer);
    // Carries a command to the worker's thread; connected in the constructor.
    void requested(QObject* plugin, const QString& line);

private:
    QThread* thread_;
    PluginCommandWorker* worker_;
};

#endif
