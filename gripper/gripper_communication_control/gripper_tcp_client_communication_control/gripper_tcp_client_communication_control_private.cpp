#include "gripper/gripper_communication_control/gripper_tcp_client_communication_control/gripper_tcp_client_communication_control_private.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "gripper/gripper_common/miscellaneous_utility/miscellaneous_utility.h"
#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "gripper/gripper_common/system_error/system_error.h"

namespace {

// The connect time-out is twice the wait interval.
const int CONNECT_TIMEOUT_FACTOR = 2;

// No SIGPIPE from a peer that has gone: the failure is reported as a write exception.
ssize_t send_without_signal(int descriptor, const void* data, size_t size) {
    return send(descriptor, data, size, MSG_NOSIGNAL);
}

ssize_t receive(int descriptor, void* data, size_t size) {
    return ::recv(descriptor, data, size, 0);
}

const GripperLinkSupport::Traits TCP_LINK = {
    "private_->socket_",
    "W",
    3,
    &send_without_signal,
    &receive,
    "length != ::recv(private_->socket_, byte_stream.data(), byte_stream.size(), 0)",
};

}  // namespace

GripperTCPClientCommunicationControlPrivate::GripperTCPClientCommunicationControlPrivate(
    GripperTCPClientCommunicationControl* parent)
    : parent_(parent), socket_(-1), support_(parent, TCP_LINK) {}

GripperTCPClientCommunicationControlPrivate::~GripperTCPClientCommunicationControlPrivate() {
    if (-1 != socket_) {
        ::close(socket_);
    }
}

bool GripperTCPClientCommunicationControlPrivate::accept_address(const std::string& ip,
                                                                 const std::string& port) {
    if (!MiscellaneousUtility::is_valid_ip(ip)) {
        GRIPPER_LOG("W", "!MiscellaneousUtility::is_valid_ip(ip)");
        parent_->keep_failure(GripperLinkFailure::LF_PARAMETERS, 0,
                              "!MiscellaneousUtility::is_valid_ip(ip)");
        GRIPPER_LOG("W", "ip = %s", ip.c_str());
        return false;
    }
    if (!MiscellaneousUtility::is_valid_port(port)) {
        GRIPPER_LOG("W", "!MiscellaneousUtility::is_valid_port(port)");
        parent_->keep_failure(GripperLinkFailure::LF_PARAMETERS, 0,
                              "!MiscellaneousUtility::is_valid_port(port)");
        GRIPPER_LOG("W", "port = %s", port.c_str());
        return false;
    }
    return true;
}

bool GripperTCPClientCommunicationControlPrivate::create_socket() {
    // Close-on-exec: a program the pendant starts must not keep the connection open.
    socket_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (socket_ < 0) {
        const int error = errno;
        socket_ = -1;
        GRIPPER_LOG("W", "private_->socket_ < 0");
        GRIPPER_LOG_ERRNO("W", error);
        parent_->keep_failure(GripperLinkFailure::LF_OPEN, error, "private_->socket_ < 0");
        return false;
    }
    return true;
}

bool GripperTCPClientCommunicationControlPrivate::set_options() {
    const int opt = 1;
    // Linger on with a time of 0: closing resets the connection at once.
    const struct linger linger = {1, 0};
    return set_option(SOL_SOCKET, SO_REUSEADDR, &opt, sizeof(opt),
                      "setsockopt(private_->socket_, SOL_SOCKET, SO_REUSEADDR, (const void *)&opt "
                      ", sizeof(opt)) < 0") &&
           set_option(SOL_SOCKET, SO_LINGER, &linger, sizeof(linger),
                      "setsockopt(private_->socket_, SOL_SOCKET, SO_LINGER, (const void *)&linger "
                      ", sizeof(linger)) < 0") &&
           set_option(IPPROTO_TCP, TCP_NODELAY, &opt, sizeof(opt),
                      "setsockopt(private_->socket_, IPPROTO_TCP, TCP_NODELAY, (const void *)&opt "
                      ", sizeof(opt)) < 0");
}

bool GripperTCPClientCommunicationControlPrivate::set_option(int level, int name, const void* value,
                                                             socklen_t size,
                                                             const char* condition) {
    if (setsockopt(socket_, level, name, value, size) < 0) {
        const int error = errno;
        GRIPPER_LOG("W", "%s", condition);
        GRIPPER_LOG_ERRNO("W", error);
        parent_->keep_failure(GripperLinkFailure::LF_OPEN, error, condition);
        return false;
    }
    return true;
}

bool GripperTCPClientCommunicationControlPrivate::connect_to(const std::string& ip,
                                                             const std::string& port) {
    struct sockaddr_in address;
    memset(&address, 0, sizeof(address));
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(strtol(port.c_str(), nullptr, 10)));
    // The address check reads only the leading numbers; the dotted text itself must be clean.
    if (1 != inet_pton(AF_INET, ip.c_str(), &address.sin_addr)) {
        GRIPPER_LOG("W", "1 != inet_pton(AF_INET, ip.c_str(), &address.sin_addr)");
        parent_->keep_failure(GripperLinkFailure::LF_PARAMETERS, 0,
                              "1 != inet_pton(AF_INET, ip.c_str(), &address.sin_addr)");
        return false;
    }
    GRIPPER_LOG("D", "ip.c_str() = %s", ip.c_str());
    GRIPPER_LOG("D", "port.c_str() = %s", port.c_str());
    if (0 == connect(socket_, reinterpret_cast<struct sockaddr*>(&address), sizeof(address))) {
        return true;
    }
    const int error = errno;
    if (EINPROGRESS != error) {
        GRIPPER_LOG("W", "EINPROGRESS != errno");
        GRIPPER_LOG_ERRNO("W", error);
        parent_->keep_failure(GripperLinkFailure::LF_CONNECT, error, "EINPROGRESS != errno");
        return false;
    }
    return wait_connected();
}

bool GripperTCPClientCommunicationControlPrivate::wait_connected() {
    struct pollfd writable = {socket_, POLLOUT, 0};
    const int timeout =
        parent_->get_default_wait_for_length_available_interval() * CONNECT_TIMEOUT_FACTOR;
    const int result = poll(&writable, 1, timeout);
    if (result <= 0) {
        const int poll_error = result < 0 ? errno : ETIMEDOUT;
        GRIPPER_LOG("W", "connect timeout result = %d", result);
        parent_->keep_failure(GripperLinkFailure::LF_CONNECT, poll_error,
                              "connect timeout result = " + std::to_string(result));
        return false;
    }
    // Writable also means refused or unreachable: the pending error tells which.
    int error = 0;
    socklen_t size = sizeof(error);
    if (0 != getsockopt(socket_, SOL_SOCKET, SO_ERROR, &error, &size) || 0 != error) {
        GRIPPER_LOG("W", "0 != error");
        GRIPPER_LOG_ERRNO("W", error);
        parent_->keep_failure(GripperLinkFailure::LF_CONNECT, error, "0 != error");
        return false;
    }
    return true;
}

bool GripperTCPClientCommunicationControlPrivate::abandon_open() {
    parent_->close();
    return false;
}

bool GripperTCPClientCommunicationControlPrivate::drop_stale_bytes() {
    if (parent_->available() <= 0) {
        return true;
    }
    GRIPPER_LOG("W", "available() > 0");
    return support_.drop_buffer();
}

bool GripperTCPClientCommunicationControlPrivate::wait_for_answer(
    int read_length, const std::vector<uint8_t>& write_stream, std::vector<uint8_t>& answer) {
    const int max_count = parent_->get_wait_retry_max_count();
    const int interval = parent_->get_default_wait_for_length_available_interval();
    for (int count = 0; count < max_count; ++count) {
        if (support_.retry_cap_reached(count)) {
            return false;
        }
        if (support_.await_answer(read_length, interval, answer)) {
            return true;
        }
        support_.log_wait_state(write_stream, count);
        GRIPPER_LOG(
            "W", "!waitForLengthAvailable(readLength, getDefaultWaitForLengthAvailableInterval())");
    }
    support_.report_exhaustion();
    return false;
}

bool GripperTCPClientCommunicationControlPrivate::check_answer(
    bool set, const std::vector<uint8_t>& write_stream, const std::vector<uint8_t>& answer) {
    return support_.answer_present(answer) && support_.answer_matches(set, write_stream, answer);
}
