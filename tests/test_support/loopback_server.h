#ifndef TESTS_TEST_SUPPORT_LOOPBACK_SERVER_H
#define TESTS_TEST_SUPPORT_LOOPBACK_SERVER_H

#include <netinet/tcp.h>

#include <string>

#include "tests/test_support/fd_stream.h"

// A listening socket on 127.0.0.1 and the one client it accepts, served from the test's thread.
class LoopbackServer {
public:
    explicit LoopbackServer(int backlog = 4) : listener_(::socket(AF_INET, SOCK_STREAM, 0)) {
        struct sockaddr_in address = loopback_address(0);
        socklen_t size = sizeof(address);
        ::bind(listener_.fd(), reinterpret_cast<struct sockaddr*>(&address), size);
        ::listen(listener_.fd(), backlog);
        ::getsockname(listener_.fd(), reinterpret_cast<struct sockaddr*>(&address), &size);
        port_ = ntohs(address.sin_port);
    }

    std::string port() const { return std::to_string(port_); }
    // A port on 127.0.0.1 that nothing listens on.
    static std::string unused_port() { return LoopbackServer().port(); }

    // Connects a client that is never accepted. With a backlog of 0 it fills the queue, so
    // later connection attempts go unanswered.
    bool fill_backlog() {
        queued_ = connect_loopback(port_);
        return queued_.valid();
    }

    bool accept_client(int millis = 5000) {
        client_.reset(listener_.readable(millis) ? ::accept(listener_.fd(), nullptr, nullptr) : -1);
        return client_.valid();
    }

    // The accepted client's stream.
    FdStream& client() { return client_; }

    // Drops the connection with a reset instead of an orderly close.
    void reset_client() {
        const struct linger linger = {1, 0};
        setsockopt(client_.fd(), SOL_SOCKET, SO_LINGER, &linger, sizeof(linger));
        client_.reset();
    }

    // TCP_ESTABLISHED, TCP_CLOSE_WAIT, TCP_CLOSE ... for the accepted connection.
    int client_state() const {
        struct tcp_info info = {};
        socklen_t size = sizeof(info);
        getsockopt(client_.fd(), IPPROTO_TCP, TCP_INFO, &info, &size);
        return info.tcpi_state;
    }

private:
    FdStream listener_;
    FdStream client_;
    FdStream queued_;
    uint16_t port_ = 0;
};

#endif
