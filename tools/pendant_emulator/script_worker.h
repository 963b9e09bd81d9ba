#ifndef TOOLS_PENDANT_EMULATOR_SCRIPT_WORKER_H
#define TOOLS_PENDANT_EMULATOR_SCRIPT_WORKER_H

#include <QElapsedTimer>
#include <QObject>

#include "tools/pendant_emulator/script_result.h"

// Lives on the script thread and executes one command per call, as the pendant's script engine
// does: it finds the plug-in object by name in the plug-in manager's pool and calls its
// pluginCommonInterface directly, on this thread.
class ScriptWorker : public QObject {
    Q_OBJECT

public:
    explicit ScriptWorker(const QElapsedTimer& clock);

public slots:
    void execute(ScriptResult command);

signals:
    void started(ScriptResult command);
    void finished(ScriptResult result);

private:
    const QElapsedTimer& clock_;
};

#endif
