#ifndef GRIPPER_USB_SERIALPORT_COMMUNICATION_CONTROL_H
#define GRIPPER_USB_SERIALPORT_COMMUNICATION_CONTROL_H

#include <memory>
#include <string>
#include <vector>

#include "gripper/gripper_communication_control/gripper_descriptor_link/gripper_descriptor_link.h"
#include "gripper/gripper_communication_control/gripper_scan_property/gripper_scan_property.h"

class GripperUSBSerialportCommunicationControlPrivate;

// A gripper on a USB virtual serial port (raw 115200 baud, 8N1): the driver and its byte link in
// one object. Every exchange writes the request again on each of its passes.
class GripperUSBSerialportCommunicationControl : public GripperDescriptorLink {
public:
    GripperUSBSerialportCommunicationControl();
    ~GripperUSBSerialportCommunicationControl() override;

    CommunicationConnection get_communication_connection() override;
    // parameters: connect operation name ("CO_MANUAL"), device path.
    bool open(const std::vector<std::string>& parameters) override;
    bool handshake_check() override;
    bool is_alive() override;
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
    friend class GripperUSBSerialportCommunicationControlPrivate;

    // Steps of one pass of an exchange.
    bool drop_stale_bytes();
    bool send_request(const std::vector<uint8_t>& write_stream);
    bool pass_capped(int count);
    // True when another pass follows, after a pause.
    bool retry_after_time_out(int read_length, const std::vector<uint8_t>& write_stream, int count);
    bool answer_accepted(bool set, const std::vector<uint8_t>& write_stream,
                         const std::vector<uint8_t>& answer, int count);

    static const GripperScanProperty scan_property_;
    std::unique_ptr<GripperUSBSerialportCommunicationControlPrivate> private_;
};

#endif
