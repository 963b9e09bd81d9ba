#include "tools/gripper_doctor/modbus_frames.h"

#include <map>

#include "gripper/gripper_protocol/gripper_modbus_protocol/gripper_modbus_protocol.h"
#include "tools/gripper_doctor/hex_text.h"

namespace gripper_doctor {
namespace {

const uint8_t READ = 0x03;
const uint8_t WRITE = 0x06;
const uint8_t EXCEPTION_BIT = 0x80;
const uint8_t ANY_SLAVE = 0xFF;
const size_t READ_ANSWER_LENGTH = 7;
const size_t EXCEPTION_LENGTH = 5;

const std::map<uint16_t, const char*>& register_names() {
    static const std::map<uint16_t, const char*> names = {
        {0x0100, "initialise"},           {0x0101, "force"},
        {0x0103, "target position"},      {0x0104, "speed"},
        {0x0200, "initialisation state"}, {0x0201, "motion state"},
        {0x0202, "current position"},     {0x0302, "device id"},
        {0x0306, "maximum current"},      {0x0500, "emergency"},
        {0x0A00, "model code"},           {0x0A02, "firmware version"},
    };
    return names;
}

std::string exception_text(uint8_t code) {
    switch (code) {
        case 1:
            return "the function is not supported";
        case 2:
            return "the register does not exist";
        case 3:
            return "the value is not allowed";
        default:
            return "the device failed";
    }
}

std::string motion_text(uint16_t value) {
    static const char* const states[] = {"moving", "arrived", "object detected", "dropped"};
    return value < 4 ? states[value] : "unknown motion state " + std::to_string(value);
}

std::string slave_text(uint8_t slave) {
    return ANY_SLAVE == slave ? "slave 255 (any slave answers)" : "slave " + std::to_string(slave);
}

}  // namespace

std::string ModbusFrames::request(const Bytes& frame) {
    if (REQUEST_LENGTH != frame.size()) {
        return "Modbus frame of " + std::to_string(frame.size()) + " bytes";
    }
    const uint16_t reg = word(frame, 2);
    const std::string name = hex_word(reg) + " (" + register_name(reg) + ")";
    if (WRITE == frame[1]) {
        return "Modbus write of register " + name + " = " + std::to_string(word(frame, 4)) +
               " at " + slave_text(frame[0]);
    }
    const uint16_t field = word(frame, 4);
    return "Modbus read of register " + name +
           (1 == field ? "" : " with field " + std::to_string(field)) + " at " +
           slave_text(frame[0]);
}

Verdict ModbusFrames::answer(const Bytes& request, const Bytes& answer) {
    if (REQUEST_LENGTH != request.size()) {
        return Verdict();
    }
    if (EXCEPTION_LENGTH == answer.size() && (answer[1] & EXCEPTION_BIT) && crc_ok(answer)) {
        return exception(answer);
    }
    return WRITE == request[1] ? echo(request, answer) : read_answer(request, answer);
}

Verdict ModbusFrames::exception(const Bytes& answer) {
    Verdict verdict;
    verdict.kind = Verdict::Kind::exception;
    verdict.sender = answer[0];
    verdict.text = "Modbus exception " + std::to_string(answer[2]) + " from slave " +
                   std::to_string(answer[0]) + ": " + exception_text(answer[2]);
    return verdict;
}

Verdict ModbusFrames::echo(const Bytes& request, const Bytes& answer) {
    Verdict verdict;
    verdict.addressed = request[0];
    verdict.sender = answer.empty() ? -1 : answer[0];
    if (answer == request) {
        verdict.kind = Verdict::Kind::good;
        verdict.text = "echo: the write was taken";
    } else if (REQUEST_LENGTH == answer.size() && answer[1] == request[1] && crc_ok(answer) &&
               answer[0] != request[0]) {
        verdict.kind = Verdict::Kind::foreign;
        verdict.text = "echo from slave " + std::to_string(answer[0]) + ", but the write was for " +
                       "slave " + std::to_string(request[0]);
    } else {
        verdict.text = "not the echo of the write";
    }
    return verdict;
}

Verdict ModbusFrames::read_answer(const Bytes& request, const Bytes& answer) {
    Verdict verdict;
    verdict.addressed = ANY_SLAVE == request[0] ? -1 : request[0];
    if (READ_ANSWER_LENGTH != answer.size()) {
        verdict.text = std::to_string(answer.size()) + " bytes: not a Modbus answer to a read";
        return verdict;
    }
    verdict.sender = answer[0];
    const bool shape = READ == answer[1] && 2 == answer[2];
    const bool ours = verdict.addressed < 0 || verdict.sender == verdict.addressed;
    if (!shape || (!ours && !crc_ok(answer))) {
        verdict.text = "not a Modbus answer to this read (slave, function or length do not fit)";
    } else if (!crc_ok(answer)) {
        verdict.kind = Verdict::Kind::checksum;
        const uint16_t crc = modbus_crc_16(Bytes(answer.begin(), answer.begin() + 5));
        verdict.text = "CRC " + hex_bytes(Bytes(answer.begin() + 5, answer.end())) +
                       " instead of " + hex_bytes(Bytes{uint8_t(crc & 0xFF), uint8_t(crc >> 8)});
    } else if (!ours) {
        verdict.kind = Verdict::Kind::foreign;
        verdict.text = "answer from slave " + std::to_string(verdict.sender) +
                       ", but the read was for slave " + std::to_string(verdict.addressed);
    } else {
        verdict.kind = Verdict::Kind::good;
        verdict.text = "slave " + std::to_string(verdict.sender) + ": " +
                       meaning(word(request, 2), answer) + ", CRC ok";
    }
    return verdict;
}

std::string ModbusFrames::meaning(uint16_t reg, const Bytes& answer) {
    const uint16_t value = word(answer, 3);
    switch (reg) {
        case 0x0302:
            return "device id " + std::to_string(value & 0xFF);
        case 0x0A02:
            return "firmware " + std::to_string(answer[3]) + "." + std::to_string(answer[4]);
        case 0x0A00: {
            const auto found = GripperProtocol::map_model_series.find(Bytes{answer[3], answer[4]});
            const int series = GripperProtocol::map_model_series.end() == found ? 0 : found->second;
            return "model code " + hex_word(value) + ", model series " + std::to_string(series);
        }
        case 0x0200:
            return 1 == value ? "initialised" : "not initialised";
        case 0x0201:
            return motion_text(value);
        default:
            return register_name(reg) + " " + std::to_string(value);
    }
}

std::string ModbusFrames::register_name(uint16_t reg) {
    const auto found = register_names().find(reg);
    return register_names().end() == found ? "unknown register" : found->second;
}

bool ModbusFrames::crc_ok(const Bytes& frame) {
    const uint16_t crc = modbus_crc_16(Bytes(frame.begin(), frame.end() - 2));
    return frame[frame.size() - 2] == (crc & 0xFF) && frame[frame.size() - 1] == (crc >> 8);
}

uint16_t ModbusFrames::word(const Bytes& frame, size_t offset) {
    return static_cast<uint16_t>(frame[offset] << 8 | frame[offset + 1]);
}

}  // namespace gripper_doctor
