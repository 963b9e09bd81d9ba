#ifndef GRIPPER_USB_SERIALPORT_COMMUNICATION_CONTROL_PRIVATE_H
#define GRIPPER_USB_SERIALPORT_COMMUNICATION_CONTROL_PRIVATE_H

#include <termios.h>

#include <string>
#include <vector>

#include "gripper/gripper_communication_control/gripper_usb_serialport_communication_control/gripper_usb_serialport_communication_control.h"

// The steps a serial link's open is made of, on the port descriptor the link keeps.
class GripperUSBSerialportCommunicationControlPrivate {
public:
    explicit GripperUSBSerialportCommunicationControlPrivate(
        GripperUSBSerialportCommunicationControl* parent);
    ~GripperUSBSerialportCommunicationControlPrivate();

    // Open steps of the port itself, in order; each logs its failure.
    bool open_port(const std::string& path);
    bool raise_dtr();
    bool configure_port();
    bool abandon_open();

    GripperUSBSerialportCommunicationControl* parent_;
    // The link's descriptor.
    int& fd_;

private:
    bool read_attributes(struct termios& termios);
    void make_raw(struct termios& termios);
    bool set_speed(struct termios& termios);
    bool apply_attributes(const struct termios& termios);
};

#endif
