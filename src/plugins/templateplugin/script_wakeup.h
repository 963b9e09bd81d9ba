#ifndef TEMPLATEPLUGIN_SCRIPT_WAKEUP_H
#define TEMPLATEPLUGIN_SCRIPT_WAKEUP_H

#include <QMutex>
#include <QMutexLocker>
#include <QWaitCondition>

// Where script commands wait for a gripper's move to end. The lifecycle hooks and the drivers'
// notifications call wake(); every waiter then checks its condition again. A waiter sleeps in
// between, so a waiting script costs no processor time.
class ScriptWakeup {
public:
    ScriptWakeup() = default;
    ScriptWakeup(const ScriptWakeup&) = delete;
    ScriptWakeup& operator=(const ScriptWakeup&) = delete;

    void wake();

    // Returns once done() holds. done() runs with the wake-up lock held, so a change made
    // before a wake() is never missed between a check and the sleep.
    template <typename Done>
    void wait(Done done) {
        QMutexLocker locker(&mutex_);
        while (!done()) {
            condition_.wait(&mutex_);
        }
    }

private:
    QMutex mutex_;
    QWaitCondition condition_;
};

#endif
