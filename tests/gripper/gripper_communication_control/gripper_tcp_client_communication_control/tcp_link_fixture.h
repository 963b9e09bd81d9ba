#ifndef TESTS_TCP_LINK_FIXTURE_H
#define TESTS_TCP_LINK_FIXTURE_H

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "gripper/gripper_communication_control/gripper_tcp_client_communication_control/gripper_tcp_client_communication_control.h"
#include "gripper/gripper_protocol/gripper_custom_protocol/gripper_custom_protocol.h"
#include "tests/gripper/gripper_communication_control/gripper_tcp_client_communication_control/loopback_server.h"
#include "tests/test_support/log_capture.h"
#include "tests/test_support/recording_observer.h"

// The TCP link with the custom frame protocol already chosen, as after a handshake.
class TcpLink : public GripperTCPClientCommunicationControl {
public:
    TcpLink() { set_protocol(new GripperCustomProtocol()); }
    void set_protocol(GripperProtocol* protocol) {
        delete gripper_protocol_;
        gripper_protocol_ = protocol;
    }
};

inline long count_lines(const LogCapture& log, const std::string& line) {
    const std::vector<std::string> lines = log.lines();
    return std::count(lines.begin(), lines.end(), line);
}

// A TCP link and the loopback server whose gripper the test plays.
class TcpLinkTest : public ::testing::Test {
protected:
    void SetUp() override { link_.add_notify_interface(&observer_); }

    bool open_link() { return link_.open({"CO_MANUAL", "127.0.0.1", server_.port()}); }
    bool connect_link() { return open_link() && server_.accept_client(); }

    std::vector<uint8_t> exchange() {
        return link_.write_read(false, GripperCustomProtocol::FRAME_LENGTH, request_);
    }

    // The request with value in its value field: the gripper's answer to a position read.
    std::vector<uint8_t> answer(uint8_t value) const {
        std::vector<uint8_t> frame = request_;
        frame[GripperCustomProtocol::OFFSET_VALUE] = value;
        return frame;
    }

    // The position read of gripper 1.
    const std::vector<uint8_t> request_ =
        GripperCustomProtocol().build_position_protocol(1, false, 0);
    LogCapture log_;
    LoopbackServer server_;
    RecordingObserver observer_;
    TcpLink link_;
};

#endif
