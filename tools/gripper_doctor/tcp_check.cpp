#include "tools/gripper_doctor/tcp_check.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>

#include "gripper/gripper_common/system_error/system_error.h"

namespace gripper_doctor {
namespace {

typedef std::chrono::steady_clock Clock;

long millis_since(Clock::time_point start) {
    return static_cast<long>(
        std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count());
}

Finding refused(const std::string& where, uint16_t port) {
    return make_finding(
        "tcp_refused",
        where + " refused the connection: nothing listens on port " + std::to_string(port),
        "check the port in the adapter's settings and that its TCP server is "
        "on; the port on the Setting page must match");
}

Finding slow(const std::string& where, long millis) {
    return make_finding("tcp_slow",
                        where + " accepted the connection only after " + std::to_string(millis) +
                            " ms; the plug-in gives up after " +
                            std::to_string(TcpCheck::PLUGIN_CONNECT_MILLIS) + " ms",
                        "shorten the path to the adapter (no Wi-Fi, no busy switches) and try "
                        "again");
}

const char* how_dropped(int error) {
    if (ECONNREFUSED == error) {
        return "refuses the next one";
    }
    return ECONNRESET == error ? "resets it" : "closes it";
}

}  // namespace

Finding TcpCheck::diagnose(const std::string& host, uint16_t port, int timeout_ms) {
    const Clock::time_point start = Clock::now();
    int fd = -1;
    const int error = open_connection(host, port, timeout_ms, fd);
    const long millis = millis_since(start);
    if (fd >= 0) {
        ::close(fd);
    }
    const std::string where = host + ":" + std::to_string(port);
    if (ECONNREFUSED == error) {
        return refused(where, port);
    }
    if (EHOSTUNREACH == error || ENETUNREACH == error || EHOSTDOWN == error) {
        return make_finding("tcp_unreachable",
                            where + " is unreachable: " + system_error_text(error),
                            "check the address, the cable, and that the robot and the adapter "
                            "are in the same subnet");
    }
    if (ETIMEDOUT == error) {
        return make_finding(
            "tcp_timeout",
            where + " did not answer the connection within " + std::to_string(timeout_ms) + " ms",
            "check the address, the cable and the adapter's power; a firewall "
            "may drop the connection");
    }
    if (0 == error) {
        return slow(where, millis);
    }
    return make_finding("tcp_failed",
                        where + ": the connection failed: " + system_error_text(error),
                        "check the address and the robot's network settings");
}

Finding TcpCheck::drops_client(const std::string& host, uint16_t port, const Bytes& request,
                               int wait_ms) {
    int fd = -1;
    open_connection(host, port, wait_ms, fd);
    const int error = fd < 0 ? ECONNREFUSED : answer_error(fd, request, wait_ms);
    if (fd >= 0) {
        ::close(fd);
    }
    if (0 == error) {
        return Finding();
    }
    const std::string where = host + ":" + std::to_string(port);
    return make_finding(
        "tcp_dropped",
        where + " accepts a connection, then " + how_dropped(error) + " instead of answering",
        "the adapter may serve one client at a time: close the other connection "
        "(on the pendant: disconnect the gripper on the Setting page), or "
        "restart the adapter");
}

int TcpCheck::open_connection(const std::string& host, uint16_t port, int timeout_ms, int& fd) {
    struct sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    if (1 != inet_pton(AF_INET, host.c_str(), &address.sin_addr)) {
        return EINVAL;
    }
    fd = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (fd < 0) {
        return errno;
    }
    int error = 0;
    if (0 != ::connect(fd, reinterpret_cast<struct sockaddr*>(&address), sizeof(address))) {
        error = EINPROGRESS == errno ? wait_connected(fd, timeout_ms) : errno;
    }
    if (0 != error) {
        ::close(fd);
        fd = -1;
    }
    return error;
}

int TcpCheck::wait_connected(int fd, int timeout_ms) {
    struct pollfd ready = {fd, POLLOUT, 0};
    const int result = ::poll(&ready, 1, timeout_ms);
    if (result <= 0) {
        return 0 == result ? ETIMEDOUT : errno;
    }
    int error = 0;
    socklen_t size = sizeof(error);
    return 0 == ::getsockopt(fd, SOL_SOCKET, SO_ERROR, &error, &size) ? error : errno;
}

int TcpCheck::answer_error(int fd, const Bytes& request, int wait_ms) {
    if (::send(fd, request.data(), request.size(), MSG_NOSIGNAL) < 0) {
        return errno;
    }
    struct pollfd ready = {fd, POLLIN, 0};
    if (1 != ::poll(&ready, 1, wait_ms)) {
        return 0;
    }
    uint8_t buffer[64];
    const ssize_t size = ::recv(fd, buffer, sizeof(buffer), 0);
    if (size < 0) {
        return errno;
    }
    return 0 == size ? EPIPE : 0;
}

}  // namespace gripper_doctor
