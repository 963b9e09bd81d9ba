#include "gripper_main/userinterface_logic/gripper_observer_adapter/gripper_observer_adapter.h"

GripperObserverAdapter::~GripperObserverAdapter() {}

void GripperObserverAdapter::on_list_all_device_changed() {
    on_any_change();
}

void GripperObserverAdapter::on_program_state_changed(GripperGlobal::ProgramState) {
    on_any_change();
}

void GripperObserverAdapter::on_program_startup() {
    on_any_change();
}

void GripperObserverAdapter::on_gripper_abstract_control_create(GripperLogicControl*) {
    on_any_change();
}

void GripperObserverAdapter::on_gripper_abstract_control_destroy(GripperLogicControl*) {
    on_any_change();
}

void GripperObserverAdapter::on_scan_status_changed(GripperConnectionManager::ScanStatus) {
    on_any_change();
}

void GripperObserverAdapter::on_communication_status_changed(
    GripperLogicControl*, GripperCommunication::CommunicationStatus) {
    on_any_change();
}

void GripperObserverAdapter::on_gripper_move_status_changed(GripperLogicControl*,
                                                            GripperLogicControl::GripperStatus) {
    on_any_change();
}

void GripperObserverAdapter::on_gripper_turn_status_changed(GripperLogicControl*,
                                                            GripperLogicControl::GripperStatus) {
    on_any_change();
}

void GripperObserverAdapter::on_position_changed(GripperLogicControl*, float) {
    on_any_change();
}

void GripperObserverAdapter::on_force_changed(GripperLogicControl*, int) {
    on_any_change();
}

void GripperObserverAdapter::on_speed_changed(GripperLogicControl*, int) {
    on_any_change();
}

void GripperObserverAdapter::on_angle_changed(GripperLogicControl*, int) {
    on_any_change();
}

void GripperObserverAdapter::on_any_change() {}
