#include "src/plugins/templateplugin/plugin_command_runner.h"

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
    connect(this, &PluginCommandRunner::requested, worker_, &PluginCommandWorker::execute,
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
    emit requested(plugin, line);
}
