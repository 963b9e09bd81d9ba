#ifndef BENCH_PLUGIN_PLUGIN_SESSION_H
#define BENCH_PLUGIN_PLUGIN_SESSION_H

#include <QPluginLoader>
#include <QString>

#include <functional>

#include "platform/iplugin.h"

class QWidget;

// The plug-in loaded from its file as the pendant loads it, with its page made, and script
// commands sent from threads of their own while this thread runs the interface's event loop.
class PluginSession {
public:
    // Loads the library, names the object, registers it and calls createUI; false on failure.
    bool open();
    ExtensionSystem::IPlugin* plugin() const { return plugin_; }

    // Runs the event loop until done() holds or timeout_ms passed; true when it held.
    static bool run_events_until(const std::function<bool()>& done, int timeout_ms);
    // Sends line from a script thread and runs the event loop until it returns.
    QString send(const QString& line);
    // Sends line until the answer is expected or timeout_ms passed.
    bool send_until(const QString& line, const QString& expected, int timeout_ms);

private:
    QPluginLoader loader_;
    ExtensionSystem::IPlugin* plugin_ = nullptr;
    QWidget* page_ = nullptr;
};

#endif
