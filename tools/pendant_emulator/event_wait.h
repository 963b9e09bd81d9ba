#ifndef TOOLS_PENDANT_EMULATOR_EVENT_WAIT_H
#define TOOLS_PENDANT_EMULATOR_EVENT_WAIT_H

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

// Runs the interface thread's events until condition holds or timeout_ms pass, looking every
// few milliseconds; true when it held, false after the time-out or once the application quits.
// The script thread and the plug-ins' pages keep working meanwhile (a script command may wait
// for this thread).
template <typename Condition>
bool wait_for_events(Condition condition, int timeout_ms) {
    QDeadlineTimer deadline(timeout_ms);
    QEventLoop loop;
    QTimer tick;
    QObject::connect(&tick, &QTimer::timeout, &loop, &QEventLoop::quit);
    tick.start(5);
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        // A loop refuses to run once the application is quitting.
        if (loop.exec() != 0) {
            return false;
        }
    }
    return true;
}

#endif
