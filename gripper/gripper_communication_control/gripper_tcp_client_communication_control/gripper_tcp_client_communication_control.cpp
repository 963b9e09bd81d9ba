#include "gripper/gripper_communication_control/gripper_tcp_client_communication_control/gripper_tcp_client_communication_control.h"

#include <sys/socket.h>

#include <cerrno>

#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "gripper/gripper_common/system_error/system_error.h"
#include "gripper/gripper_communication_control/gripper_tcp_client_communication_control/gripper_tcp_client_communication_control_private.h"

// Write 1, wait 4, interval 100 ms.
const GripperScanProperty GripperTCPClientCommunicationControl::scan_property_(1, 4, 100);

GripperTCPClientCommunicationControl::GripperTCPClientCommunicationControl()
    : private_(new GripperTCPClientCommunicationControlPrivate(this)) {
    set_gripper_communication(this);
}

GripperTCPClientCommunicationControl::~GripperTCPClientCommunicationControl() {
    finish_loop_update();
}

GripperCommunication::CommunicationConnection
GripperTCPClientCommunicationControl::get_communication_connection() {
    return CC_TCP_CLIENT;
}

bool GripperTCPClientCommunicationControl::open(const std::vector<std::string>& parameters) {
    if (private_->support_.already_open(private_->socket_)) {
        return false;
    }
    if (!private_->support_.accept_parameters(parameters) ||
        !private_->accept_address(parameters[1], parameters[2]) || !private_->create_socket() ||
        !private_->set_options() || !GripperLinkSupport::set_non_blocking(private_->socket_) ||
        !private_->connect_to(parameters[1], parameters[2])) {
        return private_->abandon_open();
    }
    set_readable_descriptor(private_->socket_);
    return true;
}

bool GripperTCPClientCommunicationControl::handshake_check() {
    return true;
}

bool GripperTCPClientCommunicationControl::is_alive() {
    return true;
}

bool GripperTCPClientCommunicationControl::close() {
    if (private_->support_.already_closed(private_->socket_)) {
        return true;
    }
    set_readable_descriptor(-1);
    if (0 != shutdown(private_->socket_, SHUT_RDWR)) {
        const int error = errno;
        GRIPPER_LOG("E", "0 != shutdown(private_->socket_, SHUT_RDWR)");
        GRIPPER_LOG_ERRNO("E", error);
    }
    private_->support_.close_descriptor(private_->socket_);
    return true;
}

std::vector<uint8_t> GripperTCPClientCommunicationControl::read(int length) {
    return private_->support_.read(private_->socket_, length);
}

std::vector<uint8_t> GripperTCPClientCommunicationControl::write_read(
    bool set, int read_length, const std::vector<uint8_t>& write_stream) {
    std::vector<uint8_t> answer;
    if (!private_->support_.ready_for_exchange(private_->socket_, read_length) ||
        !private_->drop_stale_bytes() || !private_->support_.send_request(write_stream) ||
        !private_->wait_for_answer(read_length, write_stream, answer) ||
        !private_->check_answer(set, write_stream, answer)) {
        return std::vector<uint8_t>();
    }
    return answer;
}

bool GripperTCPClientCommunicationControl::write(const std::vector<uint8_t>& write_stream) {
    return private_->support_.write(private_->socket_, write_stream);
}

int GripperTCPClientCommunicationControl::available() {
    return private_->support_.available(private_->socket_);
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
