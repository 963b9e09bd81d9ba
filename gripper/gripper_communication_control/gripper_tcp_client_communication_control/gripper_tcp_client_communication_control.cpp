#include "gripper/gripper_communication_control/gripper_tcp_client_communication_control/gripper_tcp_client_communication_control.h"

#include <sys/socket.h>

#include <cerrno>

#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "gripper/gripper_common/system_error/system_error.h"
#include "gripper/gripper_communication_control/gripper_tcp_client_communication_control/gripper_tcp_client_communication_control_private.h"

// Write 1, wait 4, interval 100 ms.
const GripperScanProperty GripperTCPClientCommunicationControl::scan_property_(1, 4, 100);

GripperTCPClientCommunicationControl::GripperTCPClientCommunicationControl()
    : GripperDescriptorLink("private_->socket_", "W", 3),
      private_(new GripperTCPClientCommunicationControlPrivate(this)) {
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
    if (already_open()) {
        return false;
    }
    if (!accept_parameters(parameters) || !private_->accept_address(parameters[1], parameters[2]) ||
        !private_->create_socket() || !private_->set_options() || !set_non_blocking() ||
        !private_->connect_to(parameters[1], parameters[2])) {
        return private_->abandon_open();
    }
    set_readable_descriptor(descriptor_);
    return true;
}

bool GripperTCPClientCommunicationControl::handshake_check() {
    return true;
}

bool GripperTCPClientCommunicationControl::is_alive() {
    return true;
}

bool GripperTCPClientCommunicationControl::close() {
    if (already_closed()) {
        return true;
    }
    set_readable_descriptor(-1);
    if (0 != shutdown(descriptor_, SHUT_RDWR)) {
        const int error = errno;
        GRIPPER_LOG("E", "0 != shutdown(private_->socket_, SHUT_RDWR)");
        GRIPPER_LOG_ERRNO("E", error);
    }
    close_descriptor();
    return true;
}

// Drops stale bytes, writes the request once, waits for the answer's bytes (up to four times),
// reads them and checks them.
std::vector<uint8_t> GripperTCPClientCommunicationControl::write_read(
    bool set, int read_length, const std::vector<uint8_t>& write_stream) {
    std::vector<uint8_t> answer;
    if (!ready_for_exchange(read_length) || !drop_stale_bytes() || !send_request(write_stream) ||
        !wait_for_answer(read_length, write_stream, answer) || !answer_present(answer) ||
        !answer_matches(set, write_stream, answer)) {
        return std::vector<uint8_t>();
    }
    return answer;
}

// No SIGPIPE from a peer that has gone: the failure is reported as a write exception.
bool GripperTCPClientCommunicationControl::write(const std::vector<uint8_t>& write_stream) {
    if (refuse_write(write_stream)) {
        return false;
    }
    bool written = false;
    if (usable()) {
        const ssize_t size =
            send(descriptor_, write_stream.data(), write_stream.size(), MSG_NOSIGNAL);
        written = check_written(write_stream, size, errno);
    }
    report_written(write_stream, written);
    return written;
}

std::vector<uint8_t> GripperTCPClientCommunicationControl::read(int length) {
    const bool stale = discarding_stale_bytes();
    std::vector<uint8_t> bytes;
    if (ready_to_read(length)) {
        bytes.resize(length);
        const ssize_t size = recv(descriptor_, bytes.data(), bytes.size(), 0);
        check_read(
            bytes, size, errno,
            "length != ::recv(private_->socket_, byte_stream.data(), byte_stream.size(), 0)");
    }
    report_read(bytes, stale);
    return bytes;
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

bool GripperTCPClientCommunicationControl::drop_stale_bytes() {
    if (available() <= 0) {
        return true;
    }
    GRIPPER_LOG("W", "available() > 0");
    return drop_buffer();
}

bool GripperTCPClientCommunicationControl::send_request(const std::vector<uint8_t>& write_stream) {
    if (write(write_stream)) {
        return true;
    }
    report_failed_request(write_stream);
    return false;
}

bool GripperTCPClientCommunicationControl::wait_for_answer(int read_length,
                                                           const std::vector<uint8_t>& write_stream,
                                                           std::vector<uint8_t>& answer) {
    const int max_count = get_wait_retry_max_count();
    const int interval = get_default_wait_for_length_available_interval();
    for (int count = 0; count < max_count; ++count) {
        if (retry_cap_reached(count)) {
            return false;
        }
        if (await_answer(read_length, interval, answer)) {
            return true;
        }
        log_wait_state(write_stream, count);
        GRIPPER_LOG(
            "W", "!waitForLengthAvailable(readLength, getDefaultWaitForLengthAvailableInterval())");
    }
    report_exhaustion();
    return false;
}
