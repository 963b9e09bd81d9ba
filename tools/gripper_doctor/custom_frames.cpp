#include "tools/gripper_doctor/custom_frames.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <utility>

#include "tools/gripper_doctor/hex_text.h"

namespace gripper_doctor {
namespace {

const uint8_t HEADER[] = {0xFF, 0xFE, 0xFD, 0xFC};
const uint8_t TRAILER = 0xFB;
const size_t OFFSET_ID = 4;
const size_t OFFSET_PRIMARY = 5;
const size_t OFFSET_SECONDARY = 6;
const size_t OFFSET_READ_WRITE = 7;
const size_t OFFSET_VALUE = 9;
const size_t OFFSET_TRAILER = 13;

typedef std::pair<uint8_t, uint8_t> Register;

const std::map<Register, const char*>& register_names() {
    static const std::map<Register, const char*> names = {
        {{0x12, 0x01}, "device id"},
        {{0x13, 0x01}, "firmware version"},
        {{0x08, 0x02}, "initialisation"},
        {{0x0F, 0x01}, "move feedback"},
        {{0x0F, 0x02}, "turn feedback"},
        {{0x11, 0x01}, "slow mode on"},
        {{0x11, 0x02}, "slow mode off"},
        {{0x06, 0x02}, "position"},
        {{0x05, 0x04}, "force"},
        {{0x05, 0x02}, "closing force"},
        {{0x09, 0x02}, "speed"},
        {{0x07, 0x02}, "angle"},
        {{0x15, 0x02}, "stop-current acknowledgement"},
        {{0x15, 0x01}, "object dropped"},
    };
    return names;
}

std::string register_text(const Bytes& frame) {
    char code[16];
    std::snprintf(code, sizeof(code), "%02X/%02X", frame[OFFSET_PRIMARY], frame[OFFSET_SECONDARY]);
    return code;
}

std::string move_text(int32_t value) {
    switch (value) {
        case 0:
            return "moving";
        case 2:
            return "arrived";
        case 3:
            return "object detected";
        default:
            return "unknown move state " + std::to_string(value);
    }
}

}  // namespace

bool CustomFrames::is_frame(const Bytes& bytes) {
    return FRAME_LENGTH == bytes.size() && std::equal(HEADER, HEADER + 4, bytes.begin());
}

bool CustomFrames::is_dropped_notice(const Bytes& bytes) {
    return is_frame(bytes) && 0x15 == bytes[OFFSET_PRIMARY] && 0x01 == bytes[OFFSET_SECONDARY] &&
           TRAILER == bytes[OFFSET_TRAILER];
}

std::string CustomFrames::request(const Bytes& frame) {
    if (!is_frame(frame)) {
        return "frame of " + std::to_string(frame.size()) + " bytes";
    }
    const std::string what = register_text(frame) + " (" +
                             register_name(frame[OFFSET_PRIMARY], frame[OFFSET_SECONDARY]) + ")";
    const std::string gripper = " for gripper " + std::to_string(frame[OFFSET_ID]);
    if (1 == frame[OFFSET_READ_WRITE]) {
        return "frame write of " + what + " = " + std::to_string(value(frame)) + gripper;
    }
    return "frame read of " + what + gripper;
}

Verdict CustomFrames::answer(const Bytes& request, const Bytes& answer) {
    Verdict verdict;
    if (!is_frame(request)) {
        verdict.text = "an answer to a request that is no frame";
        return verdict;
    }
    const bool asks_id = 0x12 == request[OFFSET_PRIMARY];
    verdict.addressed = asks_id ? -1 : request[OFFSET_ID];
    if (!is_frame(answer)) {
        verdict.text = "no frame header (FF FE FD FC): not a frame of this protocol";
        return verdict;
    }
    verdict.sender = answer[OFFSET_ID];
    if (TRAILER != answer[OFFSET_TRAILER]) {
        verdict.kind = Verdict::Kind::checksum;
        verdict.text =
            "damaged frame: trailer " + hex_bytes(Bytes{answer[OFFSET_TRAILER]}) + " instead of FB";
    } else if (verdict.addressed >= 0 && verdict.sender != verdict.addressed) {
        verdict.kind = Verdict::Kind::foreign;
        verdict.text = "frame from gripper " + std::to_string(verdict.sender) +
                       ", but the request was for gripper " + std::to_string(verdict.addressed);
    } else if (answer[OFFSET_PRIMARY] != request[OFFSET_PRIMARY]) {
        verdict.text = "a frame about " + register_text(answer) + ", not about the register asked";
    } else {
        verdict.kind = Verdict::Kind::good;
        verdict.text = "gripper " + std::to_string(verdict.sender) + ": " + meaning(answer);
    }
    return verdict;
}

std::string CustomFrames::meaning(const Bytes& frame) {
    const int32_t number = value(frame);
    switch (frame[OFFSET_PRIMARY]) {
        case 0x12:
            return "device id " + std::to_string(number & 0xFF);
        case 0x13:
            return "firmware " +
                   dotted_bytes(Bytes(frame.begin() + OFFSET_VALUE, frame.begin() + 13));
        case 0x08:
            return 1 == number ? "initialised" : "not initialised";
        case 0x0F:
            return 0x01 == frame[OFFSET_SECONDARY] ? move_text(number)
                                                   : "turn state " + std::to_string(number);
        default:
            return register_name(frame[OFFSET_PRIMARY], frame[OFFSET_SECONDARY]) + " " +
                   std::to_string(number);
    }
}

std::string CustomFrames::register_name(uint8_t primary, uint8_t secondary) {
    const auto found = register_names().find(Register(primary, secondary));
    return register_names().end() == found ? "unknown register" : found->second;
}

int32_t CustomFrames::value(const Bytes& frame) {
    uint32_t number = 0;
    for (size_t i = 0; i < 4; ++i) {
        number |= static_cast<uint32_t>(frame[OFFSET_VALUE + i]) << (8 * i);
    }
    return static_cast<int32_t>(number);
}

}  // namespace gripper_doctor
