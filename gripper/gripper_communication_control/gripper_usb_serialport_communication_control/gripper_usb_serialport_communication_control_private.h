#ifndef GRIPPER_USB_SERIALPORT_COMMUNICATION_CONTROL_PRIVATE_H
#define GRIPPER_USB_SERIALPORT_COMMUNICATION_CONTROL_PRIVATE_H

#include <termios.h>

#include <string>
#include <vector>

#include "gripper/gripper_communication_control/gripper_link_support/gripper_link_support.h"
#include "gripper/gripper_communication_control/gripper_usb_serialport_communication_control/gripper_usb_serialport_communication_control.h"

// The port descriptor of a serial link and the steps its open and its exchange are made of;
// the steps it shares with the TCP link are in support_.
class GripperUSBSerialportCommunicationControlPrivate {
public:
    // What one pass of an exchange (write, then wait for the answer) leads to.
    enum class Pass { ANSWERED, AGAIN, STOP };

    explicit GripperUSBSerialportCommunicationControlPrivate(
        GripperUSBSerialportCommunicationControl* parent);
    ~GripperUSBSerialportCommunicationControlPrivate();

    // Open steps of the port itself, in order; each logs its failure.
    bool open_port(const std::string& path);
    bool raise_dtr();
    bool configure_port();
    bool abandon_open();

    Pass run_pass(bool set, int read_length, const std::vector<uint8_t>& write_stream, int count,
                  std::vector<uint8_t>& answer);

    GripperUSBSerialportCommunicationControl* parent_;
    int fd_;
    GripperLinkSupport support_;

private:
    bool read_attributes(struct termios& termios);
    void make_raw(struct termios& termios);
    bool set_speed(struct termios& termios);
    bool apply_attributes(const struct termios& termios);

    bool drop_stale_bytes();
    bool send_request(const std::vector<uint8_t>& write_stream);
    bool retry_cap_reached(int count);
    Pass check_answer(bool set, const std::vector<uint8_t>& write_stream,
                      const std::vector<uint8_t>& answer, int count);
    Pass after_time_out(int read_length, const std::vector<uint8_t>& write_stream, int count);
};

#endif
