// The Modbus RTU gripper seen by libmodbus and by raw bytes over its real pseudo-terminal.

#include <gtest/gtest.h>
#include <modbus/modbus.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <random>

#include "tests/test_support/fd_stream.h"
#include "tests/test_support/wait_until.h"
#include "tools/gripper_simulator/simulator.h"

namespace {

using gripper_sim::Fault;

const int kId = 7;
const int kInitialise = 0x0100, kForce = 0x0101, kTarget = 0x0103, kSpeed = 0x0104;
const int kInitState = 0x0200, kMotion = 0x0201, kPosition = 0x0202, kIdRegister = 0x0302;
const int kMoving = 0, kArrived = 1, kDetected = 2, kDropped = 3;

// A libmodbus RTU master on a serial device, 115200 8N1; error() tells libmodbus's errno.
class ModbusMaster {
public:
    explicit ModbusMaster(const std::string& device)
        : context_(modbus_new_rtu(device.c_str(), 115200, 'N', 8, 1)) {
        modbus_set_slave(context_, kId);
        modbus_set_response_timeout(context_, 0, 500000);
        connected_ = 0 == modbus_connect(context_);
    }
    ~ModbusMaster() {
        modbus_close(context_);
        modbus_free(context_);
    }

    bool connected() const { return connected_; }
    int error() const { return error_; }
    // The register's value, or -1.
    int read(int reg) {
        uint16_t value = 0;
        return 1 == modbus_read_registers(context_, reg, 1, &value) ? value : failed(-1);
    }
    bool write(int reg, int value) {
        return 1 == modbus_write_register(context_, reg, value) || failed(false);
    }
    // Sends 6 bytes (libmodbus adds the CRC); the checked answer, empty on failure.
    Bytes raw(const Bytes& request) {
        uint8_t answer[MODBUS_RTU_MAX_ADU_LENGTH];
        const int sent = modbus_send_raw_request(context_, request.data(), request.size());
        const int size = sent < 0 ? -1 : modbus_receive_confirmation(context_, answer);
        return size < 0 ? failed(Bytes()) : Bytes(answer, answer + size);
    }

private:
    template <typename T>
    T failed(T result) {
        error_ = errno;
        return result;
    }

    modbus_t* context_;
    bool connected_ = false;
    int error_ = 0;
};

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

// Six bytes of a request followed by their CRC, low byte first.
Bytes with_crc(Bytes frame) {
    const uint16_t crc = reference_crc(frame);
    frame.push_back(static_cast<uint8_t>(crc & 0xFF));
    frame.push_back(static_cast<uint8_t>(crc >> 8));
    return frame;
}

// The value of a 7-byte read answer whose CRC is right; -1 otherwise.
int answer_value(const Bytes& answer) {
    if (7 != answer.size()) {
        return -1;
    }
    const uint16_t crc = reference_crc(Bytes(answer.begin(), answer.begin() + 5));
    const bool valid = answer[5] == (crc & 0xFF) && answer[6] == (crc >> 8);
    return valid ? answer[3] << 8 | answer[4] : -1;
}

gripper_sim::GripperOptions quick_options() {
    gripper_sim::GripperOptions options;
    options.id = kId;
    options.init_ms = 30;
    options.full_stroke_ms = 400;
    return options;
}

class ModbusGripperTest : public ::testing::Test {
protected:
    void start(const gripper_sim::GripperOptions& options = quick_options()) {
        ASSERT_EQ(1, simulator_.add_modbus_pty(options));
        master_.reset(new ModbusMaster(simulator_.endpoint(1)));
        ASSERT_TRUE(master_->connected());
    }

    void initialise() {
        ASSERT_TRUE(master_->write(kInitialise, 0xA5));
        ASSERT_TRUE(wait_until([&] { return 1 == master_->read(kInitState); }));
    }

    // Positions read while the motion state says moving; the state it ended in.
    std::vector<int> follow_move(int& final_state) {
        std::vector<int> positions;
        wait_until([&] {
            final_state = master_->read(kMotion);
            positions.push_back(master_->read(kPosition));
            return kMoving != final_state;
        });
        return positions;
    }

    gripper_sim::Simulator simulator_;
    std::unique_ptr<ModbusMaster> master_;
};

// Registers that do not exist or cannot take a value get exception answers.
TEST_F(ModbusGripperTest, AnswersIdModelVersionSettingsExceptionsAndEmergencyFrames) {
    gripper_sim::GripperOptions options = quick_options();
    options.model_code = 0x0200;
    options.modbus_version = 0x0105;
    start(options);
    // libmodbus refuses slave 255 for RTU, so the id request goes out raw; libmodbus still checks
    // the answer's framing and CRC, and that it comes from the slave the master is set to.
    const Bytes id = master_->raw({0xFF, 0x03, 0x03, 0x02, 0x00, 0x01});
    EXPECT_EQ(kId, answer_value(id)) << modbus_strerror(master_->error());
    EXPECT_EQ(kId, master_->read(kIdRegister));
    EXPECT_EQ(0x0200, master_->read(0x0A00));  // model
    EXPECT_EQ(0x0105, master_->read(0x0A02));  // version
    ASSERT_TRUE(master_->write(kForce, 55) && master_->write(kSpeed, 40));
    EXPECT_EQ(55, master_->read(kForce));
    EXPECT_EQ(40, master_->read(kSpeed));
    EXPECT_EQ(-1, master_->read(0x0999));
    EXPECT_EQ(EMBXILADD, master_->error());
    EXPECT_FALSE(master_->write(kPosition, 5));
    EXPECT_EQ(EMBXILADD, master_->error());
    EXPECT_FALSE(master_->write(kInitialise, 0x0001));
    EXPECT_EQ(EMBXILVAL, master_->error());
    initialise();
    // Maximum current, emergency close and open are read frames with seven-byte answers.
    EXPECT_EQ(0x64, answer_value(master_->raw({kId, 0x03, 0x03, 0x06, 0x00, 0x64})));
    EXPECT_EQ(2, answer_value(master_->raw({kId, 0x03, 0x05, 0x00, 0x00, 0x02})));
    EXPECT_EQ(1000, master_->read(kTarget));
    EXPECT_EQ(1, answer_value(master_->raw({kId, 0x03, 0x05, 0x00, 0x00, 0x01})));
    EXPECT_EQ(0, master_->read(kTarget));
}

// An object at 400 stops a move to 1000 on the way; pushing further keeps the fingers on it.
TEST_F(ModbusGripperTest, MovesOnlyOnceInitialisedUntilAnObjectStopsIt) {
    gripper_sim::GripperOptions options = quick_options();
    options.object_at = 400;
    start(options);
    EXPECT_EQ(0, master_->read(kInitState));
    // The write is echoed as usual, but an uninitialised gripper does not move.
    ASSERT_TRUE(master_->write(kTarget, 800));
    EXPECT_EQ(0, master_->read(kTarget));
    EXPECT_EQ(kArrived, master_->read(kMotion));
    initialise();

    ASSERT_TRUE(master_->write(kTarget, 1000));
    EXPECT_EQ(1000, master_->read(kTarget));
    int final_state = -1;
    const std::vector<int> positions = follow_move(final_state);
    EXPECT_EQ(kDetected, final_state);
    EXPECT_EQ(400, master_->read(kPosition));
    EXPECT_TRUE(std::is_sorted(positions.begin(), positions.end()));
    EXPECT_TRUE(std::any_of(positions.begin(), positions.end(), [](int position) {
        return position > 0 && position < 400;
    })) << "no position seen on the way";
    ASSERT_TRUE(master_->write(kTarget, 900));
    EXPECT_EQ(kDetected, master_->read(kMotion));

    simulator_.drop(1);
    EXPECT_EQ(kDropped, master_->read(kMotion));
    EXPECT_FALSE(simulator_.snapshot(1).object_held);
    ASSERT_TRUE(master_->write(kTarget, 0));
    follow_move(final_state);
    EXPECT_EQ(kArrived, final_state);
    EXPECT_EQ(0, master_->read(kPosition));
}

// Both take the pty away; clearing them opens a fresh one, announced in the file.
TEST_F(ModbusGripperTest, VanishAndResetReplaceThePty) {
    start();
    TempDir dir;
    simulator_.set_announce_file(1, dir.file("pts"));
    for (Fault fault : {Fault::vanish, Fault::reset}) {
        const std::string old_path = simulator_.endpoint(1);
        EXPECT_EQ("PTY is " + old_path + "\n", read_file(dir.file("pts")));
        simulator_.set_fault(1, fault);
        EXPECT_EQ(-1, master_->read(kIdRegister));
        EXPECT_NE(0, ::access(old_path.c_str(), F_OK));
        simulator_.set_fault(1, Fault::none);
        EXPECT_NE(old_path, simulator_.endpoint(1));
        master_.reset(new ModbusMaster(simulator_.endpoint(1)));
        EXPECT_EQ(kId, master_->read(kIdRegister));
    }
    EXPECT_EQ("PTY is " + simulator_.endpoint(1) + "\n", read_file(dir.file("pts")));
}

// Noise, a bad CRC, another slave, a short frame and junk before a request split in two: the
// first answer on the line is the one to that request.
TEST_F(ModbusGripperTest, ResyncsOverNoiseAndIgnoresFramesNotForIt) {
    start();
    FdStream line = open_raw_terminal(simulator_.endpoint(1));
    std::mt19937 random(4321);
    Bytes junk(4096);
    for (uint8_t& byte : junk) {
        byte = static_cast<uint8_t>(random());
    }
    Bytes bad_crc = with_crc({kId, 0x03, 0x03, 0x02, 0x00, 0x01});
    bad_crc[7] ^= 0x01;
    const Bytes foreign = with_crc({kId + 1, 0x03, 0x03, 0x02, 0x00, 0x01});
    const Bytes version = with_crc({kId, 0x03, 0x0A, 0x02, 0x00, 0x01});
    for (const Bytes& part : {bad_crc, foreign, Bytes{kId, 0x03, 0x0A, 0x00, 0x13, 0x37, 0xFF}}) {
        junk.insert(junk.end(), part.begin(), part.end());
    }
    junk.insert(junk.end(), version.begin(), version.begin() + 3);
    ASSERT_TRUE(line.write(junk));
    ASSERT_TRUE(line.write(Bytes(version.begin() + 3, version.end())));
    EXPECT_EQ(0x0102, answer_value(line.read(7)));
}

}  // namespace
