#include "tools/gripper_simulator/modbus_responder.h"

#include "tools/gripper_simulator/crc16.h"

namespace gripper_sim {
namespace {

constexpr size_t kRequestLength = 8;
constexpr uint8_t kRead = 0x03;
constexpr uint8_t kWrite = 0x06;
constexpr uint8_t kIdRequestAddress = 0xFF;

constexpr uint16_t kInitialise = 0x0100;
constexpr uint16_t kForce = 0x0101;
constexpr uint16_t kTarget = 0x0103;
constexpr uint16_t kSpeed = 0x0104;
constexpr uint16_t kInitState = 0x0200;
constexpr uint16_t kMotionState = 0x0201;
constexpr uint16_t kPosition = 0x0202;
constexpr uint16_t kId = 0x0302;
constexpr uint16_t kMaximumCurrent = 0x0306;
constexpr uint16_t kEmergency = 0x0500;
constexpr uint16_t kModel = 0x0A00;
constexpr uint16_t kVersion = 0x0A02;

constexpr uint16_t kInitialiseCommand = 0x00A5;
constexpr uint16_t kEmergencyOpen = 1;
constexpr uint16_t kEmergencyClose = 2;

constexpr uint8_t kIllegalFunction = 0x01;
constexpr uint8_t kIllegalAddress = 0x02;
constexpr uint8_t kIllegalValue = 0x03;

uint16_t word(const Bytes& frame, size_t offset) {
    return static_cast<uint16_t>(frame[offset] << 8 | frame[offset + 1]);
}

Bytes with_crc(Bytes frame) {
    const uint16_t crc = crc16_modbus(frame.data(), frame.size());
    frame.push_back(static_cast<uint8_t>(crc & 0xFF));
    frame.push_back(static_cast<uint8_t>(crc >> 8));
    return frame;
}

Bytes value_answer(uint8_t address, uint16_t value) {
    return with_crc(
        {address, kRead, 2, static_cast<uint8_t>(value >> 8), static_cast<uint8_t>(value & 0xFF)});
}

Bytes exception_answer(uint8_t address, uint8_t function, uint8_t code) {
    return with_crc({address, static_cast<uint8_t>(function | 0x80), code});
}

}  // namespace

ModbusResponder::ModbusResponder(GripperModel& model, const GripperOptions& options)
    : model_(model), options_(options) {}

std::optional<Bytes> ModbusResponder::next_request() {
    // Every request is 8 bytes; a window whose CRC does not match is junk, so slide by one byte.
    while (buffer_.size() >= kRequestLength) {
        const uint16_t crc = crc16_modbus(buffer_.data(), kRequestLength - 2);
        if (buffer_[6] == (crc & 0xFF) && buffer_[7] == (crc >> 8)) {
            Bytes request(buffer_.begin(), buffer_.begin() + kRequestLength);
            buffer_.erase(buffer_.begin(), buffer_.begin() + kRequestLength);
            return request;
        }
        buffer_.erase(buffer_.begin());
    }
    return std::nullopt;
}

Bytes ModbusResponder::answer(const Bytes& request) {
    const uint8_t function = request[1];
    const uint16_t reg = word(request, 2);
    const uint16_t field = word(request, 4);
    if (!addressed(request[0], function, reg)) {
        return {};
    }
    // A slave answers with its own address, the id request to 0xFF included.
    const auto address = static_cast<uint8_t>(options_.id);
    if (function == kRead) {
        return read(address, reg, field);
    }
    if (function == kWrite) {
        return write(request, address, reg, field);
    }
    return exception_answer(address, function, kIllegalFunction);
}

Bytes ModbusResponder::corrupt(Bytes frame) const {
    if (frame.size() >= 2) {
        frame[frame.size() - 1] ^= 0xFF;
        frame[frame.size() - 2] ^= 0xFF;
    }
    return frame;
}

Bytes ModbusResponder::readdress(Bytes frame, uint8_t id) const {
    if (frame.size() < 3) {
        return frame;
    }
    frame.resize(frame.size() - 2);
    frame[0] = id;
    return with_crc(frame);
}

bool ModbusResponder::addressed(uint8_t address, uint8_t function, uint16_t reg) const {
    const bool id_request = address == kIdRequestAddress && function == kRead && reg == kId;
    return address == options_.id || id_request;
}

Bytes ModbusResponder::read(uint8_t address, uint16_t reg, uint16_t count) {
    if (reg == kEmergency) {
        return emergency(address, count);
    }
    if (reg == kMaximumCurrent) {
        // The value travels in the count field; the answer carries it back.
        model_.set_maximum_current(count);
        return value_answer(address, count);
    }
    uint16_t value = 0;
    if (!register_value(reg, value)) {
        return exception_answer(address, kRead, kIllegalAddress);
    }
    if (count != 1) {
        return exception_answer(address, kRead, kIllegalValue);
    }
    return value_answer(address, value);
}

Bytes ModbusResponder::write(const Bytes& request, uint8_t address, uint16_t reg, uint16_t value) {
    switch (reg) {
        case kInitialise:
            if (value != kInitialiseCommand) {
                return exception_answer(address, kWrite, kIllegalValue);
            }
            model_.initialise();
            break;
        case kForce:
            model_.set_force(value);
            break;
        case kTarget:
            model_.set_target(value);
            break;
        case kSpeed:
            model_.set_speed(value);
            break;
        default:
            return exception_answer(address, kWrite, kIllegalAddress);
    }
    return request;
}

Bytes ModbusResponder::emergency(uint8_t address, uint16_t command) {
    if (command == kEmergencyOpen) {
        model_.set_target(0);
    } else if (command == kEmergencyClose) {
        model_.set_target(options_.position_max);
    } else {
        return exception_answer(address, kRead, kIllegalValue);
    }
    return value_answer(address, command);
}

bool ModbusResponder::register_value(uint16_t reg, uint16_t& value) const {
    switch (reg) {
        case kId:
            value = static_cast<uint16_t>(options_.id);
            return true;
        case kModel:
            value = options_.model_code;
            return true;
        case kVersion:
            value = options_.modbus_version;
            return true;
        case kInitState:
            value = model_.initialised() ? 1 : 0;
            return true;
        case kMotionState:
            value = static_cast<uint16_t>(modbus_motion_code(model_.motion()));
            return true;
        case kPosition:
            value = static_cast<uint16_t>(model_.position());
            return true;
        case kForce:
            value = static_cast<uint16_t>(model_.force());
            return true;
        case kTarget:
            value = static_cast<uint16_t>(model_.target());
            return true;
        case kSpeed:
            value = static_cast<uint16_t>(model_.speed());
            return true;
        default:
            return false;
    }
}

}  // namespace gripper_sim
