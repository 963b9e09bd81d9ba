#ifndef GRIPPER_TCP_CLIENT_COMMUNICATION_CONTROL_PRIVATE_H
#define GRIPPER_TCP_CLIENT_COMMUNICATION_CONTROL_PRIVATE_H

#include <sys/socket.h>

#include <string>
#include <vector>

#include "gripper/gripper_communication_control/gripper_tcp_client_communication_control/gripper_tcp_client_communication_control.h"

// The steps a TCP client link's open is made of, on the socket the link keeps.
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

    GripperTCPClientCommunicationControl* parent_;
    // The link's descriptor.
    int& socket_;

private:
    bool set_option(int level, int name, const void* value, socklen_t size, const char* condition);
    bool wait_connected();
};

#endif
