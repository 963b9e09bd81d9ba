#ifndef TESTS_SERIAL_LINK_FIXTURE_H
#define TESTS_SERIAL_LINK_FIXTURE_H

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "gripper/gripper_communication_control/gripper_usb_serialport_communication_control/gripper_usb_serialport_communication_control.h"
#include "gripper/gripper_protocol/gripper_modbus_protocol/gripper_modbus_protocol.h"
#include "tests/gripper/gripper_communication_control/gripper_usb_serialport_communication_control/pty_device.h"
#include "tests/test_support/log_capture.h"
#include "tests/test_support/recording_observer.h"

// The serial link with a Modbus protocol already chosen, as after a handshake.
class SerialLink : public GripperUSBSerialportCommunicationControl {
public:
    SerialLink() { set_protocol(new GripperModbusProtocol()); }
    void set_protocol(GripperProtocol* protocol) {
        delete gripper_protocol_;
        gripper_protocol_ = protocol;
    }
    void forget_protocol() { set_protocol(nullptr); }
    void set_retry_cap(bool on) { retry_cap_ = on; }
};

// The Modbus answer to a one-register read request, carrying value.
inline std::vector<uint8_t> modbus_read_answer(const std::vector<uint8_t>& request,
                                               uint16_t value) {
    std::vector<uint8_t> answer = {request[0], 0x03, 0x02, static_cast<uint8_t>(value >> 8),
                                   static_cast<uint8_t>(value & 0xFF)};
    const uint16_t crc = modbus_crc_16(answer);
    answer.push_back(static_cast<uint8_t>(crc & 0xFF));
    answer.push_back(static_cast<uint8_t>(crc >> 8));
    return answer;
}

// A serial link on a pty pair whose device the test plays.
class SerialLinkTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_FALSE(device_.slave_path().empty());
        link_.add_notify_interface(&observer_);
    }

    bool open_link() { return link_.open({"CO_MANUAL", device_.slave_path()}); }

    // True when line ("LEVEL text") was logged.
    bool logged(const std::string& line) const {
        const std::vector<std::string> lines = log_.lines();
        return lines.end() != std::find(lines.begin(), lines.end(), line);
    }

    std::vector<uint8_t> exchange() {
        return link_.write_read(false, GripperModbusProtocol::READ_LENGTH, request_);
    }

    // The position read of gripper 1.
    const std::vector<uint8_t> request_ =
        GripperModbusProtocol().build_position_protocol(1, false, 0);
    LogCapture log_;
    PtyDevice device_;
    RecordingObserver observer_;
    SerialLink link_;
};

#endif
