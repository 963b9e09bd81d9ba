#include "tools/gripper_simulator/custom_responder.h"

namespace gripper_sim {
namespace {

constexpr size_t kFrameLength = 14;
constexpr uint8_t kHeader[] = {0xFF, 0xFE, 0xFD, 0xFC};
constexpr uint8_t kTrailer = 0xFB;
constexpr size_t kId = 4;
constexpr size_t kPrimary = 5;
constexpr size_t kReadWrite = 7;
constexpr size_t kValue = 9;
constexpr size_t kTrailerOffset = 13;

// Registers as primary << 8 | secondary.
constexpr uint16_t kClosingForce = 0x0502;
constexpr uint16_t kForce = 0x0504;
constexpr uint16_t kPosition = 0x0602;
constexpr uint16_t kAngle = 0x0702;
constexpr uint16_t kInitialise = 0x0802;
constexpr uint16_t kSpeed = 0x0902;
constexpr uint16_t kMoveFeedback = 0x0F01;
constexpr uint16_t kTurnFeedback = 0x0F02;
constexpr uint16_t kSlowOn = 0x1101;
constexpr uint16_t kSlowOff = 0x1102;
constexpr uint16_t kIdRegister = 0x1201;
constexpr uint16_t kVersion = 0x1301;
constexpr uint16_t kDroppedFeedback = 0x1501;
constexpr uint16_t kStopCurrent = 0x1502;

constexpr int32_t kFeedbackMoving = 0;
constexpr int32_t kFeedbackArrived = 2;
constexpr int32_t kFeedbackDetected = 3;

bool is_frame_start(const Bytes& buffer) {
    for (size_t i = 0; i < sizeof(kHeader); ++i) {
        if (buffer[i] != kHeader[i]) {
            return false;
        }
    }
    return buffer[kTrailerOffset] == kTrailer;
}

int32_t value_of(const Bytes& frame) {
    uint32_t value = 0;
    for (size_t i = 0; i < 4; ++i) {
        value |= static_cast<uint32_t>(frame[kValue + i]) << (8 * i);
    }
    return static_cast<int32_t>(value);
}

void put_value(Bytes& frame, int32_t value) {
    const auto bits = static_cast<uint32_t>(value);
    for (size_t i = 0; i < 4; ++i) {
        frame[kValue + i] = static_cast<uint8_t>(bits >> (8 * i));
    }
}

}  // namespace

CustomResponder::CustomResponder(GripperModel& model, const GripperOptions& options)
    : model_(model), options_(options) {}

std::optional<Bytes> CustomResponder::next_request() {
    while (buffer_.size() >= kFrameLength) {
        if (is_frame_start(buffer_)) {
            Bytes request(buffer_.begin(), buffer_.begin() + kFrameLength);
            buffer_.erase(buffer_.begin(), buffer_.begin() + kFrameLength);
            return request;
        }
        buffer_.erase(buffer_.begin());
    }
    return std::nullopt;
}

Bytes CustomResponder::answer(const Bytes& request) {
    const auto reg = static_cast<uint16_t>(request[kPrimary] << 8 | request[kPrimary + 1]);
    if (!addressed(request[kId], reg)) {
        return {};
    }
    if (request[kReadWrite] == 1) {
        return write_value(reg, value_of(request)) ? request : Bytes{};
    }
    int32_t value = 0;
    if (request[kReadWrite] != 0 || !read_value(reg, value)) {
        return {};
    }
    Bytes reply = request;
    reply[kId] = static_cast<uint8_t>(options_.id);
    put_value(reply, value);
    return reply;
}

Bytes CustomResponder::corrupt(Bytes frame) const {
    // No checksum to break: damage the trailer and the value instead.
    if (frame.size() == kFrameLength) {
        frame[kTrailerOffset] ^= 0xFF;
        frame[kValue] ^= 0xFF;
    }
    return frame;
}

Bytes CustomResponder::readdress(Bytes frame, uint8_t id) const {
    if (frame.size() > kId) {
        frame[kId] = id;
    }
    return frame;
}

Bytes CustomResponder::dropped_frame() const {
    Bytes frame(kHeader, kHeader + sizeof(kHeader));
    frame.resize(kFrameLength, 0);
    frame[kId] = static_cast<uint8_t>(options_.id);
    frame[kPrimary] = kDroppedFeedback >> 8;
    frame[kPrimary + 1] = kDroppedFeedback & 0xFF;
    put_value(frame, 1);
    frame[kTrailerOffset] = kTrailer;
    return frame;
}

bool CustomResponder::acknowledges_drop(const Bytes& request) const {
    return request.size() == kFrameLength && request[kReadWrite] == 1 &&
           (request[kPrimary] << 8 | request[kPrimary + 1]) == kStopCurrent;
}

bool CustomResponder::addressed(uint8_t id, uint16_t reg) const {
    return id == options_.id || (id == 0 && reg == kIdRegister);
}

bool CustomResponder::read_value(uint16_t reg, int32_t& value) const {
    switch (reg) {
        case kIdRegister:
            value = options_.id;
            return true;
        case kVersion: {
            const auto& v = options_.custom_version;
            value = static_cast<int32_t>(static_cast<uint32_t>(v[0]) | v[1] << 8 | v[2] << 16 |
                                         static_cast<uint32_t>(v[3]) << 24);
            return true;
        }
        case kInitialise:
            value = model_.initialised() ? 1 : 0;
            return true;
        case kMoveFeedback:
            value = move_feedback();
            return true;
        case kTurnFeedback:
            value = kFeedbackArrived;
            return true;
        case kPosition:
            value = model_.position();
            return true;
        case kForce:
        case kClosingForce:
            value = model_.force();
            return true;
        case kSpeed:
            value = model_.speed();
            return true;
        case kAngle:
            value = model_.angle();
            return true;
        case kSlowOn:
        case kSlowOff:
            value = model_.slow() ? 1 : 0;
            return true;
        default:
            return false;
    }
}

bool CustomResponder::write_value(uint16_t reg, int32_t value) {
    switch (reg) {
        case kInitialise:
            model_.initialise();
            return true;
        case kPosition:
            model_.set_target(value);
            return true;
        case kForce:
        case kClosingForce:
            model_.set_force(value);
            return true;
        case kSpeed:
            model_.set_speed(value);
            return true;
        case kAngle:
            model_.set_angle(value);
            return true;
        case kSlowOn:
        case kSlowOff:
            model_.set_slow(reg == kSlowOn);
            return true;
        case kStopCurrent:
            return true;
        default:
            return false;
    }
}

int32_t CustomResponder::move_feedback() const {
    switch (model_.motion()) {
        case Motion::moving:
            return kFeedbackMoving;
        case Motion::detected:
            return kFeedbackDetected;
        case Motion::arrived:
        case Motion::dropped:
            return kFeedbackArrived;
    }
    return kFeedbackMoving;
}

}  // namespace gripper_sim
