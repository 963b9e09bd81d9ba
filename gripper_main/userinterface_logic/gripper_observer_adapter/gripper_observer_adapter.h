#ifndef GRIPPER_OBSERVER_ADAPTER_H
#define GRIPPER_OBSERVER_ADAPTER_H

#include "gripper/gripper_business_logic/gripper_connection_manager/gripper_connection_manager.h"
#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control.h"
#include "gripper_main/business_logic/gripper_global/gripper_global.h"

// The registry's, the connection manager's and the drivers' notifications in one observer. Each
// one calls on_any_change(), which does nothing here: an observer overrides on_any_change() when
// every change matters to it, and otherwise only the notifications it reacts to.
class GripperObserverAdapter : public GripperGlobal::NotifyInterface,
                               public GripperConnectionManager::NotifyInterface,
                               public GripperLogicControl::NotifyInterface {
public:
    ~GripperObserverAdapter() override;

    void on_list_all_device_changed() override;
    void on_program_state_changed(GripperGlobal::ProgramState state) override;
    void on_program_startup() override;
    void on_gripper_abstract_control_create(GripperLogicControl* control) override;
    void on_gripper_abstract_control_destroy(GripperLogicControl* control) override;
    void on_scan_status_changed(GripperConnectionManager::ScanStatus status) override;
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

protected:
    virtual void on_any_change();
};

#endif
