#include "src/plugins/templateplugin/script_wake_observer.h"

#include "src/plugins/templateplugin/script_wakeup.h"

ScriptWakeObserver::ScriptWakeObserver(GripperLogicControl* driver, ScriptWakeup* wakeup)
    : driver_(driver), wakeup_(wakeup) {
    driver_->add_notify_interface(this);
}

ScriptWakeObserver::~ScriptWakeObserver() {
    driver_->remove_notify_interface(this);
}

// A link fault alone does not end a move's wait, so only the gripper status wakes the waiters.
void ScriptWakeObserver::on_communication_status_changed(
    GripperLogicControl*, GripperCommunication::CommunicationStatus) {}

void ScriptWakeObserver::on_gripper_move_status_changed(GripperLogicControl*,
                                                        GripperLogicControl::GripperStatus) {
    wakeup_->wake();
}

void ScriptWakeObserver::on_gripper_turn_status_changed(GripperLogicControl*,
                                                        GripperLogicControl::GripperStatus) {}

void ScriptWakeObserver::on_position_changed(GripperLogicControl*, float) {}

void ScriptWakeObserver::on_force_changed(GripperLogicControl*, int) {}

void ScriptWakeObserver::on_speed_changed(GripperLogicControl*, int) {}

void ScriptWakeObserver::on_angle_changed(GripperLogicControl*, int) {}
