#ifndef GRIPPER_TCP_CLIENT_COMMUNICATION_CONTROL_H
#define GRIPPER_TCP_CLIENT_COMMUNICATION_CONTROL_H

#include <memory>
#include <string>
#include <vector>

#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control.h"
#include "gripper/gripper_communication_control/gripper_scan_property/gripper_scan_property.h"

class GripperTCPClientCommunicationControlPrivate;

// A gripper behind a TCP server (for example a serial-to-Ethernet adapter): the driver and its
// byte link in one object. Every exchange writes the request once and waits for the answer
// several times.
class GripperTCPClientCommunicationControl : public GripperLogicControl {
public:
    GripperTCPClientCommunicationControl();
    ~GripperTCPClientCommunicationControl() override;

    CommunicationConnection get_communication_connection() override;
    // parameters: connect operation name ("CO_MANUAL"), IPv4 address, port.
    bool open(const std::vector<std::string>& parameters) override;
    bool handshake_check() override;
    bool is_alive() override;
    // Closing resets the connection rather than ending it in order.
    bool close() override;
    std::vector<uint8_t> read(int length) override;
    std::vector<uint8_t> write_read(bool set, int read_length,
                                    const std::vector<uint8_t>& write_stream) override;
    bool write(const std::vector<uint8_t>& write_stream) override;
    int available() override;
    int get_write_retry_max_count() override;
    int get_wait_retry_max_count() override;
    int get_alive_retry_max_count() override;
    int get_default_wait_for_length_available_interval() override;

private:
    friend class GripperTCPClientCommunicationControlPrivate;
    static const GripperScanProperty scan_property_;
    std::unique_ptr<GripperTCPClientCommunicationControlPrivate> private_;
};

#endif
