#ifndef TOOLS_GRIPPER_SIMULATOR_TCP_PORT_H
#define TOOLS_GRIPPER_SIMULATOR_TCP_PORT_H

#include "tools/gripper_simulator/port.h"

namespace gripper_sim {

// A TCP server on 127.0.0.1 with one client at a time: a new client replaces the old one.
class TcpPort : public Port {
public:
    // Port 0 lets the system pick a free port on the first open; later opens reuse it.
    explicit TcpPort(uint16_t port) : port_(port) {}
    ~TcpPort() override;
    TcpPort(const TcpPort&) = delete;
    TcpPort& operator=(const TcpPort&) = delete;

    bool open() override;
    // Closes the listener and resets the client.
    void close() override;
    bool is_open() const override { return listener_ >= 0; }
    // Closes the client with a reset (linger 0), and so any connection still waiting to be
    // accepted; keeps listening.
    void reset_client() override;
    void add_poll_fds(std::vector<pollfd>& fds) const override;
    Bytes serve(const pollfd* fds, size_t count) override;
    void send(const Bytes& frame) override;
    bool take_client_change() override;
    std::string endpoint() const override;
    uint16_t tcp_port() const override { return port_; }
    const char* kind() const override { return "tcp"; }

private:
    bool listen_on_port();
    void accept_client();
    Bytes receive();
    void drop_client(bool reset);

    uint16_t port_;
    int listener_ = -1;
    int client_ = -1;
    bool client_changed_ = false;
};

}  // namespace gripper_sim

#endif
