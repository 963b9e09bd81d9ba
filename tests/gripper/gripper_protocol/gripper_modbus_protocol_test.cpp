#include "gripper/gripper_protocol/gripper_modbus_protocol/gripper_modbus_protocol.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "gripper/gripper_common/miscellaneous_utility/miscellaneous_utility.h"

#include "tests/gripper/gripper_protocol/protocol_test_support.h"
#include "tests/test_support/log_capture.h"

namespace {

typedef GripperProtocol GP;
typedef std::function<std::vector<uint8_t>(GripperProtocol&)> Builder;

struct BuilderCase {
    const char* name;
    Builder build;
    const char* expected;
};

// Every request the protocol can build, with its frame as the gripper expects it on the wire.
std::vector<BuilderCase> builder_cases() {
    return {
        {"id", [](GripperProtocol& p) { return p.build_id_protocol(); }, "FF 03 03 02 00 01 30 50"},
        {"model", [](GripperProtocol& p) { return p.build_model_protocol(1); },
         "01 03 0A 00 00 01 87 D2"},
        {"version", [](GripperProtocol& p) { return p.build_version_protocol(1); },
         "01 03 0A 02 00 01 26 12"},
        {"emergency open", [](GripperProtocol& p) { return p.build_emergency_open(1); },
         "01 03 05 00 00 01 84 C6"},
        {"emergency close", [](GripperProtocol& p) { return p.build_emegency_close(1); },
         "01 03 05 00 00 02 C4 C7"},
        {"initialize read",
         [](GripperProtocol& p) { return p.build_initialize_protocol(1, false); },
         "01 03 02 00 00 01 85 B2"},
        {"initialize", [](GripperProtocol& p) { return p.build_initialize_protocol(1, true); },
         "01 06 01 00 00 A5 48 4D"},
        {"move feedback", [](GripperProtocol& p) { return p.build_move_feedback_protocol(1); },
         "01 03 02 01 00 01 D4 72"},
        {"position read",
         [](GripperProtocol& p) { return p.build_position_protocol(1, false, 777); },
         "01 03 02 02 00 01 24 72"},
        {"position 1000",
         [](GripperProtocol& p) { return p.build_position_protocol(1, true, 1000); },
         "01 06 01 03 03 E8 78 88"},
        {"position 500", [](GripperProtocol& p) { return p.build_position_protocol(1, true, 500); },
         "01 06 01 03 01 F4 78 21"},
        {"position 70000",
         [](GripperProtocol& p) { return p.build_position_protocol(1, true, 70000); },
         "01 06 01 03 11 70 75 82"},
        {"position -1", [](GripperProtocol& p) { return p.build_position_protocol(2, true, -1); },
         "02 06 01 03 FF FF 79 B5"},
        {"force read", [](GripperProtocol& p) { return p.build_force_protocol(1, false, 50); },
         "01 03 01 01 00 01 D4 36"},
        {"force 50", [](GripperProtocol& p) { return p.build_force_protocol(1, true, 50); },
         "01 06 01 01 00 32 58 23"},
        {"speed read", [](GripperProtocol& p) { return p.build_speed_protocol(1, false, 80); },
         "01 03 01 04 00 01 C4 37"},
        {"speed 80", [](GripperProtocol& p) { return p.build_speed_protocol(1, true, 80); },
         "01 06 01 04 00 50 C9 CB"},
        {"maximum current",
         [](GripperProtocol& p) { return p.build_maximum_current_protocol(1, 300); },
         "01 03 03 06 01 2C A5 C2"},
    };
}

std::vector<BuilderCase> unsupported_cases() {
    return {
        {"turn feedback", [](GripperProtocol& p) { return p.build_turn_feedback_protocol(1); }, ""},
        {"slow", [](GripperProtocol& p) { return p.build_slow_protocol(1, true, GP::SM_SLOW); },
         ""},
        {"closing force",
         [](GripperProtocol& p) { return p.build_closing_force_protocol(1, true, 5); }, ""},
        {"angle", [](GripperProtocol& p) { return p.build_angle_protocol(1, true, 90); }, ""},
    };
}

// Hands out a blank frame of the wrong length, so that completing the frame must fail.
class ShortFrameModbusProtocol : public GripperModbusProtocol {
public:
    std::vector<uint8_t> build_protocol_empty_byte(bool set) override {
        std::vector<uint8_t> stream = GripperModbusProtocol::build_protocol_empty_byte(set);
        stream.pop_back();
        return stream;
    }
};

TEST(GripperModbusProtocolCrc, MatchesCrc16Modbus) {
    const std::string check = "123456789";
    EXPECT_EQ(modbus_crc_16(std::vector<uint8_t>(check.begin(), check.end())), 0x4B37);
    EXPECT_EQ(modbus_crc_16(std::vector<uint8_t>()), 0xFFFF);
    EXPECT_EQ(modbus_crc_16(frame("01 03 02 02 00 01")), 0x7224);
    EXPECT_EQ(modbus_crc_16(frame("01 03 02 00 03")), 0x45F8);
}

TEST(GripperModbusProtocolCrc, CheckComparesLowThenHighByte) {
    LogCapture log;
    EXPECT_TRUE(modbus_crc_16_check(frame("01 03 02 02 00 01"), 0x24, 0x72));
    EXPECT_TRUE(log.lines().empty());

    EXPECT_FALSE(modbus_crc_16_check(frame(""), 0xFF, 0xFF));
    EXPECT_EQ(log.lines(), std::vector<std::string>{"W 0 == sub_byte_stream.size()"});

    const std::vector<std::string> expected = {
        "W tmp_modbus_crc1 = 36",
        "W modbus_crc1 = 114",
        "W tmp_modbus_crc1 != modbus_crc1",
        "W tmp_modbus_crc2 = 114",
        "W modbus_crc2 = 36",
        "W tmp_modbus_crc2 != modbus_crc2",
        "W MiscellaneousUtility::convert_hex_binary(sub_byte_stream) = 0x01 0x03 0x02 0x02 0x00 "
        "0x01 ",
    };
    log.clear();
    EXPECT_FALSE(modbus_crc_16_check(frame("01 03 02 02 00 01"), 0x72, 0x24));
    EXPECT_EQ(log.lines(), expected);
    log.clear();
    EXPECT_FALSE(modbus_crc_16_check(frame("01 03 02 02 00 01"), 0x24, 0x73));
    EXPECT_TRUE(log.contains("tmp_modbus_crc2 != modbus_crc2"));
    EXPECT_EQ(log.lines().size(), expected.size());
}

TEST(GripperModbusProtocolBuild, FramesAreByteExact) {
    GripperModbusProtocol protocol;
    LogCapture log;
    for (const BuilderCase& c : builder_cases()) {
        EXPECT_EQ(hex_text(c.build(protocol)), c.expected) << c.name;
    }
    for (const BuilderCase& c : unsupported_cases()) {
        EXPECT_TRUE(c.build(protocol).empty()) << c.name;
    }
    EXPECT_TRUE(log.lines().empty());
}

TEST(GripperModbusProtocolBuild, BlankFrameAndLengths) {
    GripperModbusProtocol protocol;
    EXPECT_EQ(hex_text(protocol.build_protocol_empty_byte(false)), "00 03 00 00 00 00 00 00");
    EXPECT_EQ(hex_text(protocol.build_protocol_empty_byte(true)), "00 06 00 00 00 00 00 00");
    EXPECT_EQ(protocol.set_package_length(), 8);
    EXPECT_EQ(protocol.get_package_length(), 7);
    EXPECT_EQ(protocol.exception_length(), 5);
    EXPECT_EQ(protocol.get_protocol_type(), 1);
    EXPECT_FALSE(protocol.exception_parse(frame("01 83 02 C0 F1")));
    EXPECT_FALSE(protocol.parse_exception_package(1, frame("01 83 02 C0 F1")));
}

TEST(GripperModbusProtocolBuild, PackageFillsCrcOfWholeFramesOnly) {
    GripperModbusProtocol protocol;
    LogCapture log;
    std::vector<uint8_t> stream = frame("01 03 02 02 00 01 AA BB");
    EXPECT_TRUE(protocol.package_protocol(stream));
    EXPECT_EQ(hex_text(stream), "01 03 02 02 00 01 24 72");

    std::vector<uint8_t> empty;
    EXPECT_FALSE(protocol.package_protocol(empty));
    EXPECT_EQ(log.lines(), std::vector<std::string>{"E 0 == byte_stream.size()"});

    log.clear();
    std::vector<uint8_t> seven = frame("01 03 02 02 00 01 00");
    EXPECT_FALSE(protocol.package_protocol(seven));
    EXPECT_EQ(log.lines(),
              (std::vector<std::string>{"E WRITE_LENGTH: = 8", "E byte_stream.size() = 7",
                                        "E WRITE_LENGTH != byte_stream.size()"}));
    EXPECT_EQ(hex_text(seven), "01 03 02 02 00 01 00");
}

// The builders take their blank frame through the virtual interface and give up, emptied, when
// the frame cannot be completed.
TEST(GripperModbusProtocolBuild, FailedPackageEmptiesEveryFrame) {
    ShortFrameModbusProtocol protocol;
    for (const BuilderCase& c : builder_cases()) {
        LogCapture log;
        EXPECT_TRUE(c.build(protocol).empty()) << c.name;
        EXPECT_TRUE(log.contains("WRITE_LENGTH != byte_stream.size()")) << c.name;
        EXPECT_EQ(log.lines().back(), "E !package_protocol(byte_stream)") << c.name;
    }
}

TEST(GripperModbusProtocolCompare, AcceptsEchoesAndValidReadAnswers) {
    struct Case {
        const char* name;
        bool set;
        const char* write;
        const char* read;
        bool expected;
        const char* log;
    };
    const char* position_1000 = "01 06 01 03 03 E8 78 88";
    const char* position_read = "01 03 02 02 00 01 24 72";
    const Case cases[] = {
        {"echo", true, position_1000, position_1000, true, nullptr},
        {"echo value differs", true, position_1000, "01 06 01 03 03 E9 78 88", false, nullptr},
        {"echo crc differs", true, position_1000, "01 06 01 03 03 E8 78 89", false, nullptr},
        {"echo too short", true, position_1000, "01 06 01 03 03 E8 78", false, nullptr},
        {"echo too long", true, position_1000, "01 06 01 03 03 E8 78 88 00", false, nullptr},
        {"echo of a bad crc is still an echo", true, "01 06 01 03 03 E8 00 00",
         "01 06 01 03 03 E8 00 00", true, nullptr},
        {"read answer", false, position_read, "01 03 02 01 F4 B8 53", true, nullptr},
        {"read answer of any slave", false, position_read, "02 03 02 01 F4 FC 53", true, nullptr},
        {"read answer of 8 bytes", false, position_read, "01 03 02 01 F4 B8 53 00", false,
         "READ_LENGTH != read_byte_stream.size()"},
        {"read answer of 6 bytes", false, position_read, "01 03 02 01 F4 B8", false,
         "read_byte_stream.size() = 6"},
        {"read answer crc low flipped", false, position_read, "01 03 02 01 F4 B9 53", false,
         "!modbus_crc_16_check(sub_byte_stream, read_byte_stream[READ_LENGTH - 2], "
         "read_byte_stream[READ_LENGTH - 1])"},
        {"read answer crc high flipped", false, position_read, "01 03 02 01 F4 B8 52", false,
         "set = 0"},
        {"read answer data flipped", false, position_read, "01 03 02 01 F5 B8 53", false,
         "tmp_modbus_crc1 != modbus_crc1"},
        {"empty write", false, "", "01 03 02 01 F4 B8 53", false, "0 == write_byte_stream.size()"},
        {"empty read", true, position_1000, "", false, "0 == read_byte_stream.size()"},
    };
    GripperModbusProtocol protocol;
    for (const Case& c : cases) {
        LogCapture log;
        EXPECT_EQ(protocol.compare_package(c.set, frame(c.write), frame(c.read)), c.expected)
            << c.name;
        if (c.log) {
            EXPECT_TRUE(log.contains(c.log)) << c.name;
        }
        if (c.expected) {
            EXPECT_TRUE(log.lines().empty()) << c.name;
        } else {
            ASSERT_GE(log.lines().size(), 2u) << c.name;
            const std::vector<std::string> lines = log.lines();
            EXPECT_EQ(lines[lines.size() - 2].find(
                          "W MiscellaneousUtility::convert_hex_binary(write_byte_stream) = "),
                      0u)
                << c.name;
            EXPECT_EQ(lines.back(),
                      "W MiscellaneousUtility::convert_hex_binary(read_byte_stream) = " +
                          MiscellaneousUtility::convert_hex_binary(frame(c.read)))
                << c.name;
        }
    }
}

struct ParseCase {
    const char* name;
    uint8_t id;
    GP::PackageType type;
    const char* answer;
    std::function<void(AbstractPackageData&)> decoded;  // Null: the decode must fail.
    const char* log;
};

std::vector<ParseCase> parse_cases() {
    return {
        {"position", 1, GP::PT_POSITION, "01 03 02 01 F4 B8 53",
         [](AbstractPackageData& d) { d.position_value_ = 500; }, nullptr},
        {"position has no sign", 1, GP::PT_POSITION, "01 03 02 FF FF B9 F4",
         [](AbstractPackageData& d) { d.position_value_ = 65535; }, nullptr},
        {"initialize", 1, GP::PT_INITIALIZE, "01 03 02 00 01 79 84",
         [](AbstractPackageData& d) { d.initialize_value_ = 1; }, nullptr},
        {"speed", 1, GP::PT_SPEED, "01 03 02 01 F4 B8 53",
         [](AbstractPackageData& d) { d.speed_value_ = 500; }, nullptr},
        {"force", 1, GP::PT_FORCE, "01 03 02 01 F4 B8 53",
         [](AbstractPackageData& d) { d.force_value_ = 500; }, nullptr},
        {"moving", 1, GP::PT_MOVE_FEEDBACK, "01 03 02 00 00 B8 44",
         [](AbstractPackageData& d) { d.feedback_ = GP::F_MOVING; }, nullptr},
        {"arrived", 1, GP::PT_MOVE_FEEDBACK, "01 03 02 00 01 79 84",
         [](AbstractPackageData& d) { d.feedback_ = GP::F_ARRIVED; }, nullptr},
        {"detected", 1, GP::PT_MOVE_FEEDBACK, "01 03 02 00 02 39 85",
         [](AbstractPackageData& d) { d.feedback_ = GP::F_DETECTED; }, nullptr},
        {"dropped", 1, GP::PT_MOVE_FEEDBACK, "01 03 02 00 03 F8 45",
         [](AbstractPackageData& d) { d.feedback_ = GP::F_DROPPED; }, nullptr},
        {"unknown motion state", 1, GP::PT_MOVE_FEEDBACK, "01 03 02 00 04 B9 87", nullptr,
         "abstract_package_data.feedback_ = GripperProtocol::Feedback::F_UNDEFINE"},
        {"motion state 0x0100", 1, GP::PT_MOVE_FEEDBACK, "01 03 02 01 00 B9 D4", nullptr,
         "value = 256"},
        {"model series 1", 1, GP::PT_MODEL, "01 03 02 02 07 F8 E6",
         [](AbstractPackageData& d) { d.model_series_ = 1; }, nullptr},
        {"model series 2", 1, GP::PT_MODEL, "01 03 02 01 00 B9 D4",
         [](AbstractPackageData& d) { d.model_series_ = 2; }, nullptr},
        {"model series 3", 1, GP::PT_MODEL, "01 03 02 50 00 84 44",
         [](AbstractPackageData& d) { d.model_series_ = 3; }, nullptr},
        {"unknown model code", 1, GP::PT_MODEL, "01 03 02 99 99 12 7E", [](AbstractPackageData&) {},
         nullptr},
        {"one model byte matches no two-byte code", 1, GP::PT_MODEL, "01 03 01 02 00 57 24",
         [](AbstractPackageData&) {}, nullptr},
        {"id from any slave", 255, GP::PT_ID, "07 03 02 00 07 71 86",
         [](AbstractPackageData& d) { d.id_ = 7; }, nullptr},
        {"version", 1, GP::PT_VERSION, "01 03 02 01 02 38 15",
         [](AbstractPackageData& d) {
             d.version_ = {0x01, 0x02};
         },
         nullptr},
        {"one data byte", 1, GP::PT_POSITION, "01 03 01 2A 00 57 24",
         [](AbstractPackageData& d) { d.position_value_ = 0x2A; }, nullptr},
        {"three data bytes reach into the crc", 1, GP::PT_VERSION, "01 03 03 00 00 E9 84",
         [](AbstractPackageData& d) {
             d.version_ = {0x00, 0x00, 0xE9};
         },
         nullptr},
        {"the crc is the link's business", 1, GP::PT_POSITION, "01 03 02 01 F4 00 00",
         [](AbstractPackageData& d) { d.position_value_ = 500; }, nullptr},
        {"broadcast accepts any slave", 255, GP::PT_POSITION, "09 03 02 00 64 58 6E",
         [](AbstractPackageData& d) { d.position_value_ = 100; }, nullptr},
        {"foreign slave", 1, GP::PT_POSITION, "02 03 02 01 F4 FC 53", nullptr,
         "abstract_package_data.id_ != byte_stream[OFFSET_ID]"},
        {"foreign slave dump", 1, GP::PT_POSITION, "02 03 02 01 F4 FC 53", nullptr,
         "MiscellaneousUtility::convert_hex_binary(byte_stream) = 0x02 0x03 0x02 0x01 0xF4 0xFC "
         "0x53 "},
        {"zero data length", 1, GP::PT_POSITION, "01 03 00 00 00 19 84", nullptr,
         "data_length = 0"},
        {"data length past the frame", 1, GP::PT_POSITION, "01 03 04 00 00 58 45", nullptr,
         "(GET_OFFSET_LENGTH + 1 + data_length) >= byte_stream.size()"},
        {"8 bytes", 1, GP::PT_POSITION, "01 03 02 01 F4 B8 53 00", nullptr,
         "READ_LENGTH != byte_stream.size()"},
        {"6 bytes", 1, GP::PT_POSITION, "01 03 02 01 F4 B8", nullptr, "byte_stream.size() = 6"},
        {"empty", 1, GP::PT_POSITION, "", nullptr, "0 == byte_stream.size()"},
        {"turn feedback", 1, GP::PT_TURN_FEEDBACK, "01 03 02 00 00 B8 44", nullptr, nullptr},
        {"undefined", 1, GP::PT_UNDEFINE, "01 03 02 00 00 B8 44", nullptr, nullptr},
        {"stop current", 1, GP::PT_STOP_CURRENT_FEEDBACK, "01 03 02 00 00 B8 44", nullptr, nullptr},
        {"type 2", 1, GP::PT_RESERVED_2, "01 03 02 00 00 B8 44", nullptr, nullptr},
        {"type 3", 1, GP::PT_RESERVED_3, "01 03 02 00 00 B8 44", nullptr, nullptr},
        {"spare", 1, GP::PT_SPARE, "01 03 02 00 00 B8 44", nullptr, nullptr},
        {"acknowledge", 1, GP::PT_ACKNOWLEDGE, "01 03 02 00 00 B8 44", nullptr, nullptr},
        {"type -5", 1, static_cast<GP::PackageType>(-5), "01 03 02 00 00 B8 44", nullptr, nullptr},
        {"type 15", 1, static_cast<GP::PackageType>(15), "01 03 02 00 00 B8 44", nullptr, nullptr},
        {"type 1000", 1, static_cast<GP::PackageType>(1000), "01 03 02 00 00 B8 44", nullptr,
         nullptr},
    };
}

// An accepted answer fills exactly its field; a refused one hands back the initial record.
TEST(GripperModbusProtocolParse, DecodesIntoTheRequestedFieldOrResets) {
    GripperModbusProtocol protocol;
    for (const ParseCase& c : parse_cases()) {
        LogCapture log;
        AbstractPackageData expected;
        if (c.decoded) {
            expected = record(c.type, c.id);
            c.decoded(expected);
        }
        EXPECT_EQ(protocol.parse_get_normal_package(c.id, c.type, frame(c.answer)), expected)
            << c.name;
        if (c.log) {
            EXPECT_TRUE(log.contains(c.log)) << c.name;
        }
        if (c.decoded) {
            EXPECT_TRUE(log.lines().empty()) << c.name;
        }
    }
}

TEST(GripperModbusProtocolParse, LogsTheRefusedSlave) {
    GripperModbusProtocol protocol;
    LogCapture log;
    protocol.parse_get_normal_package(1, GP::PT_POSITION, frame("02 03 02 01 F4 FC 53"));
    const std::vector<std::string> expected = {
        "W byte_stream[OFFSET_ID] = 2",
        "W abstract_package_data.id_ = 1",
        "W abstract_package_data.id_ != byte_stream[OFFSET_ID]",
        "W MiscellaneousUtility::convert_hex_binary(byte_stream) = 0x02 0x03 0x02 0x01 0xF4 0xFC "
        "0x53 ",
    };
    EXPECT_EQ(log.lines(), expected);
}

// What the driver does with every read: build, check the answer, decode it.
TEST(GripperModbusProtocolParse, BuiltRequestAnswerRoundTrip) {
    GripperModbusProtocol protocol;
    const std::vector<uint8_t> request = protocol.build_position_protocol(3, false, 0);
    std::vector<uint8_t> answer = {3, 0x03, 0x02, 0x02, 0x9A, 0, 0};
    const uint16_t crc = modbus_crc_16(std::vector<uint8_t>(answer.begin(), answer.begin() + 5));
    answer[5] = static_cast<uint8_t>(crc & 0xFF);
    answer[6] = static_cast<uint8_t>(crc >> 8);
    ASSERT_TRUE(protocol.compare_package(false, request, answer));
    EXPECT_EQ(protocol.parse_get_normal_package(3, GP::PT_POSITION, answer).position_value_, 666);
}

}  // namespace
