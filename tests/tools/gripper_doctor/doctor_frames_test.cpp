// How gripper-doctor judges answers against their requests and reads its targets.

#include <gtest/gtest.h>

#include "tools/gripper_doctor/custom_frames.h"
#include "tools/gripper_doctor/modbus_frames.h"
#include "tools/gripper_doctor/target.h"

namespace {

using gripper_doctor::Bytes;
using gripper_doctor::CustomFrames;
using gripper_doctor::ModbusFrames;
using gripper_doctor::Verdict;

struct AnswerCase {
    const char* name;
    Bytes request;
    Bytes answer;
    Verdict::Kind kind;
    std::string text;
};

const Bytes MODBUS_ID_REQUEST = {0xFF, 0x03, 0x03, 0x02, 0x00, 0x01, 0x30, 0x50};
const Bytes MODBUS_POSITION_READ = {0x01, 0x03, 0x02, 0x02, 0x00, 0x01, 0x24, 0x72};
const Bytes MODBUS_INITIALISE = {0x01, 0x06, 0x01, 0x00, 0x00, 0xA5, 0x48, 0x4D};
const Bytes FRAME_ID_REQUEST = {0xFF, 0xFE, 0xFD, 0xFC, 0, 0x12, 0x01, 0, 0, 0, 0, 0, 0, 0xFB};
const Bytes FRAME_POSITION_READ = {0xFF, 0xFE, 0xFD, 0xFC, 1, 0x06, 0x02, 0, 0, 0, 0, 0, 0, 0xFB};

TEST(DoctorFrames, ModbusAnswersAreJudgedAgainstTheirRequest) {
    const AnswerCase cases[] = {
        {"id answer",
         MODBUS_ID_REQUEST,
         {0x01, 0x03, 0x02, 0x00, 0x01, 0x79, 0x84},
         Verdict::Kind::good,
         "slave 1: device id 1, CRC ok"},
        {"id answer with the CRC bytes inverted",
         MODBUS_ID_REQUEST,
         {0x01, 0x03, 0x02, 0x00, 0x01, 0x86, 0x7B},
         Verdict::Kind::checksum,
         "CRC 86 7B instead of 79 84"},
        {"answer from slave 2 with a valid CRC",
         MODBUS_POSITION_READ,
         {0x02, 0x03, 0x02, 0x01, 0xF4, 0xFC, 0x53},
         Verdict::Kind::foreign,
         "answer from slave 2, but the read was for slave 1"},
        {"answer from slave 2 with a bad CRC",
         MODBUS_POSITION_READ,
         {0x02, 0x03, 0x02, 0x01, 0xF4, 0x00, 0x00},
         Verdict::Kind::garbage,
         "not a Modbus answer to this read (slave, function or length do not fit)"},
        {"six bytes",
         MODBUS_ID_REQUEST,
         {0x01, 0x03, 0x02, 0x00, 0x01, 0x79},
         Verdict::Kind::garbage,
         "6 bytes: not a Modbus answer to a read"},
        {"exception",
         MODBUS_POSITION_READ,
         {0x01, 0x83, 0x02, 0xC0, 0xF1},
         Verdict::Kind::exception,
         "Modbus exception 2 from slave 1: the register does not exist"},
        {"echo of a write", MODBUS_INITIALISE, MODBUS_INITIALISE, Verdict::Kind::good,
         "echo: the write was taken"},
        {"echo with a changed byte",
         MODBUS_INITIALISE,
         {0x01, 0x06, 0x01, 0x00, 0x00, 0xA6, 0x48, 0x4D},
         Verdict::Kind::garbage,
         "not the echo of the write"},
    };
    for (const AnswerCase& row : cases) {
        const Verdict verdict = ModbusFrames::answer(row.request, row.answer);
        EXPECT_EQ(row.kind, verdict.kind) << row.name;
        EXPECT_EQ(row.text, verdict.text) << row.name;
    }
}

TEST(DoctorFrames, FrameAnswersAreJudgedAgainstTheirRequest) {
    const AnswerCase cases[] = {
        {"id answer",
         FRAME_ID_REQUEST,
         {0xFF, 0xFE, 0xFD, 0xFC, 1, 0x12, 0x01, 0, 0, 1, 0, 0, 0, 0xFB},
         Verdict::Kind::good,
         "gripper 1: device id 1"},
        {"position from gripper 1",
         FRAME_POSITION_READ,
         {0xFF, 0xFE, 0xFD, 0xFC, 1, 0x06, 0x02, 0, 0, 0x32, 0, 0, 0, 0xFB},
         Verdict::Kind::good,
         "gripper 1: position 50"},
        {"damaged trailer",
         FRAME_POSITION_READ,
         {0xFF, 0xFE, 0xFD, 0xFC, 1, 0x06, 0x02, 0, 0, 0xCD, 0, 0, 0, 0x04},
         Verdict::Kind::checksum,
         "damaged frame: trailer 04 instead of FB"},
        {"from gripper 2",
         FRAME_POSITION_READ,
         {0xFF, 0xFE, 0xFD, 0xFC, 2, 0x06, 0x02, 0, 0, 0x32, 0, 0, 0, 0xFB},
         Verdict::Kind::foreign,
         "frame from gripper 2, but the request was for gripper 1"},
        {"no header",
         FRAME_POSITION_READ,
         {'H', 'T', 'T', 'P', '/', '1', '.', '1', ' ', '4', '0', '0', ' ', 'B'},
         Verdict::Kind::garbage,
         "no frame header (FF FE FD FC): not a frame of this protocol"},
    };
    for (const AnswerCase& row : cases) {
        const Verdict verdict = CustomFrames::answer(row.request, row.answer);
        EXPECT_EQ(row.kind, verdict.kind) << row.name;
        EXPECT_EQ(row.text, verdict.text) << row.name;
    }
}

TEST(DoctorFrames, UnaskedDroppedFrameIsNoAnswer) {
    EXPECT_TRUE(CustomFrames::is_dropped_notice(
        {0xFF, 0xFE, 0xFD, 0xFC, 1, 0x15, 0x01, 0, 0, 1, 0, 0, 0, 0xFB}));
    EXPECT_FALSE(CustomFrames::is_dropped_notice(
        {0xFF, 0xFE, 0xFD, 0xFC, 1, 0x15, 0x02, 1, 0, 0, 0, 0, 0, 0xFB}));
    EXPECT_FALSE(CustomFrames::is_dropped_notice({0x01, 0x03, 0x02, 0x00, 0x03, 0xF8, 0x45}));
}

TEST(DoctorFrames, RequestsAreToldInWords) {
    EXPECT_EQ("Modbus read of register 0x0302 (device id) at slave 255 (any slave answers)",
              ModbusFrames::request(MODBUS_ID_REQUEST));
    EXPECT_EQ("Modbus write of register 0x0100 (initialise) = 165 at slave 1",
              ModbusFrames::request(MODBUS_INITIALISE));
    EXPECT_EQ("frame read of 12/01 (device id) for gripper 0",
              CustomFrames::request(FRAME_ID_REQUEST));
}

TEST(DoctorFrames, TargetsAreReadAsAddressesOrPaths) {
    gripper_doctor::Target target;
    std::string error;
    ASSERT_TRUE(gripper_doctor::parse_target("192.168.1.29:8888", target, error));
    EXPECT_EQ(gripper_doctor::Target::Kind::tcp, target.kind);
    EXPECT_EQ("192.168.1.29", target.host);
    EXPECT_EQ(8888, target.port);
    ASSERT_TRUE(gripper_doctor::parse_target("ttyUSB0", target, error));
    EXPECT_EQ(gripper_doctor::Target::Kind::serial, target.kind);
    EXPECT_EQ("/dev/ttyUSB0", target.path);
    ASSERT_TRUE(gripper_doctor::parse_target("./port:1", target, error));
    EXPECT_EQ("./port:1", target.path);
    EXPECT_FALSE(gripper_doctor::parse_target("192.168.1.29:123456", target, error));
    EXPECT_EQ("\"192.168.1.29:123456\": port 123456 is out of range (1-65535)", error);
}

}  // namespace
