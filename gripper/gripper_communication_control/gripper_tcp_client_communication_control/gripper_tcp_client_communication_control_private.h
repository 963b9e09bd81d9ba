#ifndef GRIPPER_TCP_CLIENT_COMMUNICATION_CONTROL_PRIVATE_H
#define GRIPPER_TCP_CLIENT_COMMUNICATION_CONTROL_PRIVATE_H

#include <sys/socket.h>

#include <string>
#include <vector>

#include "gripper/gripper_communication_control/gripper_link_support/gripper_link_support.h"
#include "gripper/gripper_communication_control/gripper_tcp_client_communication_control/gripper_tcp_client_communication_control.h"

// The socket of a TCP client link and the steps its open and its exchange are made of; the
// steps it shares with the serial link are in support_.
class GripperTCPClientCommunicationControlPrivate {
public:
    explicit GripperTCPClientCommunicationControlPrivate(
        GripperTCPClientCommunicationControl* parent);
    ~GripperTCPClientCommunicationControlPrivate();

    // Open steps of the socket itself, in order; each logs its failure.
    bool accept_address(const std::string& ip, const std::string& port);
    bool create_socket();
    bool set_options();
    bool connect_to(const std::string& ip, const std::string& port);
    bool abandon_open();

    // Exchange steps of this link: the request is written once, then its answer awaited.
    bool drop_stale_bytes();
    bool wait_for_answer(int read_length, const std::vector<uint8_t>& write_stream,
                         std::vector<uint8_t>& answer);
    bool check_answer(bool set, const std::vector<uint8_t>& write_stream,
                      const std::vector<uint8_t>& answer);

    GripperTCPClientCommunicationControl* parent_;
    int socket_;
    GripperLinkSupport support_;

private:
    bool set_option(int level, int name, const void* value, socklen_t size, const char* condition);
    bool wait_connected();
};

#endif
