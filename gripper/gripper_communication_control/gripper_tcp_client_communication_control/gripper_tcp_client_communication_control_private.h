#ifndef GRIPPER_TCP_CLIENT_COMMUNICATION_CONTROL_PRIVATE_H
#define GRIPPER_TCP_CLIENT_COMMUNICATION_CONTROL_PRIVATE_H

#include <sys/socket.h>

#include <string>
#include <vector>

#include "gripper/gripper_communication_control/gripper_tcp_client_communication_control/gripper_tcp_client_communication_control.h"

// The socket of a TCP client link and the steps its open and its exchange are made of.
class GripperTCPClientCommunicationControlPrivate {
public:
    explicit GripperTCPClientCommunicationControlPrivate(
        GripperTCPClientCommunicationControl* parent);
    ~GripperTCPClientCommunicationControlPrivate();

    // Open steps, in order; each logs its failure.
    bool accept_parameters(const std::vector<std::string>& parameters);
    bool accept_address(const std::string& ip, const std::string& port);
    bool create_socket();
    bool set_options();
    bool set_non_blocking();
    bool connect_to(const std::string& ip, const std::string& port);
    bool abandon_open();

    // True while the socket is open and the link is not in an exception state.
    bool usable();
    // Also refuses an exchange that could not be checked: no protocol or no answer length.
    bool ready_for_exchange(int read_length);
    bool drop_stale_bytes();
    bool send_request(const std::vector<uint8_t>& write_stream);
    bool wait_for_answer(int read_length, const std::vector<uint8_t>& write_stream);
    std::vector<uint8_t> receive_answer(bool set, int read_length,
                                        const std::vector<uint8_t>& write_stream);

    GripperTCPClientCommunicationControl* parent_;
    bool scan_;
    int socket_;

private:
    bool accept_operation(const std::string& operation);
    bool set_option(int level, int name, const void* value, socklen_t size, const char* condition);
    bool wait_connected();
    bool retry_cap_reached(int count);
    void log_time_out(const std::vector<uint8_t>& write_stream, int count);
};

#endif
