#ifndef TEMPLATEPLUGIN_SCRIPT_WAKE_OBSERVER_H
#define TEMPLATEPLUGIN_SCRIPT_WAKE_OBSERVER_H

#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control.h"

class ScriptWakeup;

// Observes one driver while it lives and wakes the waiting script commands at every change of the
// gripper status. Registers on construction and unregisters on destruction; once it is gone the
// driver no longer calls it.
class ScriptWakeObserver : public GripperLogicControl::NotifyInterface {
public:
    ScriptWakeObserver(GripperLogicControl* driver, ScriptWakeup* wakeup);
    ~ScriptWakeObserver() override;
    ScriptWakeObserver(const ScriptWakeObserver&) = delete;
    ScriptWakeObserver& operator=(const ScriptWakeObserver&) = delete;

    void on_communication_status_changed(GripperLogicControl* control,
                                         GripperCommunication::CommunicationStatus status) override;
    void on_gripper_move_status_changed(GripperLogicControl* control,
                                        GripperLogicControl::GripperStatus status) override;
    void on_gripper_turn_status_changed(GripperLogicControl* control,
                                        GripperLogicControl::GripperStatus status) override;
    void on_position_changed(GripperLogicControl* control, float position) override;
    void on_force_changed(GripperLogicControl* control, int force) override;
    void on_speed_changed(GripperLogicControl* control, int speed) override;
    void on_angle_changed(GripperLogicControl* control, int angle) override;

private:
    GripperLogicControl* driver_;
    ScriptWakeup* wakeup_;
};

#endif
