#include "tools/gripper_simulator/tcp_port.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

namespace gripper_sim {

TcpPort::~TcpPort() {
    close();
}

bool TcpPort::open() {
    close();
    if (!listen_on_port()) {
        close();
        return false;
    }
    return true;
}

void TcpPort::close() {
    drop_client(true);
    if (listener_ >= 0) {
        ::close(listener_);
        listener_ = -1;
    }
}

void TcpPort::reset_client() {
    drop_client(true);
    // Connections still waiting in the backlog were made before the reset too.
    while (listener_ >= 0) {
        client_ = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (client_ < 0) {
            return;
        }
        drop_client(true);
    }
}

void TcpPort::add_poll_fds(std::vector<pollfd>& fds) const {
    // The client comes first: serving the listener may replace it.
    if (client_ >= 0) {
        fds.push_back(pollfd{client_, POLLIN, 0});
    }
    if (listener_ >= 0) {
        fds.push_back(pollfd{listener_, POLLIN, 0});
    }
}

Bytes TcpPort::serve(const pollfd* fds, size_t count) {
    Bytes bytes;
    for (size_t i = 0; i < count; ++i) {
        if (fds[i].revents == 0) {
            continue;
        }
        if (fds[i].fd == client_) {
            bytes = receive();
        } else if (fds[i].fd == listener_) {
            accept_client();
        }
    }
    return bytes;
}

void TcpPort::send(const Bytes& frame) {
    if (client_ >= 0 && !frame.empty()) {
        const ssize_t sent = ::send(client_, frame.data(), frame.size(), MSG_NOSIGNAL);
        (void)sent;
    }
}

std::string TcpPort::endpoint() const {
    return "127.0.0.1:" + std::to_string(port_);
}

bool TcpPort::listen_on_port() {
    listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    const int on = 1;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port_);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof(address);
    if (listener_ < 0 || ::setsockopt(listener_, SOL_SOCKET, SO_REUSEADDR, &on, sizeof(on)) != 0 ||
        ::bind(listener_, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0 ||
        ::listen(listener_, 4) != 0 ||
        ::getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
        return false;
    }
    port_ = ntohs(address.sin_port);
    return true;
}

void TcpPort::accept_client() {
    const int client = ::accept4(listener_, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (client < 0) {
        return;
    }
    drop_client(false);
    const int on = 1;
    ::setsockopt(client, IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on));
    client_ = client;
    client_changed_ = true;
}

bool TcpPort::take_client_change() {
    const bool changed = client_changed_;
    client_changed_ = false;
    return changed;
}

Bytes TcpPort::receive() {
    uint8_t buffer[512];
    const ssize_t size = ::recv(client_, buffer, sizeof(buffer), 0);
    if (size > 0) {
        return Bytes(buffer, buffer + size);
    }
    if (size == 0 || (errno != EAGAIN && errno != EINTR)) {
        drop_client(false);
    }
    return {};
}

void TcpPort::drop_client(bool reset) {
    if (client_ < 0) {
        return;
    }
    if (reset) {
        const linger abort_on_close{1, 0};
        ::setsockopt(client_, SOL_SOCKET, SO_LINGER, &abort_on_close, sizeof(abort_on_close));
    }
    ::close(client_);
    client_ = -1;
}

}  // namespace gripper_sim
