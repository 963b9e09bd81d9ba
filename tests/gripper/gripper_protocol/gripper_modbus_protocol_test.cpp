#include "gripper/gripper_protocol/gripper_modbus_protocol/gripper_modbus_protocol.h"

#include <gtest/gtest.h>

#include <string>

#include "gripper/gripper_common/miscellaneous_utility/miscellaneous_utility.h"

#include "tests/test_support/protocol_test_support.h"

namespace {

// The requests a driver test's simulated gripper checks on every connection and move (id,
// version, activation, motion feedback, force and speed) are not repeated here, nor those only a
// frame-protocol gripper takes.
Builds builds(GripperProtocol& p) {
    return {
        {p.build_model_protocol(1), "01 03 0A 00 00 01 87 D2"},
        {p.build_emergency_open(1), "01 03 05 00 00 01 84 C6"},
        {p.build_emegency_close(1), "01 03 05 00 00 02 C4 C7"},
        {p.build_initialize_protocol(1, false), "01 03 02 00 00 01 85 B2"},
        {p.build_position_protocol(1, false, 777), "01 03 02 02 00 01 24 72"},
        {p.build_position_protocol(1, true, 1000), "01 06 01 03 03 E8 78 88"},
        {p.build_position_protocol(2, true, -1), "02 06 01 03 FF FF 79 B5"},
        {p.build_force_protocol(1, false, 50), "01 03 01 01 00 01 D4 36"},
        {p.build_speed_protocol(1, false, 80), "01 03 01 04 00 01 C4 37"},
        {p.build_maximum_current_protocol(1, 300), "01 03 03 06 01 2C A5 C2"},
    };
}

TEST(GripperModbusProtocolBuild, FramesAreByteExactOrEmptiedWhenTheyCannotBeCompleted) {
    check_builds<GripperModbusProtocol>(builds);
}

// A write is accepted when its echo is identical; a read when its answer has 7 bytes and a valid
// CRC (low byte first), from any slave. A refusal logs the two frames last.
TEST(GripperModbusProtocolCompare, AcceptsEchoesAndValidReadAnswers) {
    const char* write = "01 06 01 03 03 E8 78 88";
    const char* read = "01 03 02 02 00 01 24 72";
    const struct {
        bool set;
        const char* request;
        const char* answer;
        bool accepted;
    } cases[] = {
        {true, write, write, true},
        {true, write, "01 06 01 03 03 E9 78 88", false},
        {true, "01 06 01 03 03 E8 00 00", "01 06 01 03 03 E8 00 00", true},
        {false, read, "01 03 02 01 F4 B8 53", true},
        {false, read, "02 03 02 01 F4 FC 53", true},
        {false, read, "01 03 02 01 F4 B8 53 00", false},
        {false, read, "01 03 02 01 F4 B8 52", false},
        {false, "", "01 03 02 01 F4 B8 53", false},
        {true, write, "", false},
    };
    GripperModbusProtocol protocol;
    for (const auto& c : cases) {
        LogCapture log;
        EXPECT_EQ(c.accepted, protocol.compare_package(c.set, frame(c.request), frame(c.answer)))
            << c.request << " / " << c.answer;
        const std::vector<std::string> lines = log.lines();
        EXPECT_EQ(c.accepted ? ""
                             : "W MiscellaneousUtility::convert_hex_binary(read_byte_stream) = " +
                                   MiscellaneousUtility::convert_hex_binary(frame(c.answer)),
                  lines.empty() ? "" : lines.back());
    }
}

// An accepted answer fills exactly its field (feedback: 1 moving, 3 arrived, 4 detected,
// 5 dropped); a refused one hands back the initial record.
TEST(GripperModbusProtocolParse, DecodesIntoTheRequestedFieldOrResets) {
    const char* refused = nullptr;
    const struct {
        uint8_t id;
        GP::PackageType type;
        const char* answer;
        const char* field;
    } cases[] = {
        {1, GP::PT_POSITION, "01 03 02 01 F4 B8 53", "position 500"},
        {1, GP::PT_POSITION, "01 03 02 FF FF B9 F4", "position 65535"},
        {1, GP::PT_MOVE_FEEDBACK, "01 03 02 00 02 39 85", "feedback 4"},
        {1, GP::PT_MOVE_FEEDBACK, "01 03 02 00 03 F8 45", "feedback 5"},
        {1, GP::PT_MOVE_FEEDBACK, "01 03 02 00 04 B9 87", refused},
        {1, GP::PT_MODEL, "01 03 02 02 07 F8 E6", "model 1"},
        {1, GP::PT_MODEL, "01 03 02 01 00 B9 D4", "model 2"},
        // An unknown code and a single byte are accepted, with no series.
        {1, GP::PT_MODEL, "01 03 02 99 99 12 7E", ""},
        {255, GP::PT_ID, "07 03 02 00 07 71 86", "id 7"},
        // Three data bytes reach into the CRC; the CRC itself is the link's business.
        {1, GP::PT_VERSION, "01 03 03 00 00 E9 84", "version [00 00 E9]"},
        {1, GP::PT_POSITION, "01 03 02 01 F4 00 00", "position 500"},
        // 255 accepts any slave, any other id only its own.
        {255, GP::PT_POSITION, "09 03 02 00 64 58 6E", "position 100"},
        {1, GP::PT_POSITION, "02 03 02 01 F4 FC 53", refused},
        {1, GP::PT_POSITION, "01 03 04 00 00 58 45", refused},
        {1, GP::PT_POSITION, "01 03 02 01 F4 B8", refused},
    };
    GripperModbusProtocol protocol;
    for (const auto& c : cases) {
        LogCapture log;
        EXPECT_EQ(c.field ? decoded(c.type, c.id, c.field) : printed(Record()),
                  printed(protocol.parse_get_normal_package(c.id, c.type, frame(c.answer))))
            << c.answer;
        EXPECT_EQ(!c.field, !log.lines().empty()) << c.type << ": " << c.answer;
    }
    // Types the protocol has no reads for, in and out of range.
    for (int32_t type : {0, 2, 6, 9, -5, 1000}) {
        EXPECT_EQ(Record(), protocol.parse_get_normal_package(1, static_cast<GP::PackageType>(type),
                                                              frame("01 03 02 00 00 B8 44")))
            << type;
    }
}

}  // namespace
