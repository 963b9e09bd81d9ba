#ifndef GRIPPER_TCP_CLIENT_COMMUNICATION_CONTROL_H
#define GRIPPER_TCP_CLIENT_COMMUNICATION_CONTROL_H

#include <memory>
#include <string>
#include <vector>

#include "gripper/gripper_communication_control/gripper_descriptor_link/gripper_descriptor_link.h"
#include "gripper/gripper_communication_control/gripper_scan_property/gripper_scan_property.h"

class GripperTCPClientCommunicationControlPrivate;

// A gripper behind a TCP server (for example a serial-to-Ethernet adapter): the driver and its
// byte link in one object. Every exchange writes the request once and waits for the answer
// several times.
class GripperTCPClientCommunicationControl : public GripperDescriptorLink {
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
    int get_write_retry_max_count() override;
    int get_wait_retry_max_count() override;
    int get_alive_retry_max_count() override;
    int get_default_wait_for_length_available_interval() override;

private:
    friend class GripperTCPClientCommunicationControlPrivate;

    // Steps of an exchange: the request is written once, then its answer awaited.
    bool drop_stale_bytes();
    bool send_request(const std::vector<uint8_t>& write_stream);
    bool wait_for_answer(int read_length, const std::vector<uint8_t>& write_stream,
                         std::vector<uint8_t>& answer);

    static const GripperScanProperty scan_property_;
    std::unique_ptr<GripperTCPClientCommunicationControlPrivate> private_;
};

#endif
