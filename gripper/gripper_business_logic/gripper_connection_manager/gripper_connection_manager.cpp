#include "gripper/gripper_business_logic/gripper_connection_manager/gripper_connection_manager.h"

#include <algorithm>

#include "gripper/gripper_business_logic/gripper_connection_manager/gripper_connection_manager_private.h"
#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "gripper/gripper_communication_control/gripper_tcp_client_communication_control/gripper_tcp_client_communication_control.h"
#include "gripper/gripper_communication_control/gripper_usb_serialport_communication_control/gripper_usb_serialport_communication_control.h"

GripperConnectionManager::NotifyInterface::~NotifyInterface() {}

GripperConnectionManager& GripperConnectionManager::instance() {
    static GripperConnectionManager manager;
    return manager;
}

GripperConnectionManager::GripperConnectionManager()
    : private_(new GripperConnectionManagerPrivate(this)) {}

GripperConnectionManager::~GripperConnectionManager() {}

GripperLogicControl* GripperConnectionManager::create(
    GripperLogicControl::NotifyInterface* notify,
    GripperCommunication::CommunicationConnection connection,
    const std::vector<std::string>& parameters, GripperLinkFailure* failure) {
    GripperLogicControl* device = create_gripper_abstract_control(connection);
    if (nullptr == device) {
        private_->log_missing_device(connection, parameters);
        return nullptr;
    }
    if (!private_->register_device(device)) {
        delete device;
        return nullptr;
    }
    if (nullptr != notify) {
        device->add_notify_interface(notify);
    }
    if (!GripperConnectionManagerPrivate::connect(device, parameters)) {
        if (nullptr != failure) {
            *failure = device->last_failure();
        }
        private_->abandon(device);
        return nullptr;
    }
    device->set_link_parameters(parameters);
    device->start_loop_update();
    device->set_communication_status(GripperCommunication::CS_CONNECTED);
    return device;
}

bool GripperConnectionManager::destroy(GripperLogicControl* device) {
    if (nullptr == device) {
        GRIPPER_LOG("W", "NULL == device");
        return false;
    }
    if (!private_->write_lock()) {
        return false;
    }
    if (!private_->contains(device)) {
        // The write lock stays held here: a foreign or twice-destroyed driver locks the manager.
        GRIPPER_LOG("W", "!contain");
        return false;
    }
    private_->forget(device);
    // Under the driver lock: the loop stops before the link closes, and no command overlaps.
    device->tear_down();
    private_->notify_destroy(device);
    private_->unlock();
    return true;
}

void GripperConnectionManager::add_notify_interface(NotifyInterface* notify) {
    if (!private_->write_lock()) {
        return;
    }
    std::vector<NotifyInterface*>& notifies = private_->notify_interfaces_;
    if (notifies.end() == std::find(notifies.begin(), notifies.end(), notify)) {
        notifies.push_back(notify);
    }
    private_->unlock();
}

void GripperConnectionManager::remove_notify_interface(NotifyInterface* notify) {
    if (!private_->write_lock()) {
        return;
    }
    std::vector<NotifyInterface*>& notifies = private_->notify_interfaces_;
    std::vector<NotifyInterface*>::iterator iter =
        std::find(notifies.begin(), notifies.end(), notify);
    if (notifies.end() != iter) {
        notifies.erase(iter);
    }
    private_->unlock();
}

// Scanning for ports is done by the Setting page itself.
void GripperConnectionManager::start_scan() {}

GripperLogicControl* GripperConnectionManager::create_gripper_abstract_control(
    GripperCommunication::CommunicationConnection connection) {
    switch (connection) {
        case GripperCommunication::CC_TCP_CLIENT:
            return new GripperTCPClientCommunicationControl();
        case GripperCommunication::CC_USB_SERIALPORT:
            return new GripperUSBSerialportCommunicationControl();
        default:
            GRIPPER_LOG("W", "GripperCommunication::CommunicationConnection::CC_UNDEFINE");
            return nullptr;
    }
}

void GripperConnectionManager::set_scan_status(ScanStatus status) {
    if (status == private_->scan_status_) {
        return;
    }
    private_->scan_status_ = status;
    if (!private_->read_lock()) {
        return;
    }
    for (NotifyInterface* notify : private_->notify_interfaces_) {
        notify->on_scan_status_changed(status);
    }
    private_->unlock();
}
