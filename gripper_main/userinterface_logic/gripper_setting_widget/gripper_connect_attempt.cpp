#include "gripper_main/userinterface_logic/gripper_setting_widget/gripper_connect_attempt.h"

#include "gripper/gripper_common/object_keeper/object_keeper.h"

GripperConnectAttempt::GripperConnectAttempt()
    : thread_(std::this_thread::get_id()), made_(nullptr) {}

GripperLogicControl* GripperConnectAttempt::run(
    GripperLogicControl::NotifyInterface* notify,
    GripperCommunication::CommunicationConnection connection,
    const std::vector<std::string>& parameters) {
    GripperConnectionManager& manager = GripperConnectionManager::instance();
    manager.add_notify_interface(this);
    GripperLogicControl* driver = manager.create(notify, connection, parameters, &failure_);
    manager.remove_notify_interface(this);
    if (nullptr == driver && nullptr != made_) {
        ObjectKeeper::instance().retire(made_);
    }
    return driver;
}

// Called with the manager's lock held, on the thread that creates; other threads' drivers are
// not this attempt's.
void GripperConnectAttempt::on_gripper_abstract_control_create(GripperLogicControl* control) {
    if (std::this_thread::get_id() == thread_) {
        made_ = control;
    }
}
