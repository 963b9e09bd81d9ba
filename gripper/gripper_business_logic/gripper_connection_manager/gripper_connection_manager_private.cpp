#include "gripper/gripper_business_logic/gripper_connection_manager/gripper_connection_manager_private.h"

#include <algorithm>

#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "gripper/gripper_common/system_error/system_error.h"

GripperConnectionManagerPrivate::GripperConnectionManagerPrivate(GripperConnectionManager* parent)
    : parent_(parent), scan_status_(GripperConnectionManager::SS_UNDEFINE) {
    pthread_rwlock_init(&rwlock_, nullptr);
}

GripperConnectionManagerPrivate::~GripperConnectionManagerPrivate() {
    pthread_rwlock_destroy(&rwlock_);
}

bool GripperConnectionManagerPrivate::write_lock() {
    const int error = pthread_rwlock_wrlock(&rwlock_);
    if (0 != error) {
        GRIPPER_LOG("E", "0 != pthread_rwlock_wrlock(&private_->rwlock_)");
        GRIPPER_LOG_ERRNO("E", error);
        return false;
    }
    return true;
}

bool GripperConnectionManagerPrivate::read_lock() {
    const int error = pthread_rwlock_rdlock(&rwlock_);
    if (0 != error) {
        GRIPPER_LOG("E", "0 != pthread_rwlock_rdlock(&private_->rwlock_)");
        GRIPPER_LOG_ERRNO("E", error);
        return false;
    }
    return true;
}

void GripperConnectionManagerPrivate::unlock() {
    pthread_rwlock_unlock(&rwlock_);
}

void GripperConnectionManagerPrivate::log_missing_device(
    GripperCommunication::CommunicationConnection connection,
    const std::vector<std::string>& parameters) {
    GRIPPER_LOG("W", "NULL == device");
    GRIPPER_LOG("W", "connection = %s",
                GripperCommunication::communication_connection_to_string(connection).c_str());
    for (const std::string& iter : parameters) {
        GRIPPER_LOG("W", "iter = %s", iter.c_str());
    }
}

bool GripperConnectionManagerPrivate::register_device(GripperLogicControl* device) {
    if (!write_lock()) {
        return false;
    }
    devices_.push_back(device);
    for (GripperConnectionManager::NotifyInterface* notify : notify_interfaces_) {
        notify->on_gripper_abstract_control_create(device);
    }
    unlock();
    return true;
}

bool GripperConnectionManagerPrivate::connect(GripperLogicControl* device,
                                              const std::vector<std::string>& parameters) {
    return device->open(parameters) && device->handshake() && device->handshake_check() &&
           device->sync();
}

void GripperConnectionManagerPrivate::abandon(GripperLogicControl* device) {
    GRIPPER_LOG("W", "!ret");
    device->set_communication_status(GripperCommunication::CS_CONNECT_FAILURE);
    device->stop_loop_update();
    if (!parent_->destroy(device)) {
        GRIPPER_LOG("E", "!destroy(device)");
    }
}

bool GripperConnectionManagerPrivate::contains(GripperLogicControl* device) const {
    return devices_.end() != std::find(devices_.begin(), devices_.end(), device);
}

void GripperConnectionManagerPrivate::forget(GripperLogicControl* device) {
    devices_.erase(std::find(devices_.begin(), devices_.end(), device));
}

void GripperConnectionManagerPrivate::notify_destroy(GripperLogicControl* device) {
    for (GripperConnectionManager::NotifyInterface* notify : notify_interfaces_) {
        notify->on_gripper_abstract_control_destroy(device);
    }
}
