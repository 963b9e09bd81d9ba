#include "tools/pendant_emulator/script_thread.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

#include "tools/pendant_emulator/script_worker.h"

ScriptThread::ScriptThread(QObject* parent) : QObject(parent) {
    qRegisterMetaType<ScriptResult>();
    clock_.start();
    worker_ = new ScriptWorker(clock_);
    worker_->moveToThread(&thread_);
    connect(&thread_, &QThread::finished, worker_, &QObject::deleteLater);
    connect(worker_, &ScriptWorker::started, this, &ScriptThread::command_started);
    connect(worker_, &ScriptWorker::finished, this, &ScriptThread::on_finished);
    thread_.setObjectName("script");
    thread_.start();
}

ScriptThread::~ScriptThread() {
    if (!finish(5000)) {
        // A command that never returns cannot be waited for; terminating the thread is the
        // only way left to end the process in order.
        qWarning("pendant-emulator: the script thread is still busy; terminating it");
        thread_.terminate();
        thread_.wait();
    }
}

int ScriptThread::submit(const ScriptLine& line) {
    ScriptResult command;
    command.number = ++last_number_;
    command.line = line;
    ++pending_;
    QMetaObject::invokeMethod(worker_, "execute", Qt::QueuedConnection,
                              Q_ARG(ScriptResult, command));
    return command.number;
}

bool ScriptThread::finish(int timeout_ms) {
    thread_.quit();
    QDeadlineTimer deadline(timeout_ms);
    while (!thread_.wait(10)) {
        if (deadline.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return true;
}

void ScriptThread::on_finished(const ScriptResult& result) {
    --pending_;
    emit command_finished(result);
}
