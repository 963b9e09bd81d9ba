#ifndef TEMPLATEPLUGIN_SCRIPT_WAKE_OBSERVER_H
#define TEMPLATEPLUGIN_SCRIPT_WAKE_OBSERVER_H

#include <memory>

#include "gripper_main/userinterface_logic/gripper_observer_adapter/gripper_observer_adapter.h"

class ScriptWakeup;

// Observes one driver and wakes the waiting script commands at every change of the gripper
// status. watch() registers one; the end of the watch detaches it without waiting for the driver
// lock (an unanswered exchange may hold it for seconds) and retires it to the ObjectKeeper, which
// frees it once a notification already under way has ended. The wakeup must outlive it.
class ScriptWakeObserver : public GripperObserverAdapter {
public:
    struct End {
        void operator()(ScriptWakeObserver* observer) const;
    };
    typedef std::unique_ptr<ScriptWakeObserver, End> Watch;

    static Watch watch(GripperLogicControl* driver, ScriptWakeup* wakeup);
    ScriptWakeObserver(const ScriptWakeObserver&) = delete;
    ScriptWakeObserver& operator=(const ScriptWakeObserver&) = delete;

    // A link fault alone does not end a move's wait, so only the gripper status wakes the
    // waiters.
    void on_gripper_move_status_changed(GripperLogicControl* control,
                                        GripperLogicControl::GripperStatus status) override;

private:
    ScriptWakeObserver(GripperLogicControl* driver, ScriptWakeup* wakeup);

    GripperLogicControl* driver_;
    ScriptWakeup* wakeup_;
};

#endif
