#ifndef TEMPLATEPLUGIN_SCRIPT_WAKE_OBSERVER_H
#define TEMPLATEPLUGIN_SCRIPT_WAKE_OBSERVER_H

#include "gripper_main/userinterface_logic/gripper_observer_adapter/gripper_observer_adapter.h"

class ScriptWakeup;

// Observes one driver while it lives and wakes the waiting script commands at every change of the
// gripper status. Registers on construction and unregisters on destruction; once it is gone the
// driver no longer calls it.
class ScriptWakeObserver : public GripperObserverAdapter {
public:
    ScriptWakeObserver(GripperLogicControl* driver, ScriptWakeup* wakeup);
    ~ScriptWakeObserver() override;
    ScriptWakeObserver(const ScriptWakeObserver&) = delete;
    ScriptWakeObserver& operator=(const ScriptWakeObserver&) = delete;

    // A link fault alone does not end a move's wait, so only the gripper status wakes the
    // waiters.
    void on_gripper_move_status_changed(GripperLogicControl* control,
                                        GripperLogicControl::GripperStatus status) override;

private:
    GripperLogicControl* driver_;
    ScriptWakeup* wakeup_;
};

#endif
