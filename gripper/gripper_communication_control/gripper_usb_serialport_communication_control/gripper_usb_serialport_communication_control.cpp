#include "gripper/gripper_communication_control/gripper_usb_serialport_communication_control/gripper_usb_serialport_communication_control.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>

#include "gripper/gripper_common/miscellaneous_utility/miscellaneous_utility.h"
#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "gripper/gripper_common/system_error/system_error.h"
#include "gripper/gripper_communication_control/gripper_usb_serialport_communication_control/gripper_usb_serialport_communication_control_private.h"

// Write 5, wait 5, interval 100 ms.
const GripperScanProperty GripperUSBSerialportCommunicationControl::scan_property_(5, 5, 100);

GripperUSBSerialportCommunicationControl::GripperUSBSerialportCommunicationControl()
    : private_(new GripperUSBSerialportCommunicationControlPrivate(this)) {
    set_gripper_communication(this);
}

GripperUSBSerialportCommunicationControl::~GripperUSBSerialportCommunicationControl() {}

GripperCommunication::CommunicationConnection
GripperUSBSerialportCommunicationControl::get_communication_connection() {
    return CC_USB_SERIALPORT;
}

bool GripperUSBSerialportCommunicationControl::open(const std::vector<std::string>& parameters) {
    if (!private_->accept_parameters(parameters) || !private_->open_port(parameters[1]) ||
        !private_->set_non_blocking() || !private_->raise_dtr() || !private_->configure_port()) {
        return private_->abandon_open();
    }
    return true;
}

bool GripperUSBSerialportCommunicationControl::handshake_check() {
    return true;
}

bool GripperUSBSerialportCommunicationControl::is_alive() {
    return true;
}

bool GripperUSBSerialportCommunicationControl::close() {
    if (-1 == private_->fd_) {
        GRIPPER_LOG("W", "-1 == private_->fd_");
        return true;
    }
    if (0 != ::close(private_->fd_)) {
        const int error = errno;
        GRIPPER_LOG("E", "0 != ::close(private_->fd_)");
        GRIPPER_LOG_ERRNO("E", error);
    }
    private_->fd_ = -1;
    return true;
}

std::vector<uint8_t> GripperUSBSerialportCommunicationControl::read(int length) {
    if (!private_->usable()) {
        return std::vector<uint8_t>();
    }
    if (length < 0) {
        GRIPPER_LOG("E", "length < 0");
        return std::vector<uint8_t>();
    }
    if (available() < length) {
        GRIPPER_LOG("W", "available() < length");
        if (!buffer_drop()) {
            GRIPPER_LOG("E", "!buffer_drop()");
            return std::vector<uint8_t>();
        }
    }
    std::vector<uint8_t> byte_stream(length);
    if (length != ::read(private_->fd_, byte_stream.data(), byte_stream.size())) {
        GRIPPER_LOG("E", "length != ::read(private_->fd_, byte_stream.data(), byte_stream.size())");
        return std::vector<uint8_t>();
    }
    return byte_stream;
}

std::vector<uint8_t> GripperUSBSerialportCommunicationControl::write_read(
    bool set, int read_length, const std::vector<uint8_t>& write_stream) {
    typedef GripperUSBSerialportCommunicationControlPrivate::Pass Pass;
    if (!private_->ready_for_exchange(read_length)) {
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
    if (!private_->usable()) {
        return false;
    }
    const ssize_t size = ::write(private_->fd_, write_stream.data(), write_stream.size());
    if (static_cast<ssize_t>(write_stream.size()) == size) {
        return true;
    }
    const int error = errno;
    GRIPPER_LOG("E", "size != static_cast<const int>(write_stream.size())");
    GRIPPER_LOG("E", "size = %d", static_cast<int>(size));
    GRIPPER_LOG("E", "write_stream.size() = %d", static_cast<int>(write_stream.size()));
    GRIPPER_LOG("E", "write_stream = %s",
                MiscellaneousUtility::convert_hex_binary(write_stream).c_str());
    if (size < 0) {
        GRIPPER_LOG_ERRNO("E", error);
    }
    set_communication_status(CS_WRITE_EXCEPTION);
    return false;
}

int GripperUSBSerialportCommunicationControl::available() {
    if (!private_->usable()) {
        return 0;
    }
    int length = 0;
    if (-1 == ioctl(private_->fd_, FIONREAD, &length)) {
        GRIPPER_LOG("E", "-1 == ioctl(private_->fd_, FIONREAD, &length)");
        return 0;
    }
    return length;
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
