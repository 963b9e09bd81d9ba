#ifndef TESTS_TEST_SUPPORT_SCRIPT_THREAD_H
#define TESTS_TEST_SUPPORT_SCRIPT_THREAD_H

#include <QString>
#include <QTest>

#include <atomic>
#include <thread>

#include "platform/iplugin.h"

// One script command sent from a thread of its own, as the pendant's script thread sends it,
// while the test's thread goes on running the interface's event loop.
class ScriptThread {
public:
    ScriptThread(ExtensionSystem::IPlugin* plugin, const QString& line)
        : plugin_(plugin), line_(line), thread_([this] {
              ok_ = plugin_->pluginCommonInterface(line_, answer_);
              done_ = true;
          }) {}

    // A command still waiting is ended by a stop of the robot program before the thread is
    // joined, so a failed test never hangs.
    ~ScriptThread() {
        if (!done_) {
            plugin_->stopPlugin();
        }
        thread_.join();
    }

    ScriptThread(const ScriptThread&) = delete;
    ScriptThread& operator=(const ScriptThread&) = delete;

    bool done() const { return done_; }
    // Runs the event loop until the command has returned or timeout_ms passed.
    bool wait(int timeout_ms = 15000) const {
        return QTest::qWaitFor([this] { return done_.load(); }, timeout_ms);
    }
    // Valid once done() holds.
    bool ok() const { return ok_; }
    QString answer() const { return answer_; }

private:
    ExtensionSystem::IPlugin* plugin_;
    const QString line_;
    std::atomic<bool> done_{false};
    bool ok_ = false;
    QString answer_;
    std::thread thread_;
};

// What a command answered: the return value and the answer text.
struct Reply {
    bool ok;
    QString answer;
    bool operator==(const Reply& other) const { return ok == other.ok && answer == other.answer; }
};

// How QCOMPARE prints a reply.
inline char* toString(const Reply& reply) {
    return QTest::toString(
        QStringLiteral("%1 \"%2\"")
            .arg(reply.ok ? QStringLiteral("true") : QStringLiteral("false"), reply.answer));
}

// Sends line from a script thread and runs the event loop until it returns.
inline Reply send_script(ExtensionSystem::IPlugin* plugin, const QString& line,
                         int timeout_ms = 15000) {
    ScriptThread script(plugin, line);
    if (!script.wait(timeout_ms)) {
        return Reply{false, QStringLiteral("timed out")};
    }
    return Reply{script.ok(), script.answer()};
}

#endif
