// The custom-frame gripper over a real loopback TCP connection and over a pseudo-terminal.

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <random>
#include <thread>

#include "tests/tools/gripper_simulator/test_support.h"
#include "tools/gripper_simulator/simulator.h"

namespace {

using namespace sim_test;
using gripper_sim::Fault;
using gripper_sim::GripperOptions;
using gripper_sim::Simulator;

constexpr uint8_t kId = 3;
constexpr uint8_t kRead = 0;
constexpr uint8_t kWrite = 1;
constexpr int kMoving = 0;
constexpr int kArrived = 2;
constexpr int kDetected = 3;

GripperOptions quick_options() {
    GripperOptions options;
    options.id = kId;
    options.position_max = 100;
    options.init_ms = 20;
    options.full_stroke_ms = 400;
    options.late_ms = 300;
    return options;
}

class CustomTcpTest : public ::testing::Test {
protected:
    void start(const GripperOptions& options = quick_options()) {
        ASSERT_EQ(simulator_.add_custom_tcp(options), 1);
        ASSERT_NE(simulator_.tcp_port(1), 0);
        EXPECT_EQ(simulator_.endpoint(1), "127.0.0.1:" + std::to_string(simulator_.tcp_port(1)));
        client_ = connect_loopback(simulator_.tcp_port(1));
        ASSERT_TRUE(client_.valid());
    }

    Bytes ask(uint8_t primary, uint8_t secondary, uint8_t read_write, int32_t value = 0) {
        const Bytes request = custom_frame(kId, primary, secondary, read_write, value);
        return client_.write(request) ? client_.read(14) : Bytes{};
    }

    int read_value(uint8_t primary, uint8_t secondary) {
        const Bytes answer = ask(primary, secondary, kRead);
        return answer.size() == 14 ? custom_value(answer) : -1;
    }

    void initialise() {
        const Bytes request = custom_frame(kId, 0x08, 0x02, kWrite, 1);
        ASSERT_TRUE(client_.write(request));
        ASSERT_EQ(client_.read(14), request);
        ASSERT_TRUE(wait_until([&] { return read_value(0x08, 0x02) == 1; }));
    }

    // Move feedback polled until it leaves "moving"; the positions seen on the way.
    std::vector<int> follow_move(int& final_feedback) {
        std::vector<int> positions;
        wait_until([&] {
            final_feedback = read_value(0x0F, 0x01);
            positions.push_back(read_value(0x06, 0x02));
            return final_feedback != kMoving;
        });
        return positions;
    }

    Simulator simulator_;
    FdStream client_;
};

TEST_F(CustomTcpTest, IdRequestIsAnsweredWithTheGrippersId) {
    start();
    ASSERT_TRUE(client_.write(custom_frame(0, 0x12, 0x01, kRead)));
    EXPECT_EQ(client_.read(14), custom_frame(kId, 0x12, 0x01, kRead, kId));
}

TEST_F(CustomTcpTest, VersionAnswerCarriesTheVersionBytes) {
    GripperOptions options = quick_options();
    options.custom_version = {{1, 2, 1, 4}};
    start(options);
    const Bytes answer = ask(0x13, 0x01, kRead);
    ASSERT_EQ(answer.size(), 14u);
    EXPECT_EQ(Bytes(answer.begin() + 9, answer.begin() + 13), (Bytes{1, 2, 1, 4}));
}

TEST_F(CustomTcpTest, MovesOnlyAfterInitialisationAndRampsToTheTarget) {
    start();
    EXPECT_EQ(read_value(0x08, 0x02), 0);
    const Bytes early = custom_frame(kId, 0x06, 0x02, kWrite, 80);
    ASSERT_TRUE(client_.write(early));
    EXPECT_EQ(client_.read(14), early);
    EXPECT_EQ(simulator_.snapshot(1).target, 0);

    initialise();
    const Bytes move = custom_frame(kId, 0x06, 0x02, kWrite, 100);
    ASSERT_TRUE(client_.write(move));
    EXPECT_EQ(client_.read(14), move);
    int feedback = -1;
    const std::vector<int> positions = follow_move(feedback);
    EXPECT_EQ(feedback, kArrived);
    EXPECT_EQ(read_value(0x06, 0x02), 100);
    EXPECT_EQ(simulator_.snapshot(1).motion_state, 1);
    bool between = false;
    for (int position : positions) {
        between = between || (position > 0 && position < 100);
    }
    EXPECT_TRUE(between) << "no position seen on the way";
}

TEST_F(CustomTcpTest, ObjectIsDetectedAndItsDropAnnouncedUnasked) {
    GripperOptions options = quick_options();
    options.object_at = 50;
    start(options);
    initialise();
    ASSERT_EQ(ask(0x06, 0x02, kWrite, 100).size(), 14u);
    int feedback = -1;
    follow_move(feedback);
    EXPECT_EQ(feedback, kDetected);
    EXPECT_EQ(read_value(0x06, 0x02), 50);

    simulator_.drop(1);
    EXPECT_EQ(client_.read(14), (Bytes{0xFF, 0xFE, 0xFD, 0xFC, kId, 0x15, 0x01, 0x00, 0x00, 0x01,
                                       0x00, 0x00, 0x00, 0xFB}));
    EXPECT_EQ(simulator_.snapshot(1).motion_state, 3);
    const Bytes acknowledge = custom_frame(kId, 0x15, 0x02, kWrite);
    ASSERT_TRUE(client_.write(acknowledge));
    EXPECT_EQ(client_.read(14), acknowledge);
}

TEST_F(CustomTcpTest, SettingRegistersReadBackWhatWasWritten) {
    start();
    EXPECT_EQ(ask(0x05, 0x04, kWrite, 60).size(), 14u);
    EXPECT_EQ(read_value(0x05, 0x04), 60);
    EXPECT_EQ(ask(0x05, 0x02, kWrite, 45).size(), 14u);
    EXPECT_EQ(read_value(0x05, 0x02), 45);
    EXPECT_EQ(ask(0x09, 0x02, kWrite, 30).size(), 14u);
    EXPECT_EQ(read_value(0x09, 0x02), 30);
    EXPECT_EQ(simulator_.snapshot(1).speed, 30);
    EXPECT_EQ(ask(0x07, 0x02, kWrite, -90).size(), 14u);
    EXPECT_EQ(read_value(0x07, 0x02), -90);
    EXPECT_EQ(ask(0x11, 0x01, kWrite).size(), 14u);
    EXPECT_EQ(read_value(0x11, 0x01), 1);
    EXPECT_EQ(ask(0x11, 0x02, kWrite).size(), 14u);
    EXPECT_EQ(read_value(0x11, 0x01), 0);
    EXPECT_EQ(read_value(0x0F, 0x02), kArrived);
}

TEST_F(CustomTcpTest, IgnoresJunkModbusFramesAndOtherIdsAndResyncs) {
    start();
    ASSERT_TRUE(client_.write({0x00, 0xFF, 0xFE, 0x42}));
    ASSERT_TRUE(client_.write({0xFF, 0x03, 0x03, 0x02, 0x00, 0x01, 0x30, 0x50}));
    ASSERT_TRUE(client_.write(custom_frame(kId + 1, 0x13, 0x01, kRead)));
    Bytes broken = custom_frame(kId, 0x13, 0x01, kRead);
    broken[13] = 0x00;
    ASSERT_TRUE(client_.write(broken));
    const Bytes request = custom_frame(kId, 0x12, 0x01, kRead);
    ASSERT_TRUE(client_.write(Bytes(request.begin(), request.begin() + 6)));
    ASSERT_TRUE(client_.write(Bytes(request.begin() + 6, request.end())));
    // The first answer is the one to the id request.
    EXPECT_EQ(client_.read(14), custom_frame(kId, 0x12, 0x01, kRead, kId));
}

TEST_F(CustomTcpTest, NewClientReplacesTheOldOne) {
    start();
    FdStream second = connect_loopback(simulator_.tcp_port(1));
    ASSERT_TRUE(second.valid());
    EXPECT_EQ(client_.wait_closed(), 0);
    ASSERT_TRUE(second.write(custom_frame(0, 0x12, 0x01, kRead)));
    EXPECT_EQ(second.read(14).size(), 14u);
}

class CustomFaultTest : public CustomTcpTest {
protected:
    void SetUp() override { start(); }

    const Bytes id_request_ = custom_frame(0, 0x12, 0x01, kRead);
    const Bytes id_answer_ = custom_frame(kId, 0x12, 0x01, kRead, kId);
};

TEST_F(CustomFaultTest, SilentGripperIgnoresRequests) {
    simulator_.set_fault(1, Fault::silent);
    ASSERT_TRUE(client_.write(custom_frame(kId, 0x13, 0x01, kRead)));
    ASSERT_TRUE(wait_until([&] { return simulator_.snapshot(1).frames_received == 1; }));
    simulator_.set_fault(1, Fault::none);
    ASSERT_TRUE(client_.write(id_request_));
    EXPECT_EQ(client_.read(14), id_answer_);
}

TEST_F(CustomFaultTest, LateAnswerComesAfterTheRequestWasTaken) {
    simulator_.set_fault(1, Fault::late);
    ASSERT_TRUE(client_.write(id_request_));
    ASSERT_TRUE(wait_until([&] { return simulator_.snapshot(1).frames_received == 1; }));
    EXPECT_EQ(simulator_.snapshot(1).answers_sent, 0);
    EXPECT_EQ(client_.read(14), id_answer_);
}

TEST_F(CustomFaultTest, DamagedAnswersShowTheirDamage) {
    simulator_.set_fault(1, Fault::bad_crc);
    ASSERT_TRUE(client_.write(id_request_));
    const Bytes corrupt = client_.read(14);
    ASSERT_EQ(corrupt.size(), 14u);
    EXPECT_NE(corrupt[13], 0xFB);
    EXPECT_NE(custom_value(corrupt), kId);

    simulator_.set_fault(1, Fault::wrong_id);
    ASSERT_TRUE(client_.write(id_request_));
    const Bytes foreign = client_.read(14);
    ASSERT_EQ(foreign.size(), 14u);
    EXPECT_EQ(foreign[4], kId + 1);

    simulator_.set_fault(1, Fault::long_answer);
    ASSERT_TRUE(client_.write(id_request_));
    Bytes longer = id_answer_;
    longer.push_back(0x00);
    EXPECT_EQ(client_.read(15), longer);

    simulator_.set_fault(1, Fault::garbage);
    ASSERT_TRUE(client_.write(id_request_));
    const Bytes garbage = client_.read(14);
    EXPECT_EQ(garbage.size(), 14u);
    EXPECT_NE(garbage, id_answer_);
}

TEST_F(CustomFaultTest, ShortAnswerLacksItsLastByte) {
    simulator_.set_fault(1, Fault::short_answer);
    ASSERT_TRUE(client_.write(id_request_));
    ASSERT_TRUE(wait_until([&] { return simulator_.snapshot(1).answers_sent == 1; }));
    simulator_.set_fault(1, Fault::none);
    ASSERT_TRUE(client_.write(id_request_));
    Bytes expected(id_answer_.begin(), id_answer_.end() - 1);
    expected.insert(expected.end(), id_answer_.begin(), id_answer_.end());
    EXPECT_EQ(client_.read(27), expected);
}

TEST_F(CustomFaultTest, ResetDropsClientsWithRstAndKeepsListening) {
    simulator_.set_fault(1, Fault::reset);
    EXPECT_EQ(client_.wait_closed(), ECONNRESET);
    FdStream next = connect_loopback(simulator_.tcp_port(1));
    ASSERT_TRUE(next.valid());
    ASSERT_TRUE(next.write(id_request_));
    EXPECT_EQ(next.wait_closed(), ECONNRESET);
    simulator_.set_fault(1, Fault::none);
    FdStream healed = connect_loopback(simulator_.tcp_port(1));
    ASSERT_TRUE(healed.write(id_request_));
    EXPECT_EQ(healed.read(14), id_answer_);
}

TEST_F(CustomFaultTest, VanishClosesEverythingUntilCleared) {
    const uint16_t port = simulator_.tcp_port(1);
    simulator_.set_fault(1, Fault::vanish);
    EXPECT_NE(client_.wait_closed(), -1);
    EXPECT_FALSE(connect_loopback(port).valid());
    simulator_.set_fault(1, Fault::none);
    EXPECT_EQ(simulator_.tcp_port(1), port);
    FdStream back = connect_loopback(port);
    ASSERT_TRUE(back.write(id_request_));
    EXPECT_EQ(back.read(14), id_answer_);
}

TEST_F(CustomTcpTest, SurvivesRandomNoise) {
    start();
    std::mt19937 random(1234);
    Bytes noise(4096);
    for (auto& byte : noise) {
        byte = static_cast<uint8_t>(random());
    }
    ASSERT_TRUE(client_.write(noise));
    ASSERT_TRUE(client_.write(custom_frame(0, 0x12, 0x01, kRead)));
    EXPECT_EQ(client_.read(14), custom_frame(kId, 0x12, 0x01, kRead, kId));
}

TEST_F(CustomTcpTest, ControlCallsAreSafeWhileTrafficFlows) {
    GripperOptions options = quick_options();
    options.late_ms = 5;
    start(options);
    initialise();
    std::atomic<bool> done{false};
    std::thread traffic([&] {
        for (int i = 0; !done; ++i) {
            client_.write(custom_frame(kId, 0x06, 0x02, i % 2 == 0 ? kRead : kWrite, i % 100));
            client_.read(14, milliseconds(20));
        }
    });
    const Fault faults[] = {Fault::late, Fault::garbage, Fault::silent, Fault::none};
    for (int i = 0; i < 200; ++i) {
        simulator_.set_object(1, i % 3 == 0 ? -1 : i % 100);
        simulator_.set_fault(1, faults[i % 4]);
        simulator_.set_trace(i % 50 == 1);
        simulator_.drop(1);
        EXPECT_EQ(simulator_.command("state 1").rfind("initialised=1 ", 0), 0u);
        EXPECT_GE(simulator_.snapshot(1).position, 0);
    }
    simulator_.set_trace(false);
    done = true;
    traffic.join();
    simulator_.set_fault(1, Fault::none);
    FdStream fresh = connect_loopback(simulator_.tcp_port(1));
    ASSERT_TRUE(fresh.write(custom_frame(0, 0x12, 0x01, kRead)));
    EXPECT_EQ(fresh.read(14), custom_frame(kId, 0x12, 0x01, kRead, kId));
}

TEST(CustomPty, AnswersCustomFramesAndIgnoresModbusRequests) {
    Simulator simulator;
    ASSERT_EQ(simulator.add_custom_pty(quick_options()), 1);
    FdStream line = open_serial(simulator.endpoint(1));
    ASSERT_TRUE(line.valid());
    ASSERT_TRUE(line.write({0xFF, 0x03, 0x03, 0x02, 0x00, 0x01, 0x30, 0x50}));
    ASSERT_TRUE(line.write(custom_frame(0, 0x12, 0x01, kRead)));
    EXPECT_EQ(line.read(14), custom_frame(kId, 0x12, 0x01, kRead, kId));
    EXPECT_EQ(simulator.snapshot(1).frames_received, 1);
}

}  // namespace
