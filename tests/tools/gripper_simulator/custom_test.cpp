// The custom-frame gripper over a real loopback TCP connection.

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/test_support/fd_stream.h"
#include "tests/test_support/wait_until.h"
#include "tools/gripper_simulator/simulator.h"

namespace {

using gripper_sim::Fault;

const uint8_t kId = 3;
const uint8_t kRead = 0, kWrite = 1;
const int kMoving = 0, kArrived = 2, kDetected = 3;

// A 14-byte frame with value little-endian in bytes 9-12.
Bytes frame(uint8_t id, uint8_t primary, uint8_t secondary, uint8_t read_write, int32_t value = 0) {
    Bytes bytes = {0xFF, 0xFE, 0xFD, 0xFC, id, primary, secondary, read_write, 0};
    for (int shift = 0; shift < 32; shift += 8) {
        bytes.push_back(static_cast<uint8_t>(static_cast<uint32_t>(value) >> shift));
    }
    bytes.push_back(0xFB);
    return bytes;
}

int32_t value_of(const Bytes& frame) {
    return frame.size() < 13 ? -1
                             : static_cast<int32_t>(frame[9] | frame[10] << 8 | frame[11] << 16 |
                                                    static_cast<uint32_t>(frame[12]) << 24);
}

const Bytes kIdRequest = frame(0, 0x12, 0x01, kRead);
const Bytes kIdAnswer = frame(kId, 0x12, 0x01, kRead, kId);

class CustomTcpTest : public ::testing::Test {
protected:
    void SetUp() override {
        gripper_sim::GripperOptions options;
        options.id = kId;
        options.position_max = 100;
        options.init_ms = 20;
        options.full_stroke_ms = 400;
        options.late_ms = 300;
        options.object_at = 50;
        ASSERT_EQ(1, simulator_.add_custom_tcp(options));
        client_ = connect_loopback(simulator_.tcp_port(1));
        ASSERT_TRUE(client_.valid());
    }

    // The answer to a request, which must be its echo for writes.
    Bytes ask(uint8_t primary, uint8_t secondary, uint8_t read_write, int32_t value = 0) {
        const Bytes request = frame(kId, primary, secondary, read_write, value);
        const Bytes answer = client_.write(request) ? client_.read(14) : Bytes();
        EXPECT_TRUE(kRead == read_write || request == answer);
        return answer;
    }

    int read_value(uint8_t primary, uint8_t secondary) {
        const Bytes answer = ask(primary, secondary, kRead);
        return 14 == answer.size() ? value_of(answer) : -1;
    }

    void initialise() {
        ask(0x08, 0x02, kWrite, 1);
        ASSERT_TRUE(wait_until([&] { return 1 == read_value(0x08, 0x02); }));
    }

    gripper_sim::Simulator simulator_;
    FdStream client_;
};

// An object at 50 stops a move to 100 half way. Its drop, announced unasked or while a request
// waits for its answer, is in the driver's tests.
TEST_F(CustomTcpTest, MovesOnlyOnceInitialisedUntilAnObjectStopsIt) {
    ASSERT_TRUE(client_.write(kIdRequest));
    EXPECT_EQ(kIdAnswer, client_.read(14));
    EXPECT_EQ(0, read_value(0x08, 0x02));
    ask(0x06, 0x02, kWrite, 80);
    EXPECT_EQ(0, simulator_.snapshot(1).target);

    initialise();
    EXPECT_EQ(kArrived, read_value(0x0F, 0x01));
    ask(0x06, 0x02, kWrite, 100);
    int feedback = -1;
    std::vector<int> positions;
    wait_until([&] {
        feedback = read_value(0x0F, 0x01);
        positions.push_back(read_value(0x06, 0x02));
        return kMoving != feedback;
    });
    EXPECT_EQ(kDetected, feedback);
    EXPECT_EQ(50, read_value(0x06, 0x02));
    EXPECT_TRUE(std::any_of(positions.begin(), positions.end(), [](int position) {
        return position > 0 && position < 50;
    })) << "no position seen on the way";
}

TEST_F(CustomTcpTest, SettingsReadBackWhatWasWritten) {
    // Force, closing force, speed and angle: written, then read from the same register.
    const int settings[][3] = {
        {0x05, 0x04, 60}, {0x05, 0x02, 45}, {0x09, 0x02, 30}, {0x07, 0x02, -90}};
    for (const auto& setting : settings) {
        ask(setting[0], setting[1], kWrite, setting[2]);
        EXPECT_EQ(setting[2], read_value(setting[0], setting[1])) << setting[0];
    }
    EXPECT_EQ(30, simulator_.snapshot(1).speed);
    // Slow mode is switched on by 11 01 and off by 11 02, and read at 11 01.
    ask(0x11, 0x01, kWrite);
    EXPECT_EQ(1, read_value(0x11, 0x01));
    ask(0x11, 0x02, kWrite);
    EXPECT_EQ(0, read_value(0x11, 0x01));
    EXPECT_EQ(kArrived, read_value(0x0F, 0x02));
}

// A new client replaces the old one. Vanish and reset are in the doctor's and the tour's tests.
TEST_F(CustomTcpTest, ANewClientReplacesTheOldOne) {
    FdStream second = connect_loopback(simulator_.tcp_port(1));
    EXPECT_EQ(0, client_.wait_closed());
    ASSERT_TRUE(second.write(kIdRequest));
    EXPECT_EQ(kIdAnswer, second.read(14));
}

TEST_F(CustomTcpTest, DamagedAndLateAnswersShowTheirFault) {
    for (Fault fault : {Fault::bad_crc, Fault::garbage}) {
        simulator_.set_fault(1, fault);
        ASSERT_TRUE(client_.write(kIdRequest));
        const Bytes answer = client_.read(14);
        ASSERT_EQ(14u, answer.size());
        EXPECT_TRUE(kIdAnswer != answer && (Fault::garbage == fault || 0xFB != answer[13]));
    }

    simulator_.set_fault(1, Fault::late);
    const long answers = simulator_.snapshot(1).answers_sent;
    ASSERT_TRUE(client_.write(kIdRequest));
    ASSERT_TRUE(wait_until([&] { return 3 == simulator_.snapshot(1).frames_received; }));
    EXPECT_EQ(answers, simulator_.snapshot(1).answers_sent);
    EXPECT_EQ(kIdAnswer, client_.read(14));
}

}  // namespace
