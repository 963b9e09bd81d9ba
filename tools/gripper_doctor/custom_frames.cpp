#include "tools/gripper_doctor/custom_frames.h"

#include <algorithm>
#include <cstdio>

#include "gripper/gripper_protocol/gripper_custom_protocol/gripper_custom_protocol.h"
#include "tools/gripper_doctor/hex_text.h"

namespace gripper_doctor {
namespace {

typedef GripperCustomProtocol Custom;

const size_t FRAME_LENGTH = Custom::FRAME_LENGTH;
const size_t OFFSET_TRAILER = FRAME_LENGTH - 1;
const uint8_t ANY_GRIPPER = 0xFF;

// A request the protocol builds, with the package type its answer decodes as (PT_UNDEFINE: the
// value is shown as it is).
struct Request {
    const char* name;
    GripperProtocol::PackageType type;
    Bytes frame;
};

// Every request the protocol builds for a gripper id, read or written with value. The slow-mode
// switch is written with secondary byte 1 to switch slow mode on and 2 to switch it off, whatever
// the enumerators' names say.
std::vector<Request> requests(uint8_t id, bool set, int value) {
    Custom p;
    const GripperProtocol::PackageType shown = GripperProtocol::PT_UNDEFINE;
    return {
        {"device id", GripperProtocol::PT_ID, p.build_id_protocol()},
        {"firmware version", GripperProtocol::PT_VERSION, p.build_version_protocol(id)},
        {"initialisation", GripperProtocol::PT_INITIALIZE, p.build_initialize_protocol(id, set)},
        {"move feedback", GripperProtocol::PT_MOVE_FEEDBACK, p.build_move_feedback_protocol(id)},
        {"turn feedback", GripperProtocol::PT_TURN_FEEDBACK, p.build_turn_feedback_protocol(id)},
        {"slow mode on", shown, p.build_slow_protocol(id, set, GripperProtocol::SM_NORMAL)},
        {"slow mode off", shown, p.build_slow_protocol(id, set, GripperProtocol::SM_SLOW)},
        {"position", shown, p.build_position_protocol(id, set, value)},
        {"force", shown, p.build_force_protocol(id, set, value)},
        {"closing force", shown, p.build_closing_force_protocol(id, set, value)},
        {"angle", shown, p.build_angle_protocol(id, set, value)},
        {"stop-current acknowledgement", shown, p.build_stop_current_droped_feedback_protocol(id)},
    };
}

// The request the protocol builds byte for byte the same as frame.
Request request_of(const Bytes& frame, int32_t value) {
    const bool set = 1 == frame[Custom::OFFSET_READ_WRITE];
    for (const Request& request : requests(frame[Custom::OFFSET_ID], set, value)) {
        if (request.frame == frame) {
            return request;
        }
    }
    return {"unknown register", GripperProtocol::PT_UNDEFINE, frame};
}

std::string register_text(const Bytes& frame) {
    char code[16];
    std::snprintf(code, sizeof(code), "%02X/%02X", frame[Custom::OFFSET_REGISTER_PRIMARY],
                  frame[Custom::OFFSET_REGISTER_SECONDARY]);
    return code;
}

std::string move_text(const AbstractPackageData& data, int32_t value) {
    switch (data.feedback_) {
        case GripperProtocol::F_MOVING:
            return "moving";
        case GripperProtocol::F_ARRIVED:
            return "arrived";
        case GripperProtocol::F_DETECTED:
            return "object detected";
        default:
            return "unknown move state " + std::to_string(value);
    }
}

}  // namespace

bool CustomFrames::is_frame(const Bytes& bytes) {
    Custom protocol;
    Bytes blank = protocol.build_protocol_empty_byte(false);
    return protocol.package_protocol(blank) && FRAME_LENGTH == bytes.size() &&
           std::equal(blank.begin(), blank.begin() + Custom::OFFSET_ID, bytes.begin());
}

bool CustomFrames::is_dropped_notice(const Bytes& bytes) {
    return FRAME_LENGTH == bytes.size() && Custom::contains_dropped_feedback(ANY_GRIPPER, bytes);
}

std::string CustomFrames::request(const Bytes& frame) {
    if (!is_frame(frame)) {
        return "frame of " + std::to_string(frame.size()) + " bytes";
    }
    const int32_t number = value(frame);
    const std::string what = register_text(frame) + " (" + request_of(frame, number).name + ")";
    const std::string gripper = " for gripper " + std::to_string(frame[Custom::OFFSET_ID]);
    if (1 == frame[Custom::OFFSET_READ_WRITE]) {
        return "frame write of " + what + " = " + std::to_string(number) + gripper;
    }
    return "frame read of " + what + gripper;
}

Verdict CustomFrames::answer(const Bytes& request, const Bytes& answer) {
    Verdict verdict;
    if (!is_frame(request)) {
        verdict.text = "an answer to a request that is no frame";
        return verdict;
    }
    const bool asks_id = Custom::PRIMARY_REGISTER_ID == request[Custom::OFFSET_REGISTER_PRIMARY];
    verdict.addressed = asks_id ? -1 : request[Custom::OFFSET_ID];
    if (!is_frame(answer)) {
        verdict.text = "no frame header (FF FE FD FC): not a frame of this protocol";
        return verdict;
    }
    verdict.sender = answer[Custom::OFFSET_ID];
    Bytes framed = answer;
    if (!Custom().package_protocol(framed) || framed != answer) {
        verdict.kind = Verdict::Kind::checksum;
        verdict.text =
            "damaged frame: trailer " + hex_bytes(Bytes{answer[OFFSET_TRAILER]}) + " instead of FB";
    } else if (verdict.addressed >= 0 && verdict.sender != verdict.addressed) {
        verdict.kind = Verdict::Kind::foreign;
        verdict.text = "frame from gripper " + std::to_string(verdict.sender) +
                       ", but the request was for gripper " + std::to_string(verdict.addressed);
    } else if (answer[Custom::OFFSET_REGISTER_PRIMARY] !=
               request[Custom::OFFSET_REGISTER_PRIMARY]) {
        verdict.text = "a frame about " + register_text(answer) + ", not about the register asked";
    } else {
        verdict.kind = Verdict::Kind::good;
        verdict.text =
            "gripper " + std::to_string(verdict.sender) + ": " + meaning(request, answer);
    }
    return verdict;
}

// The answer as the protocol decodes it for the request's package type.
std::string CustomFrames::meaning(const Bytes& request, const Bytes& answer) {
    const int32_t number = value(answer);
    const Request asked = request_of(request, value(request));
    const uint8_t id = Custom::PRIMARY_REGISTER_ID == request[Custom::OFFSET_REGISTER_PRIMARY]
                           ? ANY_GRIPPER
                           : request[Custom::OFFSET_ID];
    const AbstractPackageData data = Custom().parse_get_normal_package(id, asked.type, answer);
    switch (asked.type) {
        case GripperProtocol::PT_ID:
            return "device id " + std::to_string(data.id_);
        case GripperProtocol::PT_VERSION:
            return "firmware " + dotted_bytes(data.version_);
        case GripperProtocol::PT_INITIALIZE:
            return 1 == data.initialize_value_ ? "initialised" : "not initialised";
        case GripperProtocol::PT_MOVE_FEEDBACK:
            return move_text(data, number);
        case GripperProtocol::PT_TURN_FEEDBACK:
            return "turn state " + std::to_string(number);
        default:
            return std::string(asked.name) + " " + std::to_string(number);
    }
}

int32_t CustomFrames::value(const Bytes& frame) {
    const auto start = frame.begin() + Custom::OFFSET_VALUE;
    return GripperProtocol::byte_2_int32_t(Bytes(start, start + 4),
                                           GripperProtocol::ET_LITTLE_ENDIAN);
}

}  // namespace gripper_doctor
