#include "gripper/gripper_communication_control/gripper_usb_serialport_communication_control/gripper_usb_serialport_communication_control.h"

#include "gripper/gripper_communication_control/gripper_usb_serialport_communication_control/gripper_usb_serialport_communication_control_private.h"

// Write 5, wait 5, interval 100 ms.
const GripperScanProperty GripperUSBSerialportCommunicationControl::scan_property_(5, 5, 100);

GripperUSBSerialportCommunicationControl::GripperUSBSerialportCommunicationControl()
    : private_(new GripperUSBSerialportCommunicationControlPrivate(this)) {
    set_gripper_communication(this);
}

GripperUSBSerialportCommunicationControl::~GripperUSBSerialportCommunicationControl() {
    finish_loop_update();
}

GripperCommunication::CommunicationConnection
GripperUSBSerialportCommunicationControl::get_communication_connection() {
    return CC_USB_SERIALPORT;
}

bool GripperUSBSerialportCommunicationControl::open(const std::vector<std::string>& parameters) {
    if (private_->support_.already_open(private_->fd_)) {
        return false;
    }
    if (!private_->support_.accept_parameters(parameters) || !private_->open_port(parameters[1]) ||
        !GripperLinkSupport::set_non_blocking(private_->fd_) || !private_->raise_dtr() ||
        !private_->configure_port()) {
        return private_->abandon_open();
    }
    set_readable_descriptor(private_->fd_);
    return true;
}

bool GripperUSBSerialportCommunicationControl::handshake_check() {
    return true;
}

bool GripperUSBSerialportCommunicationControl::is_alive() {
    return true;
}

bool GripperUSBSerialportCommunicationControl::close() {
    if (!private_->support_.already_closed(private_->fd_)) {
        set_readable_descriptor(-1);
        private_->support_.close_descriptor(private_->fd_);
    }
    return true;
}

std::vector<uint8_t> GripperUSBSerialportCommunicationControl::read(int length) {
    return private_->support_.read(private_->fd_, length);
}

std::vector<uint8_t> GripperUSBSerialportCommunicationControl::write_read(
    bool set, int read_length, const std::vector<uint8_t>& write_stream) {
    typedef GripperUSBSerialportCommunicationControlPrivate::Pass Pass;
    if (!private_->support_.ready_for_exchange(private_->fd_, read_length)) {
        return std::vector<uint8_t>();
    }
    std::vector<uint8_t> answer;
    for (int count = 0; count < get_wait_retry_max_count(); ++count) {
        const Pass pass = private_->run_pass(set, read_length, write_stream, count, answer);
        if (Pass::ANSWERED == pass) {
            return answer;
        }
        if (Pass::STOP == pass) {
            break;
        }
    }
    return std::vector<uint8_t>();
}

bool GripperUSBSerialportCommunicationControl::write(const std::vector<uint8_t>& write_stream) {
    return private_->support_.write(private_->fd_, write_stream);
}

int GripperUSBSerialportCommunicationControl::available() {
    return private_->support_.available(private_->fd_);
}

int GripperUSBSerialportCommunicationControl::get_write_retry_max_count() {
    return scan_property_.write_retry_max_count_;
}

int GripperUSBSerialportCommunicationControl::get_wait_retry_max_count() {
    return scan_property_.wait_retry_max_count_;
}

int GripperUSBSerialportCommunicationControl::get_alive_retry_max_count() {
    return scan_property_.wait_retry_max_count_;
}

int GripperUSBSerialportCommunicationControl::get_default_wait_for_length_available_interval() {
    return scan_property_.wait_for_length_available_interval_;
}
