#include "bench/plugin/plugin_session.h"

#include <QEventLoop>
#include <QJsonObject>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <thread>

#include "platform/pluginmanager.h"

bool PluginSession::open() {
    loader_.setFileName(QStringLiteral(ZANTHER2F_LIBRARY));
    plugin_ = qobject_cast<ExtensionSystem::IPlugin*>(loader_.instance());
    if (nullptr == plugin_) {
        return false;
    }
    const QJsonObject meta = loader_.metaData().value(QStringLiteral("MetaData")).toObject();
    plugin_->setObjectName(meta.value(QStringLiteral("Name")).toString());
    ExtensionSystem::PluginManager::addObject(plugin_);
    page_ = plugin_->createUI(nullptr);
    return nullptr != page_;
}

bool PluginSession::run_events_until(const std::function<bool()>& done, int timeout_ms) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout_ms);
    QEventLoop loop;
    QTimer check;
    QObject::connect(&check, &QTimer::timeout, [&] {
        if (done() || std::chrono::steady_clock::now() > end) {
            loop.quit();
        }
    });
    check.start(1);
    if (!done()) {
        loop.exec();
    }
    return done();
}

QString PluginSession::send(const QString& line) {
    std::atomic<bool> finished(false);
    QString answer;
    std::thread script([&] {
        plugin_->pluginCommonInterface(line, answer);
        finished = true;
    });
    if (!run_events_until([&] { return finished.load(); }, 30000)) {
        plugin_->stopPlugin();
    }
    script.join();
    return answer;
}

bool PluginSession::send_until(const QString& line, const QString& expected, int timeout_ms) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout_ms);
    while (expected != send(line)) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        run_events_until([] { return false; }, 20);
    }
    return true;
}
