// The Modbus RTU gripper seen by raw bytes over its real pseudo-terminal.

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/test_support/fd_stream.h"
#include "tests/test_support/wait_until.h"
#include "tools/gripper_simulator/simulator.h"

namespace {

using gripper_sim::Fault;

const uint8_t kId = 7;
const int kInitialise = 0x0100, kForce = 0x0101, kTarget = 0x0103, kSpeed = 0x0104;
const int kInitState = 0x0200, kMotion = 0x0201, kPosition = 0x0202, kIdRegister = 0x0302;
const int kMoving = 0, kArrived = 1, kDetected = 2;

// CRC-16/MODBUS written out here, so that neither the simulator's nor the plug-in's code checks
// itself.
uint16_t reference_crc(const Bytes& bytes) {
    uint16_t crc = 0xFFFF;
    for (uint8_t byte : bytes) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc & 1) ? static_cast<uint16_t>((crc >> 1) ^ 0xA001) : crc >> 1;
        }
    }
    return crc;
}

// The bytes of a frame followed by their CRC, low byte first.
Bytes with_crc(Bytes frame) {
    const uint16_t crc = reference_crc(frame);
    frame.push_back(static_cast<uint8_t>(crc & 0xFF));
    frame.push_back(static_cast<uint8_t>(crc >> 8));
    return frame;
}

// The value of a 7-byte read answer from kId whose CRC is right; -1 otherwise.
int answer_value(const Bytes& answer) {
    if (7 != answer.size()) {
        return -1;
    }
    const uint16_t crc = reference_crc(Bytes(answer.begin(), answer.begin() + 5));
    const bool valid = kId == answer[0] && answer[5] == (crc & 0xFF) && answer[6] == (crc >> 8);
    return valid ? answer[3] << 8 | answer[4] : -1;
}

class ModbusGripperTest : public ::testing::Test {
protected:
    void SetUp() override {
        gripper_sim::GripperOptions options;
        options.id = kId;
        options.init_ms = 30;
        options.full_stroke_ms = 400;
        options.object_at = 400;
        options.model_code = 0x0200;
        options.modbus_version = 0x0105;
        ASSERT_EQ(1, simulator_.add_modbus_pty(options));
        line_ = open_raw_terminal(simulator_.endpoint(1));
        ASSERT_TRUE(line_.valid());
    }

    // Sends six bytes with their CRC; the answer: an exception's five bytes, or a read answer's
    // seven (one register), or a write's echo of eight.
    Bytes ask(const Bytes& request) {
        Bytes answer = line_.write(with_crc(request)) ? line_.read(5) : Bytes();
        if (5 == answer.size() && answer[1] < 0x80) {
            const Bytes rest = line_.read(0x03 == answer[1] ? 2 : 3);
            answer.insert(answer.end(), rest.begin(), rest.end());
        }
        return answer;
    }
    static Bytes request(uint8_t function, int reg, int value) {
        return {kId,
                function,
                static_cast<uint8_t>(reg >> 8),
                static_cast<uint8_t>(reg),
                static_cast<uint8_t>(value >> 8),
                static_cast<uint8_t>(value)};
    }
    int read(int reg) { return answer_value(ask(request(0x03, reg, 1))); }
    bool write(int reg, int value) {
        return with_crc(request(0x06, reg, value)) == ask(request(0x06, reg, value));
    }

    void initialise() {
        ASSERT_TRUE(write(kInitialise, 0xA5));
        ASSERT_TRUE(wait_until([&] { return 1 == read(kInitState); }));
    }

    gripper_sim::Simulator simulator_;
    FdStream line_;
};

TEST_F(ModbusGripperTest, AnswersIdModelVersionSettingsExceptionsAndEmergencyFrames) {
    // The id request goes to slave 255, which any slave answers.
    EXPECT_EQ(kId, answer_value(ask({0xFF, 0x03, 0x03, 0x02, 0x00, 0x01})));
    EXPECT_EQ(kId, read(kIdRegister));
    EXPECT_EQ(0x0200, read(0x0A00));  // model
    EXPECT_EQ(0x0105, read(0x0A02));  // version
    ASSERT_TRUE(write(kForce, 55) && write(kSpeed, 40));
    EXPECT_EQ(55, read(kForce));
    EXPECT_EQ(40, read(kSpeed));
    // Exception 2 for a register that does not exist or cannot be written, 3 for a bad value.
    EXPECT_EQ(with_crc({kId, 0x83, 0x02}), ask(request(0x03, 0x0999, 1)));
    EXPECT_EQ(with_crc({kId, 0x86, 0x02}), ask(request(0x06, kPosition, 5)));
    EXPECT_EQ(with_crc({kId, 0x86, 0x03}), ask(request(0x06, kInitialise, 1)));
    initialise();
    // Maximum current, emergency close and open are read frames with seven-byte answers.
    EXPECT_EQ(0x64, answer_value(ask({kId, 0x03, 0x03, 0x06, 0x00, 0x64})));
    EXPECT_EQ(2, answer_value(ask({kId, 0x03, 0x05, 0x00, 0x00, 0x02})));
    EXPECT_EQ(1000, read(kTarget));
    EXPECT_EQ(1, answer_value(ask({kId, 0x03, 0x05, 0x00, 0x00, 0x01})));
    EXPECT_EQ(0, read(kTarget));
}

// An object at 400 stops a move to 1000 on the way; pushing further keeps the fingers on it. Its
// drop is in the driver's tests.
TEST_F(ModbusGripperTest, MovesOnlyOnceInitialisedUntilAnObjectStopsIt) {
    EXPECT_EQ(0, read(kInitState));
    // The write is echoed as usual, but an uninitialised gripper does not move.
    ASSERT_TRUE(write(kTarget, 800));
    EXPECT_EQ(0, read(kTarget));
    EXPECT_EQ(kArrived, read(kMotion));
    initialise();

    ASSERT_TRUE(write(kTarget, 1000));
    EXPECT_EQ(1000, read(kTarget));
    int final_state = -1;
    std::vector<int> positions;
    wait_until([&] {
        final_state = read(kMotion);
        positions.push_back(read(kPosition));
        return kMoving != final_state;
    });
    EXPECT_EQ(kDetected, final_state);
    EXPECT_EQ(400, read(kPosition));
    EXPECT_TRUE(std::is_sorted(positions.begin(), positions.end()));
    EXPECT_TRUE(std::any_of(positions.begin(), positions.end(), [](int position) {
        return position > 0 && position < 400;
    })) << "no position seen on the way";
    ASSERT_TRUE(write(kTarget, 900));
    EXPECT_EQ(kDetected, read(kMotion));
}

// Both take the pty away; clearing them opens a fresh one, announced in the file.
TEST_F(ModbusGripperTest, VanishAndResetReplaceThePty) {
    TempDir dir;
    simulator_.set_announce_file(1, dir.file("pts"));
    for (Fault fault : {Fault::vanish, Fault::reset}) {
        const std::string old_path = simulator_.endpoint(1);
        EXPECT_EQ("PTY is " + old_path + "\n", read_file(dir.file("pts")));
        simulator_.set_fault(1, fault);
        EXPECT_EQ(-1, read(kIdRegister));
        EXPECT_NE(0, ::access(old_path.c_str(), F_OK));
        simulator_.set_fault(1, Fault::none);
        EXPECT_NE(old_path, simulator_.endpoint(1));
        line_ = open_raw_terminal(simulator_.endpoint(1));
        EXPECT_EQ(kId, read(kIdRegister));
    }
    EXPECT_EQ("PTY is " + simulator_.endpoint(1) + "\n", read_file(dir.file("pts")));
}

}  // namespace
