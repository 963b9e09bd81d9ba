#include "gripper/gripper_protocol/gripper_custom_protocol/gripper_custom_protocol.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "tests/gripper/gripper_protocol/protocol_test_support.h"
#include "tests/test_support/log_capture.h"

namespace {

typedef GripperProtocol GP;
typedef std::function<std::vector<uint8_t>(GripperCustomProtocol&)> Builder;

struct BuilderCase {
    const char* name;
    Builder build;
    const char* expected;
};

// Every request the protocol can build, with its frame as the gripper expects it on the wire.
std::vector<BuilderCase> builder_cases() {
    typedef GripperCustomProtocol& P;
    return {
        {"id", [](P p) { return p.build_id_protocol(); },
         "FF FE FD FC 00 12 01 00 00 00 00 00 00 FB"},
        {"version", [](P p) { return p.build_version_protocol(1); },
         "FF FE FD FC 01 13 01 00 00 00 00 00 00 FB"},
        {"initialize", [](P p) { return p.build_initialize_protocol(1, true); },
         "FF FE FD FC 01 08 02 01 00 00 00 00 00 FB"},
        {"initialize read", [](P p) { return p.build_initialize_protocol(1, false); },
         "FF FE FD FC 01 08 02 00 00 00 00 00 00 FB"},
        {"move feedback", [](P p) { return p.build_move_feedback_protocol(1); },
         "FF FE FD FC 01 0F 01 00 00 00 00 00 00 FB"},
        {"turn feedback", [](P p) { return p.build_turn_feedback_protocol(1); },
         "FF FE FD FC 01 0F 02 00 00 00 00 00 00 FB"},
        {"slow 0", [](P p) { return p.build_slow_protocol(1, true, GP::SM_SLOW); },
         "FF FE FD FC 01 11 02 01 00 00 00 00 00 FB"},
        {"slow 1", [](P p) { return p.build_slow_protocol(1, true, GP::SM_NORMAL); },
         "FF FE FD FC 01 11 01 01 00 00 00 00 00 FB"},
        {"slow 5", [](P p) { return p.build_slow_protocol(1, true, static_cast<GP::SlowMove>(5)); },
         "FF FE FD FC 01 11 00 01 00 00 00 00 00 FB"},
        {"slow read", [](P p) { return p.build_slow_protocol(1, false, GP::SM_SLOW); },
         "FF FE FD FC 01 11 02 00 00 00 00 00 00 FB"},
        {"position 1000", [](P p) { return p.build_position_protocol(1, true, 1000); },
         "FF FE FD FC 01 06 02 01 00 E8 03 00 00 FB"},
        {"position read", [](P p) { return p.build_position_protocol(1, false, 1000); },
         "FF FE FD FC 01 06 02 00 00 00 00 00 00 FB"},
        {"position -1", [](P p) { return p.build_position_protocol(2, true, -1); },
         "FF FE FD FC 02 06 02 01 00 FF FF FF FF FB"},
        {"force 50", [](P p) { return p.build_force_protocol(1, true, 50); },
         "FF FE FD FC 01 05 04 01 00 32 00 00 00 FB"},
        {"force read", [](P p) { return p.build_force_protocol(1, false, 50); },
         "FF FE FD FC 01 05 04 00 00 00 00 00 00 FB"},
        {"closing force 70000", [](P p) { return p.build_closing_force_protocol(1, true, 70000); },
         "FF FE FD FC 01 05 02 01 00 70 11 01 00 FB"},
        {"closing force read", [](P p) { return p.build_closing_force_protocol(1, false, 9); },
         "FF FE FD FC 01 05 02 00 00 00 00 00 00 FB"},
        {"angle 90", [](P p) { return p.build_angle_protocol(7, true, 90); },
         "FF FE FD FC 07 07 02 01 00 5A 00 00 00 FB"},
        {"angle read", [](P p) { return p.build_angle_protocol(7, false, 90); },
         "FF FE FD FC 07 07 02 00 00 00 00 00 00 FB"},
        {"stop current", [](P p) { return p.build_stop_current_droped_feedback_protocol(1); },
         "FF FE FD FC 01 15 02 01 00 00 00 00 00 FB"},
    };
}

std::vector<BuilderCase> unsupported_cases() {
    typedef GripperCustomProtocol& P;
    return {
        {"model", [](P p) { return p.build_model_protocol(1); }, ""},
        {"emergency open", [](P p) { return p.build_emergency_open(1); }, ""},
        {"emergency close", [](P p) { return p.build_emegency_close(1); }, ""},
        {"speed", [](P p) { return p.build_speed_protocol(1, true, 80); }, ""},
        {"maximum current", [](P p) { return p.build_maximum_current_protocol(1, 300); }, ""},
    };
}

// Hands out a blank frame of the wrong length, so that completing the frame must fail.
class LongFrameCustomProtocol : public GripperCustomProtocol {
public:
    std::vector<uint8_t> build_protocol_empty_byte(bool set) override {
        std::vector<uint8_t> stream = GripperCustomProtocol::build_protocol_empty_byte(set);
        stream.push_back(0);
        return stream;
    }
};

TEST(GripperCustomProtocolBuild, FramesAreByteExact) {
    GripperCustomProtocol protocol;
    LogCapture log;
    for (const BuilderCase& c : builder_cases()) {
        EXPECT_EQ(hex_text(c.build(protocol)), c.expected) << c.name;
    }
    for (const BuilderCase& c : unsupported_cases()) {
        EXPECT_TRUE(c.build(protocol).empty()) << c.name;
    }
    EXPECT_TRUE(log.lines().empty());
}

TEST(GripperCustomProtocolBuild, BlankFrameAndLengths) {
    GripperCustomProtocol protocol;
    EXPECT_EQ(hex_text(protocol.build_protocol_empty_byte(false)),
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(hex_text(protocol.build_protocol_empty_byte(true)),
              "00 00 00 00 00 00 00 01 00 00 00 00 00 00");
    EXPECT_EQ(protocol.set_package_length(), 14);
    EXPECT_EQ(protocol.get_package_length(), 14);
    EXPECT_EQ(protocol.exception_length(), 0);
    EXPECT_EQ(protocol.get_protocol_type(), 0);
    const std::vector<uint8_t> any = frame("FF FE FD FC 01 06 02 00 00 00 00 00 00 FB");
    EXPECT_FALSE(protocol.exception_parse(any));
    EXPECT_FALSE(protocol.parse_exception_package(1, any));
}

TEST(GripperCustomProtocolBuild, PackageWritesHeaderAndTrailerOnly) {
    GripperCustomProtocol protocol;
    LogCapture log;
    std::vector<uint8_t> stream = frame("11 22 33 44 01 02 03 04 05 06 07 08 09 0A");
    EXPECT_TRUE(protocol.package_protocol(stream));
    EXPECT_EQ(hex_text(stream), "FF FE FD FC 01 02 03 04 05 06 07 08 09 FB");

    std::vector<uint8_t> empty;
    EXPECT_FALSE(protocol.package_protocol(empty));
    EXPECT_EQ(log.lines(), std::vector<std::string>{"E 0 == byte_stream.size()"});

    log.clear();
    std::vector<uint8_t> thirteen(13, 0x55);
    EXPECT_FALSE(protocol.package_protocol(thirteen));
    EXPECT_EQ(log.lines(),
              std::vector<std::string>{"E FRAME_LENGTH != static_cast<int>(byte_stream.size())"});
    EXPECT_EQ(thirteen, std::vector<uint8_t>(13, 0x55));
}

// The builders take their blank frame through the virtual interface and give up, emptied, when
// the frame cannot be completed.
TEST(GripperCustomProtocolBuild, FailedPackageEmptiesEveryFrame) {
    LongFrameCustomProtocol protocol;
    for (const BuilderCase& c : builder_cases()) {
        LogCapture log;
        EXPECT_TRUE(c.build(protocol).empty()) << c.name;
        EXPECT_EQ(log.lines(), (std::vector<std::string>{
                                   "E FRAME_LENGTH != static_cast<int>(byte_stream.size())",
                                   "E !package_protocol(byte_stream)"}))
            << c.name;
    }
}

// Only the request's length is judged; the answer's content is the decoder's business.
TEST(GripperCustomProtocolCompare, ChecksTheRequestOnly) {
    struct Case {
        const char* name;
        bool set;
        const char* write;
        const char* read;
        bool expected;
        std::vector<std::string> log;
    };
    const char* request = "FF FE FD FC 01 06 02 01 00 E8 03 00 00 FB";
    const Case cases[] = {
        {"echo", true, request, request, true, {}},
        {"any answer", false, request, "01", true, {}},
        {"answer of another gripper",
         false,
         request,
         "FF FE FD FC 02 06 02 01 00 E8 03 00 00 FB",
         true,
         {}},
        {"empty write", true, "", request, false, {"W 0 == write_byte_stream.size()"}},
        {"empty read", true, request, "", false, {"W 0 == read_byte_stream.size()"}},
        {"13-byte request",
         true,
         "FF FE FD FC 01 06 02 01 00 E8 03 00 00",
         request,
         false,
         {"W FRAME_LENGTH != static_cast<int>(write_byte_stream.size())", "W set:1"}},
        {"15-byte request",
         false,
         "FF FE FD FC 01 06 02 01 00 E8 03 00 00 FB 00",
         request,
         false,
         {"W FRAME_LENGTH != static_cast<int>(write_byte_stream.size())", "W set:0"}},
    };
    GripperCustomProtocol protocol;
    for (const Case& c : cases) {
        LogCapture log;
        EXPECT_EQ(protocol.compare_package(c.set, frame(c.write), frame(c.read)), c.expected)
            << c.name;
        EXPECT_EQ(log.lines(), c.log) << c.name;
    }
}

// A frame with the given id, primary register and value bytes; the rest as a gripper answers.
std::string answer(const char* id, const char* primary, const char* value) {
    return std::string("FF FE FD FC ") + id + " " + primary + " 02 00 00 " + value + " FB";
}

struct ParseCase {
    const char* name;
    uint8_t id;
    GP::PackageType type;
    std::string answer;
    bool accepted;
    std::function<void(AbstractPackageData&)> decoded;
    const char* log;
};

std::vector<ParseCase> parse_cases() {
    typedef AbstractPackageData& D;
    const auto nothing = [](D) {};
    return {
        {"position", 1, GP::PT_POSITION, answer("01", "06", "E8 03 00 00"), true,
         [](D d) { d.position_value_ = 1000; }, nullptr},
        {"position -1", 1, GP::PT_POSITION, answer("01", "06", "FF FF FF FF"), true,
         [](D d) { d.position_value_ = -1; }, nullptr},
        {"position of another register", 1, GP::PT_POSITION, answer("01", "05", "E8 03 00 00"),
         false, nothing, "PRIMARY_REGISTER_POSITION != byteStream[OFFSET_REGISTER_PRIMARY]"},
        {"force", 1, GP::PT_FORCE, answer("01", "05", "32 00 00 00"), true,
         [](D d) { d.force_value_ = 50; }, nullptr},
        {"force of another register", 1, GP::PT_FORCE, answer("01", "06", "32 00 00 00"), false,
         nothing, "PRIMARY_REGISTER_FORCE != byteStream[OFFSET_REGISTER_PRIMARY]"},
        {"speed of any register", 1, GP::PT_SPEED, answer("01", "42", "50 00 00 00"), true,
         [](D d) { d.speed_value_ = 80; }, nullptr},
        {"spare of any register", 1, GP::PT_SPARE, answer("01", "42", "01 02 03 04"), true,
         [](D d) { d.spare_value_ = 0x04030201; }, nullptr},
        {"initialize", 1, GP::PT_INITIALIZE, answer("01", "08", "01 00 00 00"), true,
         [](D d) { d.initialize_value_ = 1; }, nullptr},
        {"initialize of another register", 1, GP::PT_INITIALIZE, answer("01", "0F", "01 00 00 00"),
         false, nothing, "byte_stream[OFFSET_REGISTER_PRIMARY] = f"},
        {"moving", 1, GP::PT_MOVE_FEEDBACK, answer("01", "0F", "00 00 00 00"), true,
         [](D d) { d.feedback_ = GP::F_MOVING; }, nullptr},
        {"arrived", 1, GP::PT_MOVE_FEEDBACK, answer("01", "0F", "02 00 00 00"), true,
         [](D d) { d.feedback_ = GP::F_ARRIVED; }, nullptr},
        {"detected", 1, GP::PT_MOVE_FEEDBACK, answer("01", "0F", "03 00 00 00"), true,
         [](D d) { d.feedback_ = GP::F_DETECTED; }, nullptr},
        {"motion state 1", 1, GP::PT_MOVE_FEEDBACK, answer("01", "0F", "01 00 00 00"), false,
         nothing,
         "abstract_package_data.package_type_ = GripperProtocol::PackageType::PT_UNDEFINE"},
        {"motion state 4", 1, GP::PT_MOVE_FEEDBACK, answer("01", "0F", "04 00 00 00"), false,
         nothing, "value = 4"},
        {"motion of another register", 1, GP::PT_MOVE_FEEDBACK, answer("01", "06", "00 00 00 00"),
         false, nothing, "PRIMARY_REGISTER_MOVE_FEEDBACK != byteStream[OFFSET_REGISTER_PRIMARY]"},
        {"turning", 1, GP::PT_TURN_FEEDBACK, answer("01", "0F", "00 00 00 00"), true,
         [](D d) { d.feedback_ = GP::F_TURNING; }, nullptr},
        {"turn arrived", 1, GP::PT_TURN_FEEDBACK, answer("01", "0F", "02 00 00 00"), true,
         [](D d) { d.feedback_ = GP::F_ARRIVED; }, nullptr},
        {"turn detected", 1, GP::PT_TURN_FEEDBACK, answer("01", "0F", "03 00 00 00"), true,
         [](D d) { d.feedback_ = GP::F_DETECTED; }, nullptr},
        {"unknown turn state is accepted", 1, GP::PT_TURN_FEEDBACK,
         answer("01", "0F", "07 00 00 00"), true, nothing,
         "abstractPackageData.feedback = Feedback.UNDEFINE"},
        {"turn of another register", 1, GP::PT_TURN_FEEDBACK, answer("01", "07", "00 00 00 00"),
         false, nothing, "byte_stream[OFFSET_REGISTER_PRIMARY] = 7"},
        {"dropped whatever the value", 1, GP::PT_STOP_CURRENT_FEEDBACK,
         answer("01", "15", "12 34 56 78"), true, [](D d) { d.feedback_ = GP::F_DROPPED; },
         nullptr},
        {"acknowledge decodes nothing", 1, GP::PT_ACKNOWLEDGE, answer("01", "15", "12 34 56 78"),
         true, nothing, nullptr},
        {"model is always series 3", 1, GP::PT_MODEL, answer("01", "99", "99 99 99 99"), true,
         [](D d) { d.model_series_ = 3; }, nullptr},
        {"id", 255, GP::PT_ID, answer("05", "12", "05 01 00 00"), true, [](D d) { d.id_ = 5; },
         nullptr},
        {"version", 1, GP::PT_VERSION, answer("01", "13", "04 03 02 01"), true,
         [](D d) {
             d.version_ = {0x04, 0x03, 0x02, 0x01};
         },
         nullptr},
        {"damaged header and trailer", 1, GP::PT_POSITION,
         "00 00 00 00 01 06 02 00 00 64 00 00 00 00", true, [](D d) { d.position_value_ = 100; },
         nullptr},
        {"broadcast accepts any gripper", 255, GP::PT_POSITION, answer("09", "06", "64 00 00 00"),
         true, [](D d) { d.position_value_ = 100; }, nullptr},
        {"another gripper", 1, GP::PT_POSITION, answer("02", "06", "64 00 00 00"), false, nothing,
         "abstract_package_data.id_ != byte_stream[OFFSET_ID]"},
        {"id 254 is checked", 254, GP::PT_POSITION, answer("02", "06", "64 00 00 00"), false,
         nothing, "byte_stream[OFFSET_ID] = 2"},
        {"13 bytes", 1, GP::PT_POSITION, "FF FE FD FC 01 06 02 00 00 64 00 00 00", false, nothing,
         "FRAME_LENGTH != byte_stream.size()"},
        {"15 bytes", 1, GP::PT_POSITION, answer("01", "06", "64 00 00 00") + " 00", false, nothing,
         "MiscellaneousUtility::convert_hex_binary(byte_stream) = 0xFF "},
        {"empty", 1, GP::PT_POSITION, "", false, nothing, "FRAME_LENGTH != byte_stream.size()"},
        {"undefined", 1, GP::PT_UNDEFINE, answer("01", "06", "64 00 00 00"), false, nothing,
         nullptr},
        {"type 2", 1, GP::PT_RESERVED_2, answer("01", "06", "64 00 00 00"), false, nothing,
         nullptr},
        {"type 3", 1, GP::PT_RESERVED_3, answer("01", "06", "64 00 00 00"), false, nothing,
         nullptr},
        {"type 15", 1, static_cast<GP::PackageType>(15), answer("01", "06", "64 00 00 00"), false,
         nothing, nullptr},
        {"type -5", 1, static_cast<GP::PackageType>(-5), answer("01", "06", "64 00 00 00"), false,
         nothing, nullptr},
        {"type 1000", 1, static_cast<GP::PackageType>(1000), answer("01", "06", "64 00 00 00"),
         false, nothing, nullptr},
    };
}

// A refused answer keeps the requested id and the untouched values; only the type is cleared.
TEST(GripperCustomProtocolParse, DecodesIntoTheRequestedFieldOrClearsTheType) {
    GripperCustomProtocol protocol;
    for (const ParseCase& c : parse_cases()) {
        LogCapture log;
        AbstractPackageData expected = record(c.accepted ? c.type : GP::PT_UNDEFINE, c.id);
        c.decoded(expected);
        EXPECT_EQ(protocol.parse_get_normal_package(c.id, c.type, frame(c.answer)), expected)
            << c.name;
        if (c.log) {
            EXPECT_TRUE(log.contains(c.log)) << c.name;
        } else if (c.accepted) {
            EXPECT_TRUE(log.lines().empty()) << c.name;
        }
    }
}

TEST(GripperCustomProtocolParse, LogsEachRefusalCompletely) {
    GripperCustomProtocol protocol;
    const std::string dump =
        "0xFF 0xFE 0xFD 0xFC 0x01 0x0F 0x02 0x00 0x00 0x01 0x00 0x00 0x00 0xFB ";
    {
        LogCapture log;
        protocol.parse_get_normal_package(1, GP::PT_POSITION,
                                          frame(answer("02", "06", "00 00 00 00")));
        EXPECT_EQ(log.lines(),
                  (std::vector<std::string>{"W abstract_package_data.id_ != byte_stream[OFFSET_ID]",
                                            "W byte_stream[OFFSET_ID] = 2",
                                            "W abstract_package_data.id_ = 1"}));
    }
    {
        LogCapture log;
        protocol.parse_get_normal_package(1, GP::PT_MOVE_FEEDBACK,
                                          frame(answer("01", "0F", "01 00 00 00")));
        EXPECT_EQ(log.lines(),
                  (std::vector<std::string>{"W value = 1",
                                            "W abstract_package_data.package_type_ = "
                                            "GripperProtocol::PackageType::PT_UNDEFINE",
                                            "W byte_stream = " + dump}));
    }
    {
        LogCapture log;
        protocol.parse_get_normal_package(1, GP::PT_INITIALIZE,
                                          frame(answer("01", "0F", "01 00 00 00")));
        EXPECT_EQ(log.lines(),
                  (std::vector<std::string>{
                      "W byte_stream[OFFSET_REGISTER_PRIMARY] = f",
                      "W PRIMARY_REGISTER_INITIALIZE != byteStream[OFFSET_REGISTER_PRIMARY]"}));
    }
}

// What the driver does with every read: build, check the answer, decode it.
TEST(GripperCustomProtocolParse, BuiltRequestAnswerRoundTrip) {
    GripperCustomProtocol protocol;
    const std::vector<uint8_t> request = protocol.build_force_protocol(4, false, 0);
    std::vector<uint8_t> reply = request;
    reply[GripperCustomProtocol::OFFSET_VALUE] = 77;
    ASSERT_TRUE(protocol.compare_package(false, request, reply));
    EXPECT_EQ(protocol.parse_get_normal_package(4, GP::PT_FORCE, reply).force_value_, 77);
}

}  // namespace
