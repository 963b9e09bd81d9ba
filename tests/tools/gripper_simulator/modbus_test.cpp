// The Modbus RTU gripper seen by libmodbus and by raw bytes over its real pseudo-terminal.

#include <gtest/gtest.h>
#include <unistd.h>

#include <memory>
#include <random>

#include "tests/tools/gripper_simulator/modbus_master.h"
#include "tools/gripper_simulator/simulator.h"

namespace {

using namespace sim_test;
using gripper_sim::Fault;
using gripper_sim::GripperOptions;
using gripper_sim::Simulator;

constexpr int kId = 7;
constexpr int kInitialise = 0x0100;
constexpr int kForce = 0x0101;
constexpr int kTarget = 0x0103;
constexpr int kSpeed = 0x0104;
constexpr int kInitState = 0x0200;
constexpr int kMotion = 0x0201;
constexpr int kPosition = 0x0202;
constexpr int kIdRegister = 0x0302;
constexpr int kModel = 0x0A00;
constexpr int kVersion = 0x0A02;
constexpr int kMoving = 0;
constexpr int kArrived = 1;
constexpr int kDetected = 2;
constexpr int kDropped = 3;

GripperOptions quick_options() {
    GripperOptions options;
    options.id = kId;
    options.init_ms = 30;
    options.full_stroke_ms = 400;
    options.late_ms = 400;
    return options;
}

class ModbusGripperTest : public ::testing::Test {
protected:
    void start(const GripperOptions& options = quick_options()) {
        n_ = simulator_.add_modbus_pty(options);
        ASSERT_EQ(n_, 1);
        master_ = connect(kId);
        ASSERT_TRUE(master_->connected());
    }

    std::unique_ptr<ModbusMaster> connect(int slave, milliseconds timeout = milliseconds(500)) {
        return std::make_unique<ModbusMaster>(simulator_.endpoint(n_), slave, timeout);
    }

    void initialise() {
        ASSERT_TRUE(master_->write(kInitialise, 0xA5));
        ASSERT_TRUE(wait_until([&] { return master_->read(kInitState) == 1; }));
    }

    // Positions read while the motion state says moving, until it says something else.
    std::vector<int> follow_move(int& final_state) {
        std::vector<int> positions;
        wait_until([&] {
            final_state = master_->read(kMotion);
            positions.push_back(master_->read(kPosition));
            return final_state != kMoving;
        });
        return positions;
    }

    Simulator simulator_;
    int n_ = 0;
    std::unique_ptr<ModbusMaster> master_;
};

TEST_F(ModbusGripperTest, AnswersTheIdRequestAtAddressFFAndAtItsOwnAddress) {
    start();
    // libmodbus refuses slave 255 for RTU, so the id request goes out raw; it still checks the
    // answer's framing and CRC, and that it comes from the slave the master is set to.
    const Bytes answer = master_->raw({0xFF, 0x03, 0x03, 0x02, 0x00, 0x01});
    ASSERT_EQ(answer.size(), 7u) << modbus_strerror(master_->error());
    EXPECT_EQ(answer[0], kId);
    EXPECT_EQ(answer[1], 0x03);
    EXPECT_EQ(answer[2], 0x02);
    EXPECT_EQ(answer[3] << 8 | answer[4], kId);
    EXPECT_EQ(master_->read(kIdRegister), kId);
}

TEST_F(ModbusGripperTest, ReportsModelCodeVersionForceAndSpeed) {
    GripperOptions options = quick_options();
    options.model_code = 0x0200;
    options.modbus_version = 0x0105;
    start(options);
    EXPECT_EQ(master_->read(kModel), 0x0200);
    EXPECT_EQ(master_->read(kVersion), 0x0105);
    ASSERT_TRUE(master_->write(kForce, 55));
    ASSERT_TRUE(master_->write(kSpeed, 40));
    EXPECT_EQ(master_->read(kForce), 55);
    EXPECT_EQ(master_->read(kSpeed), 40);
}

TEST_F(ModbusGripperTest, IgnoresTargetsUntilInitialised) {
    start();
    EXPECT_EQ(master_->read(kInitState), 0);
    // The write is echoed as usual, but an uninitialised gripper does not move.
    ASSERT_TRUE(master_->write(kTarget, 800));
    EXPECT_EQ(master_->read(kTarget), 0);
    EXPECT_EQ(master_->read(kPosition), 0);
    EXPECT_EQ(master_->read(kMotion), kArrived);
    initialise();
    EXPECT_TRUE(simulator_.snapshot(n_).initialised);
}

TEST_F(ModbusGripperTest, MoveRampsUpToTheTargetThenArrives) {
    start();
    initialise();
    ASSERT_TRUE(master_->write(kTarget, 1000));
    EXPECT_EQ(master_->read(kTarget), 1000);
    int final_state = -1;
    const std::vector<int> positions = follow_move(final_state);
    EXPECT_EQ(final_state, kArrived);
    EXPECT_EQ(master_->read(kPosition), 1000);
    bool between = false;
    for (size_t i = 0; i < positions.size(); ++i) {
        between = between || (positions[i] > 0 && positions[i] < 1000);
        if (i > 0) {
            EXPECT_GE(positions[i], positions[i - 1]);
        }
    }
    EXPECT_TRUE(between) << "no position seen on the way";
}

TEST_F(ModbusGripperTest, ObjectStopsTheFingersAndItsDropIsReported) {
    GripperOptions options = quick_options();
    options.object_at = 400;
    start(options);
    initialise();
    ASSERT_TRUE(master_->write(kTarget, 1000));
    int final_state = -1;
    follow_move(final_state);
    EXPECT_EQ(final_state, kDetected);
    EXPECT_EQ(master_->read(kPosition), 400);
    EXPECT_TRUE(simulator_.snapshot(n_).object_held);

    // Pushing further keeps the fingers on the object.
    ASSERT_TRUE(master_->write(kTarget, 900));
    EXPECT_EQ(master_->read(kMotion), kDetected);

    simulator_.drop(n_);
    EXPECT_EQ(master_->read(kMotion), kDropped);
    EXPECT_FALSE(simulator_.snapshot(n_).object_held);

    ASSERT_TRUE(master_->write(kTarget, 0));
    follow_move(final_state);
    EXPECT_EQ(final_state, kArrived);
    EXPECT_EQ(master_->read(kPosition), 0);
}

TEST_F(ModbusGripperTest, UnknownRegistersAndBadValuesGetExceptionAnswers) {
    start();
    EXPECT_EQ(master_->read(0x0999), -1);
    EXPECT_EQ(master_->error(), EMBXILADD);
    EXPECT_FALSE(master_->write(kPosition, 5));
    EXPECT_EQ(master_->error(), EMBXILADD);
    EXPECT_FALSE(master_->write(kInitialise, 0x0001));
    EXPECT_EQ(master_->error(), EMBXILVAL);
    EXPECT_FALSE(simulator_.snapshot(n_).initialised);
}

TEST_F(ModbusGripperTest, EmergencyAndMaximumCurrentFramesGetSevenByteReadAnswers) {
    start();
    initialise();
    const Bytes current = master_->raw({kId, 0x03, 0x03, 0x06, 0x00, 0x64});
    ASSERT_EQ(current.size(), 7u) << modbus_strerror(master_->error());
    EXPECT_EQ(current[3] << 8 | current[4], 0x64);

    const Bytes close = master_->raw({kId, 0x03, 0x05, 0x00, 0x00, 0x02});
    ASSERT_EQ(close.size(), 7u) << modbus_strerror(master_->error());
    EXPECT_EQ(close[3] << 8 | close[4], 2);
    EXPECT_EQ(master_->read(kTarget), 1000);

    const Bytes open = master_->raw({kId, 0x03, 0x05, 0x00, 0x00, 0x01});
    ASSERT_EQ(open.size(), 7u) << modbus_strerror(master_->error());
    EXPECT_EQ(master_->read(kTarget), 0);
}

TEST_F(ModbusGripperTest, ClientsMayOpenAndCloseTheSlaveAgainAndAgain) {
    start();
    master_.reset();
    for (int round = 0; round < 5; ++round) {
        auto master = connect(kId);
        ASSERT_TRUE(master->connected()) << "round " << round;
        EXPECT_EQ(master->read(kIdRegister), kId) << "round " << round;
    }
}

TEST(ModbusGrippers, SeveralGrippersAnswerOnlyTheirOwnIdOnTheirOwnPty) {
    Simulator simulator;
    GripperOptions first = quick_options();
    GripperOptions second = quick_options();
    first.id = 1;
    second.id = 2;
    ASSERT_EQ(simulator.add_modbus_pty(first), 1);
    ASSERT_EQ(simulator.add_modbus_pty(second), 2);
    EXPECT_NE(simulator.endpoint(1), simulator.endpoint(2));
    ModbusMaster one(simulator.endpoint(1), 1, milliseconds(500));
    ModbusMaster two(simulator.endpoint(2), 2, milliseconds(500));
    EXPECT_EQ(one.read(kIdRegister), 1);
    EXPECT_EQ(two.read(kIdRegister), 2);
    ModbusMaster stranger(simulator.endpoint(1), 2, milliseconds(150));
    EXPECT_EQ(stranger.read(kIdRegister), -1);
    EXPECT_EQ(stranger.error(), ETIMEDOUT);
}

class ModbusFaultTest : public ModbusGripperTest {
protected:
    void SetUp() override { start(); }

    // After clearing a fault the line works again.
    void expect_recovery() {
        simulator_.set_fault(n_, Fault::none);
        master_->flush();
        EXPECT_EQ(master_->read(kIdRegister), kId);
    }
};

TEST_F(ModbusFaultTest, SilentGripperTimesOut) {
    simulator_.set_fault(n_, Fault::silent);
    master_->set_response_timeout(milliseconds(150));
    EXPECT_EQ(master_->read(kIdRegister), -1);
    EXPECT_EQ(master_->error(), ETIMEDOUT);
    EXPECT_EQ(simulator_.snapshot(n_).frames_received, 1);
    expect_recovery();
}

TEST_F(ModbusFaultTest, BadCrcIsSeenAsACrcError) {
    simulator_.set_fault(n_, Fault::bad_crc);
    EXPECT_EQ(master_->read(kIdRegister), -1);
    EXPECT_EQ(master_->error(), EMBBADCRC);
    expect_recovery();
}

TEST_F(ModbusFaultTest, AnswerFromAnotherIdIsRejected) {
    simulator_.set_fault(n_, Fault::wrong_id);
    master_->set_response_timeout(milliseconds(150));
    EXPECT_EQ(master_->read(kIdRegister), -1);
    expect_recovery();
}

TEST_F(ModbusFaultTest, ShortAndGarbageAnswersFail) {
    master_->set_response_timeout(milliseconds(150));
    for (Fault fault : {Fault::short_answer, Fault::garbage}) {
        simulator_.set_fault(n_, fault);
        EXPECT_EQ(master_->read(kIdRegister), -1);
        expect_recovery();
    }
}

TEST_F(ModbusFaultTest, LateAnswerMissesAShortTimeoutAndComesLater) {
    simulator_.set_fault(n_, Fault::late);
    master_->set_response_timeout(milliseconds(100));
    EXPECT_EQ(master_->read(kIdRegister), -1);
    EXPECT_EQ(master_->error(), ETIMEDOUT);
    EXPECT_TRUE(wait_until([&] { return simulator_.snapshot(n_).answers_sent == 1; }));
    master_->flush();
    master_->set_response_timeout(milliseconds(2000));
    EXPECT_EQ(master_->read(kIdRegister), kId);
}

TEST_F(ModbusFaultTest, VanishKillsThePortAndNoneOpensAFreshAnnouncedOne) {
    TempDir dir;
    const std::string announce_file = dir.file("pts");
    simulator_.set_announce_file(n_, announce_file);
    const std::string old_path = simulator_.endpoint(n_);
    EXPECT_EQ(read_file(announce_file), "PTY is " + old_path + "\n");

    simulator_.set_fault(n_, Fault::vanish);
    EXPECT_EQ(master_->read(kIdRegister), -1);
    EXPECT_NE(::access(old_path.c_str(), F_OK), 0);

    simulator_.set_fault(n_, Fault::none);
    const std::string new_path = simulator_.endpoint(n_);
    EXPECT_NE(new_path, old_path);
    EXPECT_EQ(read_file(announce_file), "PTY is " + new_path + "\n");
    ModbusMaster fresh(new_path, kId, milliseconds(500));
    EXPECT_EQ(fresh.read(kIdRegister), kId);
}

TEST_F(ModbusFaultTest, ResetOnAPtyActsLikeVanish) {
    const std::string old_path = simulator_.endpoint(n_);
    simulator_.set_fault(n_, Fault::reset);
    EXPECT_EQ(master_->read(kIdRegister), -1);
    EXPECT_NE(::access(old_path.c_str(), F_OK), 0);
    simulator_.set_fault(n_, Fault::none);
    ModbusMaster fresh(simulator_.endpoint(n_), kId, milliseconds(500));
    EXPECT_EQ(fresh.read(kIdRegister), kId);
}

class ModbusWireTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(simulator_.add_modbus_pty(quick_options()), 1);
        line_ = open_serial(simulator_.endpoint(1));
        ASSERT_TRUE(line_.valid());
    }

    Simulator simulator_;
    FdStream line_;
};

TEST_F(ModbusWireTest, KnownFramesGetTheirDocumentedAnswers) {
    ASSERT_TRUE(line_.write({0xFF, 0x03, 0x03, 0x02, 0x00, 0x01, 0x30, 0x50}));
    const Bytes id_answer = line_.read(7);
    ASSERT_EQ(id_answer.size(), 7u);
    EXPECT_EQ(Bytes(id_answer.begin(), id_answer.begin() + 5), (Bytes{kId, 0x03, 0x02, 0x00, kId}));
    EXPECT_TRUE(modbus_crc_ok(id_answer));
    const Bytes initialise = modbus_request(kId, 0x06, kInitialise, 0x00A5);
    ASSERT_TRUE(line_.write(initialise));
    EXPECT_EQ(line_.read(8), initialise);
}

TEST_F(ModbusWireTest, ResyncsOverJunkAndFramesArrivingInPieces) {
    const Bytes request = modbus_request(kId, 0x03, kModel, 1);
    ASSERT_TRUE(line_.write({0x00, 0x13, 0x37, 0xFF, request[0], request[1], request[2]}));
    ASSERT_TRUE(wait_until([&] { return simulator_.snapshot(1).frames_received == 0; }));
    ASSERT_TRUE(line_.write(Bytes(request.begin() + 3, request.end())));
    const Bytes answer = line_.read(7);
    ASSERT_EQ(answer.size(), 7u);
    EXPECT_EQ(answer[3] << 8 | answer[4], 0x1000);
    EXPECT_TRUE(modbus_crc_ok(answer));
}

TEST_F(ModbusWireTest, IgnoresBadCrcForeignSlavesAndShortFrames) {
    Bytes bad_crc = modbus_request(kId, 0x03, kIdRegister, 1);
    bad_crc[7] ^= 0x01;
    ASSERT_TRUE(line_.write(bad_crc));
    ASSERT_TRUE(line_.write(modbus_request(kId + 1, 0x03, kIdRegister, 1)));
    ASSERT_TRUE(line_.write({kId, 0x03, 0x0A}));
    ASSERT_TRUE(line_.write(modbus_request(kId, 0x03, kVersion, 1)));
    // The first answer on the line is the one to the version request.
    const Bytes answer = line_.read(7);
    ASSERT_EQ(answer.size(), 7u);
    EXPECT_EQ(answer[3] << 8 | answer[4], 0x0102);
}

TEST_F(ModbusWireTest, SurvivesRandomNoise) {
    std::mt19937 random(4321);
    Bytes noise(4096);
    for (auto& byte : noise) {
        byte = static_cast<uint8_t>(random());
    }
    ASSERT_TRUE(line_.write(noise));
    ASSERT_TRUE(line_.write(modbus_request(kId, 0x03, kVersion, 1)));
    const Bytes answer = line_.read(7);
    ASSERT_EQ(answer.size(), 7u);
    EXPECT_EQ(answer[3] << 8 | answer[4], 0x0102);
}

TEST_F(ModbusWireTest, LongAnswerCarriesOneExtraByte) {
    simulator_.set_fault(1, Fault::long_answer);
    ASSERT_TRUE(line_.write(modbus_request(kId, 0x03, kIdRegister, 1)));
    const Bytes answer = line_.read(8);
    ASSERT_EQ(answer.size(), 8u);
    EXPECT_TRUE(modbus_crc_ok(Bytes(answer.begin(), answer.begin() + 7)));
}

TEST_F(ModbusWireTest, WrongIdAnswersCarryTheNextIdWithAValidCrc) {
    simulator_.set_fault(1, Fault::wrong_id);
    ASSERT_TRUE(line_.write(modbus_request(kId, 0x03, kIdRegister, 1)));
    const Bytes answer = line_.read(7);
    ASSERT_EQ(answer.size(), 7u);
    EXPECT_EQ(answer[0], kId + 1);
    EXPECT_TRUE(modbus_crc_ok(answer));
}

}  // namespace
