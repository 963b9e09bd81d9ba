#include "src/plugins/templateplugin/plugin_command_runner.h"

#include <QMetaObject>
#include <QThread>

#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "src/plugins/templateplugin/plugin_command_worker.h"

namespace {

const unsigned long kStopWaitMs = 2000;

}  // namespace

PluginCommandRunner::PluginCommandRunner(QObject* parent)
    : QObject(parent), thread_(new QThread()), worker_(new PluginCommandWorker()) {
    worker_->moveToThread(thread_);
    connect(worker_, &PluginCommandWorker::executed, this, &PluginCommandRunner::finished,
            Qt::QueuedConnection);
    connect(thread_, &QThread::finished, worker_, &QObject::deleteLater);
    thread_->start();
}

// Deleting the thread object also drops its pending self-deletion.
PluginCommandRunner::~PluginCommandRunner() {
    disconnect(worker_, nullptr, this, nullptr);
    connect(thread_, &QThread::finished, thread_, &QObject::deleteLater);
    thread_->quit();
    if (thread_->wait(kStopWaitMs)) {
        delete thread_;
        return;
    }
    GRIPPER_LOG("W", "!thread_->wait(kStopWaitMs)");
}

void PluginCommandRunner::run(QObject* plugin, const QString& line) {
    if (!QMetaObject::invokeMethod(worker_, "execute", Qt::QueuedConnection,
                                   Q_ARG(QObject*, plugin), Q_ARG(QString, line))) {
        GRIPPER_LOG("W", "!QMetaObject::invokeMethod(worker_, \"execute\", Qt::QueuedConnection)");
    }
}
