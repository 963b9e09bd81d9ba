#include "gripper/gripper_communication_control/gripper_tcp_client_communication_control/gripper_tcp_client_communication_control.h"

#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

#include "gripper/gripper_common/miscellaneous_utility/miscellaneous_utility.h"
#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "gripper/gripper_common/system_error/system_error.h"
#include "gripper/gripper_communication_control/gripper_tcp_client_communication_control/gripper_tcp_client_communication_control_private.h"

// Write 1, wait 4, interval 100 ms.
const GripperScanProperty GripperTCPClientCommunicationControl::scan_property_(1, 4, 100);

GripperTCPClientCommunicationControl::GripperTCPClientCommunicationControl()
    : private_(new GripperTCPClientCommunicationControlPrivate(this)) {
    set_gripper_communication(this);
}

GripperTCPClientCommunicationControl::~GripperTCPClientCommunicationControl() {}

GripperCommunication::CommunicationConnection
GripperTCPClientCommunicationControl::get_communication_connection() {
    return CC_TCP_CLIENT;
}

bool GripperTCPClientCommunicationControl::open(const std::vector<std::string>& parameters) {
    if (!private_->accept_parameters(parameters) ||
        !private_->accept_address(parameters[1], parameters[2]) || !private_->create_socket() ||
        !private_->set_options() || !private_->set_non_blocking() ||
        !private_->connect_to(parameters[1], parameters[2])) {
        return private_->abandon_open();
    }
    return true;
}

bool GripperTCPClientCommunicationControl::handshake_check() {
    return true;
}

bool GripperTCPClientCommunicationControl::is_alive() {
    return true;
}

bool GripperTCPClientCommunicationControl::close() {
    if (-1 == private_->socket_) {
        GRIPPER_LOG("W", "-1 == private_->socket_");
        return true;
    }
    if (0 != shutdown(private_->socket_, SHUT_RDWR)) {
        const int error = errno;
        GRIPPER_LOG("E", "0 != shutdown(private_->socket_, SHUT_RDWR)");
        GRIPPER_LOG_ERRNO("E", error);
    }
    if (0 != ::close(private_->socket_)) {
        const int error = errno;
        GRIPPER_LOG("E", "0 != ::close(private_->socket_)");
        GRIPPER_LOG_ERRNO("E", error);
    }
    private_->socket_ = -1;
    return true;
}

std::vector<uint8_t> GripperTCPClientCommunicationControl::read(int length) {
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
            GRIPPER_LOG("W", "!buffer_drop()");
            return std::vector<uint8_t>();
        }
    }
    std::vector<uint8_t> byte_stream(length);
    if (length != ::recv(private_->socket_, byte_stream.data(), byte_stream.size(), 0)) {
        GRIPPER_LOG("W",
                    "length != ::recv(private_->socket_, byte_stream.data(), byte_stream.size(), "
                    "0)");
        return std::vector<uint8_t>();
    }
    return byte_stream;
}

std::vector<uint8_t> GripperTCPClientCommunicationControl::write_read(
    bool set, int read_length, const std::vector<uint8_t>& write_stream) {
    if (!private_->ready_for_exchange(read_length) || !private_->drop_stale_bytes() ||
        !private_->send_request(write_stream) ||
        !private_->wait_for_answer(read_length, write_stream)) {
        return std::vector<uint8_t>();
    }
    return private_->receive_answer(set, read_length, write_stream);
}

bool GripperTCPClientCommunicationControl::write(const std::vector<uint8_t>& write_stream) {
    if (!private_->usable()) {
        return false;
    }
    // No SIGPIPE from a peer that has gone: the failure is reported as a write exception.
    const ssize_t size =
        send(private_->socket_, write_stream.data(), write_stream.size(), MSG_NOSIGNAL);
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

int GripperTCPClientCommunicationControl::available() {
    if (!private_->usable()) {
        return 0;
    }
    int length = 0;
    if (-1 == ioctl(private_->socket_, FIONREAD, &length)) {
        GRIPPER_LOG("W", "-1 == ioctl(private_->socket_, FIONREAD, &length)");
        return 0;
    }
    return length;
}

int GripperTCPClientCommunicationControl::get_write_retry_max_count() {
    return scan_property_.write_retry_max_count_;
}

int GripperTCPClientCommunicationControl::get_wait_retry_max_count() {
    return scan_property_.wait_retry_max_count_;
}

int GripperTCPClientCommunicationControl::get_alive_retry_max_count() {
    return scan_property_.wait_retry_max_count_;
}

int GripperTCPClientCommunicationControl::get_default_wait_for_length_available_interval() {
    return scan_property_.wait_for_length_available_interval_;
}
