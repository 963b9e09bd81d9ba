// How gripper-doctor judges answers against their requests and reads its targets.

#include <gtest/gtest.h>

#include "tests/test_support/fd_stream.h"
#include "tools/gripper_doctor/custom_frames.h"
#include "tools/gripper_doctor/modbus_frames.h"
#include "tools/gripper_doctor/target.h"

namespace {

using gripper_doctor::CustomFrames;
using gripper_doctor::ModbusFrames;
using gripper_doctor::Verdict;

const Bytes MODBUS_ID_REQUEST = hex("FF 03 03 02 00 01 30 50");
const Bytes MODBUS_POSITION_READ = hex("01 03 02 02 00 01 24 72");
const Bytes FRAME_ID_REQUEST = hex("FF FE FD FC 00 12 01 00 00 00 00 00 00 FB");
const Bytes FRAME_POSITION_READ = hex("FF FE FD FC 01 06 02 00 00 00 00 00 00 FB");

TEST(DoctorFrames, AnswersAreJudgedAgainstTheirRequest) {
    const struct {
        Verdict (*judge)(const Bytes& request, const Bytes& answer);
        Bytes request;
        const char* answer;
        Verdict::Kind kind;
        std::string text;
    } rows[] = {
        {ModbusFrames::answer, MODBUS_ID_REQUEST, "01 03 02 00 01 86 7B", Verdict::Kind::checksum,
         "CRC 86 7B instead of 79 84"},
        {ModbusFrames::answer, MODBUS_POSITION_READ, "02 03 02 01 F4 FC 53", Verdict::Kind::foreign,
         "answer from slave 2, but the read was for slave 1"},
        {ModbusFrames::answer, MODBUS_POSITION_READ, "02 03 02 01 F4 00 00", Verdict::Kind::garbage,
         "not a Modbus answer to this read (slave, function or length do not fit)"},
        {ModbusFrames::answer, MODBUS_ID_REQUEST, "01 03 02 00 01 79", Verdict::Kind::garbage,
         "6 bytes: not a Modbus answer to a read"},
        {ModbusFrames::answer, MODBUS_POSITION_READ, "01 83 02 C0 F1", Verdict::Kind::exception,
         "Modbus exception 2 from slave 1: the register does not exist"},
        {CustomFrames::answer, FRAME_ID_REQUEST, "FF FE FD FC 01 12 01 00 00 01 00 00 00 FB",
         Verdict::Kind::good, "gripper 1: device id 1"},
        {CustomFrames::answer, FRAME_POSITION_READ, "FF FE FD FC 01 06 02 00 00 32 00 00 00 FB",
         Verdict::Kind::good, "gripper 1: position 50"},
        {CustomFrames::answer, FRAME_POSITION_READ, "FF FE FD FC 01 06 02 00 00 CD 00 00 00 04",
         Verdict::Kind::checksum, "damaged frame: trailer 04 instead of FB"},
        {CustomFrames::answer, FRAME_POSITION_READ, "FF FE FD FC 02 06 02 00 00 32 00 00 00 FB",
         Verdict::Kind::foreign, "frame from gripper 2, but the request was for gripper 1"},
        {CustomFrames::answer, FRAME_POSITION_READ, "48 54 54 50 2F 31 2E 31 20 34 30 30 20 42",
         Verdict::Kind::garbage, "no frame header (FF FE FD FC): not a frame of this protocol"},
    };
    for (const auto& row : rows) {
        const Verdict verdict = row.judge(row.request, hex(row.answer));
        EXPECT_EQ(row.kind, verdict.kind) << row.answer;
        EXPECT_EQ(row.text, verdict.text) << row.answer;
    }
    // A frame gripper's unasked drop notice is no answer.
    EXPECT_TRUE(CustomFrames::is_dropped_notice(hex("FF FE FD FC 01 15 01 00 00 01 00 00 00 FB")));
    EXPECT_FALSE(CustomFrames::is_dropped_notice(hex("FF FE FD FC 01 15 02 01 00 00 00 00 00 FB")));
    EXPECT_FALSE(CustomFrames::is_dropped_notice(hex("01 03 02 00 03 F8 45")));
}

// HOST:PORT targets and bad ports are in the probe and usage tests; requests and good answers told
// in words in the probe's trace.
TEST(DoctorFrames, TargetsWithoutASlashAreDevicesAndPathsMayHoldAColon) {
    gripper_doctor::Target target;
    std::string error;
    ASSERT_TRUE(gripper_doctor::parse_target("ttyUSB0", target, error));
    EXPECT_EQ(gripper_doctor::Target::Kind::serial, target.kind);
    EXPECT_EQ("/dev/ttyUSB0", target.path);
    ASSERT_TRUE(gripper_doctor::parse_target("./port:1", target, error));
    EXPECT_EQ("./port:1", target.path);
}

}  // namespace
