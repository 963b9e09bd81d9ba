#ifndef TEMPLATEPLUGIN_SCRIPT_WAKE_OBSERVER_H
#define TEMPLATEPLUGIN_SCRIPT_WAKE_OBSERVER_H

#include <memory>

#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control.h"

class ScriptWakeup;

// Observes one driver and wakes the waiting script commands at every change of the gripper
// status. watch() registers one; the end of the watch detaches it without waiting for the driver
// lock (an unanswered exchange may hold it for seconds) and retires it to the ObjectKeeper, which
// frees it once a notification already under way has ended. The wakeup must outlive it.
class ScriptWakeObserver : public GripperLogicControl::NotifyInterface {
public:
    struct End {
        void operator()(ScriptWakeObserver* observer) const;
    };
    typedef std::unique_ptr<ScriptWakeObserver, End> Watch;

    static Watch watch(GripperLogicControl* driver, ScriptWakeup* wakeup);
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
    ScriptWakeObserver(GripperLogicControl* driver, ScriptWakeup* wakeup);

    GripperLogicControl* driver_;
    ScriptWakeup* wakeup_;
};

#endif
