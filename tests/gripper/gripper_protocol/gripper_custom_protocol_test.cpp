#include "gripper/gripper_protocol/gripper_custom_protocol/gripper_custom_protocol.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/test_support/protocol_test_support.h"

namespace {

// The requests a driver test's simulated gripper checks on every connection and move (version,
// activation, motion feedback) are not repeated here, nor those only a Modbus gripper takes.
Builds builds(GripperCustomProtocol& p) {
    const std::string head = "FF FE FD FC ";
    return {
        {p.build_id_protocol(), "FF FE FD FC 00 12 01 00 00 00 00 00 00 FB"},
        {p.build_initialize_protocol(1, false), head + "01 08 02 00 00 00 00 00 00 FB"},
        {p.build_turn_feedback_protocol(1), head + "01 0F 02 00 00 00 00 00 00 FB"},
        {p.build_slow_protocol(1, true, GP::SM_SLOW), head + "01 11 02 01 00 00 00 00 00 FB"},
        {p.build_slow_protocol(1, true, GP::SM_NORMAL), head + "01 11 01 01 00 00 00 00 00 FB"},
        {p.build_slow_protocol(1, false, GP::SM_SLOW), head + "01 11 02 00 00 00 00 00 00 FB"},
        {p.build_position_protocol(1, true, 1000), "FF FE FD FC 01 06 02 01 00 E8 03 00 00 FB"},
        {p.build_position_protocol(2, true, -1), head + "02 06 02 01 00 FF FF FF FF FB"},
        {p.build_force_protocol(1, true, 50), head + "01 05 04 01 00 32 00 00 00 FB"},
        {p.build_force_protocol(1, false, 50), head + "01 05 04 00 00 00 00 00 00 FB"},
        {p.build_closing_force_protocol(1, true, 70000), head + "01 05 02 01 00 70 11 01 00 FB"},
        {p.build_angle_protocol(7, true, 90), head + "07 07 02 01 00 5A 00 00 00 FB"},
        {p.build_stop_current_droped_feedback_protocol(1), head + "01 15 02 01 00 00 00 00 00 FB"},
    };
}

TEST(GripperCustomProtocolBuild, FramesAreByteExactOrEmptiedWhenTheyCannotBeCompleted) {
    check_builds<GripperCustomProtocol>(builds);
}

// Only the request's length is judged; the answer's content is the decoder's business.
TEST(GripperCustomProtocolCompare, ChecksTheRequestOnly) {
    const std::string request = "FF FE FD FC 01 06 02 01 00 E8 03 00 00 FB";
    const struct {
        bool set;
        std::string request;
        std::string answer;
        bool accepted;
    } cases[] = {
        {true, request, request, true},
        {false, request, "01", true},
        {false, request, "FF FE FD FC 02 06 02 01 00 E8 03 00 00 FB", true},
        {true, "", request, false},
        {true, request, "", false},
        {true, request.substr(0, 38), request, false},
        {false, request + " 00", request, false},
    };
    GripperCustomProtocol protocol;
    for (const auto& c : cases) {
        LogCapture log;
        EXPECT_EQ(c.accepted, protocol.compare_package(c.set, frame(c.request), frame(c.answer)))
            << c.request << " / " << c.answer;
        EXPECT_EQ(c.accepted, log.lines().empty());
    }
}

// An answer with the given id, primary register and value bytes; the rest as a gripper answers.
std::string answer(const char* id, const char* primary, const char* value) {
    return std::string("FF FE FD FC ") + id + " " + primary + " 02 00 00 " + value + " FB";
}

// An accepted answer fills exactly its field (feedback: 1 moving, 2 turning, 3 arrived,
// 4 detected, 5 dropped); a refused one keeps the requested id and the untouched values, only the
// type is cleared. Refusals are logged.
TEST(GripperCustomProtocolParse, DecodesIntoTheRequestedFieldOrClearsTheType) {
    const char* refused = nullptr;
    const std::string position = answer("01", "06", "64 00 00 00");
    const struct {
        uint8_t id;
        GP::PackageType type;
        std::string answer;
        const char* field;
    } cases[] = {
        {1, GP::PT_POSITION, answer("01", "06", "E8 03 00 00"), "position 1000"},
        {1, GP::PT_POSITION, answer("01", "06", "FF FF FF FF"), "position -1"},
        {1, GP::PT_POSITION, answer("01", "05", "E8 03 00 00"), refused},
        {1, GP::PT_FORCE, answer("01", "05", "32 00 00 00"), "force 50"},
        {1, GP::PT_FORCE, answer("01", "06", "32 00 00 00"), refused},
        // Speed and spare are taken from any register.
        {1, GP::PT_SPEED, answer("01", "42", "50 00 00 00"), "speed 80"},
        {1, GP::PT_SPARE, answer("01", "42", "01 02 03 04"), "spare 67305985"},
        {1, GP::PT_INITIALIZE, answer("01", "0F", "01 00 00 00"), refused},
        {1, GP::PT_MOVE_FEEDBACK, answer("01", "0F", "03 00 00 00"), "feedback 4"},
        {1, GP::PT_MOVE_FEEDBACK, answer("01", "0F", "01 00 00 00"), refused},
        {1, GP::PT_MOVE_FEEDBACK, answer("01", "06", "00 00 00 00"), refused},
        {1, GP::PT_TURN_FEEDBACK, answer("01", "0F", "00 00 00 00"), "feedback 2"},
        {1, GP::PT_TURN_FEEDBACK, answer("01", "0F", "03 00 00 00"), "feedback 4"},
        // Unlike a move state, an unknown turn state is accepted (with a warning).
        {1, GP::PT_TURN_FEEDBACK, answer("01", "0F", "07 00 00 00"), ""},
        {1, GP::PT_TURN_FEEDBACK, answer("01", "07", "00 00 00 00"), refused},
        {1, GP::PT_STOP_CURRENT_FEEDBACK, answer("01", "15", "12 34 56 78"), "feedback 5"},
        {1, GP::PT_ACKNOWLEDGE, answer("01", "15", "12 34 56 78"), ""},
        {255, GP::PT_ID, answer("05", "12", "05 01 00 00"), "id 5"},
        // Header and trailer are not checked; 255 accepts any gripper, 254 only its own.
        {1, GP::PT_POSITION, "00 00 00 00 01 06 02 00 00 64 00 00 00 00", "position 100"},
        {255, GP::PT_POSITION, answer("09", "06", "64 00 00 00"), "position 100"},
        {1, GP::PT_POSITION, answer("02", "06", "64 00 00 00"), refused},
        {254, GP::PT_POSITION, answer("02", "06", "64 00 00 00"), refused},
        {1, GP::PT_POSITION, position.substr(0, 38), refused},
    };
    GripperCustomProtocol protocol;
    for (const auto& c : cases) {
        LogCapture log;
        EXPECT_EQ(c.field ? decoded(c.type, c.id, c.field) : decoded(GP::PT_UNDEFINE, c.id, ""),
                  printed(protocol.parse_get_normal_package(c.id, c.type, frame(c.answer))))
            << c.answer;
        const bool unknown_turn = GP::PT_TURN_FEEDBACK == c.type && c.field && !*c.field;
        EXPECT_EQ(!c.field || unknown_turn, !log.lines().empty()) << c.type << ": " << c.answer;
    }
    // Types the protocol has no reads for, in and out of range.
    for (int32_t type : {0, 2, -5, 1000}) {
        EXPECT_EQ(record(GP::PT_UNDEFINE, 1),
                  protocol.parse_get_normal_package(1, static_cast<GP::PackageType>(type),
                                                    frame(position)))
            << type;
    }
}

}  // namespace
