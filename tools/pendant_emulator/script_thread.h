#ifndef TOOLS_PENDANT_EMULATOR_SCRIPT_THREAD_H
#define TOOLS_PENDANT_EMULATOR_SCRIPT_THREAD_H

#include <QElapsedTimer>
#include <QObject>
#include <QThread>

#include "tools/pendant_emulator/script_result.h"

class ScriptWorker;

// The pendant's script thread: one thread that runs the submitted commands one at a time, in
// the order submitted. The interface thread only queues commands and receives the results as
// signals, so it keeps running its event loop while a command blocks (a move waiting for its
// end, or a connect that waits for the plug-in's page on the interface thread).
class ScriptThread : public QObject {
    Q_OBJECT

public:
    explicit ScriptThread(QObject* parent = nullptr);
    ~ScriptThread() override;

    // Queues a command; returns its number (1, 2, ...).
    int submit(const ScriptLine& line);
    // Commands submitted and not yet finished.
    int pending() const { return pending_; }
    const QElapsedTimer& clock() const { return clock_; }
    // Ends the thread after the running command, processing events while waiting (a command may
    // wait for the interface thread). False if it is still busy after timeout_ms.
    bool finish(int timeout_ms);

signals:
    void command_started(ScriptResult command);
    void command_finished(ScriptResult result);

private:
    void on_finished(const ScriptResult& result);

    QElapsedTimer clock_;
    QThread thread_;
    ScriptWorker* worker_;
    int last_number_ = 0;
    int pending_ = 0;
};

#endif
