#ifndef TESTS_TCP_LINK_LOOPBACK_SERVER_H
#define TESTS_TCP_LINK_LOOPBACK_SERVER_H

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <string>
#include <vector>

// A listening socket on 127.0.0.1 on which the test plays the gripper's TCP server, talking to
// the one client it accepts from the test's own thread.
class LoopbackServer {
public:
    explicit LoopbackServer(int backlog = 4) : listener_(socket(AF_INET, SOCK_STREAM, 0)) {
        struct sockaddr_in address = loopback(0);
        socklen_t size = sizeof(address);
        bind(listener_, reinterpret_cast<struct sockaddr*>(&address), size);
        listen(listener_, backlog);
        getsockname(listener_, reinterpret_cast<struct sockaddr*>(&address), &size);
        port_ = ntohs(address.sin_port);
    }

    ~LoopbackServer() {
        for (int fd : {client_, queued_, listener_}) {
            if (fd >= 0) {
                ::close(fd);
            }
        }
    }

    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    std::string port() const { return std::to_string(port_); }

    // A port on 127.0.0.1 that nothing listens on.
    static std::string unused_port() { return LoopbackServer().port(); }

    // Connects a client that is never accepted. With a backlog of 0 it fills the queue, so
    // later connection attempts go unanswered.
    bool fill_backlog() {
        queued_ = socket(AF_INET, SOCK_STREAM, 0);
        struct sockaddr_in address = loopback(port_);
        return 0 == connect(queued_, reinterpret_cast<struct sockaddr*>(&address), sizeof(address));
    }

    bool accept_client(int millis = WAIT_MILLIS) {
        client_ = readable(listener_, millis) ? accept(listener_, nullptr, nullptr) : -1;
        return client_ >= 0;
    }

    // Exactly length bytes from the client, or fewer when they do not come in time.
    std::vector<uint8_t> receive(size_t length) {
        std::vector<uint8_t> bytes(length);
        size_t received = 0;
        while (received < length && readable(client_, WAIT_MILLIS)) {
            const ssize_t size = recv(client_, &bytes[received], length - received, 0);
            if (size <= 0) {
                break;
            }
            received += size;
        }
        bytes.resize(received);
        return bytes;
    }

    // Bytes from the client that wait to be received.
    int pending() const {
        int length = 0;
        ioctl(client_, FIONREAD, &length);
        return length;
    }

    bool send(const std::vector<uint8_t>& bytes) {
        return static_cast<ssize_t>(bytes.size()) ==
               ::send(client_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    }

    // Drops the connection with a reset instead of an orderly close.
    void reset_client() {
        const struct linger linger = {1, 0};
        setsockopt(client_, SOL_SOCKET, SO_LINGER, &linger, sizeof(linger));
        ::close(client_);
        client_ = -1;
    }

    // TCP_ESTABLISHED, TCP_CLOSE_WAIT, TCP_CLOSE ... for the accepted connection.
    int client_state() const {
        struct tcp_info info = {};
        socklen_t size = sizeof(info);
        getsockopt(client_, IPPROTO_TCP, TCP_INFO, &info, &size);
        return info.tcpi_state;
    }

private:
    static const int WAIT_MILLIS = 5000;

    static struct sockaddr_in loopback(uint16_t port) {
        struct sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(port);
        return address;
    }

    static bool readable(int fd, int millis) {
        struct pollfd ready = {fd, POLLIN, 0};
        return 1 == poll(&ready, 1, millis);
    }

    int listener_;
    int client_ = -1;
    int queued_ = -1;
    uint16_t port_ = 0;
};

#endif
