#include "tools/gripper_doctor/modbus_frames.h"

#include "gripper/gripper_protocol/gripper_modbus_protocol/gripper_modbus_protocol.h"
#include "tools/gripper_doctor/hex_text.h"

namespace gripper_doctor {
namespace {

typedef GripperModbusProtocol Modbus;

const uint8_t READ = 0x03;
const uint8_t WRITE = 0x06;
const uint8_t EXCEPTION_BIT = 0x80;
const uint8_t ANY_SLAVE = 0xFF;
const size_t REQUEST_LENGTH = Modbus::WRITE_LENGTH;

// A request the protocol builds, with the package type its answer decodes as (PT_UNDEFINE: the
// value is shown as it is).
struct Request {
    const char* name;
    GripperProtocol::PackageType type;
    Bytes frame;
};

// Every request the protocol builds for a slave id, the writes with value.
std::vector<Request> requests(uint8_t id, int value) {
    Modbus p;
    const GripperProtocol::PackageType shown = GripperProtocol::PT_UNDEFINE;
    return {
        {"device id", GripperProtocol::PT_ID, p.build_id_protocol()},
        {"model code", GripperProtocol::PT_MODEL, p.build_model_protocol(id)},
        {"firmware version", GripperProtocol::PT_VERSION, p.build_version_protocol(id)},
        {"emergency", shown, p.build_emergency_open(id)},
        {"emergency", shown, p.build_emegency_close(id)},
        {"initialise", shown, p.build_initialize_protocol(id, true)},
        {"initialisation state", GripperProtocol::PT_INITIALIZE,
         p.build_initialize_protocol(id, false)},
        {"motion state", GripperProtocol::PT_MOVE_FEEDBACK, p.build_move_feedback_protocol(id)},
        {"target position", shown, p.build_position_protocol(id, true, value)},
        {"current position", shown, p.build_position_protocol(id, false, 0)},
        {"force", shown, p.build_force_protocol(id, true, value)},
        {"force", shown, p.build_force_protocol(id, false, 0)},
        {"speed", shown, p.build_speed_protocol(id, true, value)},
        {"speed", shown, p.build_speed_protocol(id, false, 0)},
        {"maximum current", shown, p.build_maximum_current_protocol(id, value)},
    };
}

// The request the protocol builds byte for byte the same as frame.
Request request_of(const Bytes& frame) {
    for (const Request& request : requests(frame[0], frame[4] << 8 | frame[5])) {
        if (request.frame == frame) {
            return request;
        }
    }
    return {"unknown register", GripperProtocol::PT_UNDEFINE, frame};
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

std::string motion_text(const AbstractPackageData& data, uint16_t value) {
    switch (data.feedback_) {
        case GripperProtocol::F_MOVING:
            return "moving";
        case GripperProtocol::F_ARRIVED:
            return "arrived";
        case GripperProtocol::F_DETECTED:
            return "object detected";
        case GripperProtocol::F_DROPPED:
            return "dropped";
        default:
            return "unknown motion state " + std::to_string(value);
    }
}

std::string slave_text(uint8_t slave) {
    return ANY_SLAVE == slave ? "slave 255 (any slave answers)" : "slave " + std::to_string(slave);
}

}  // namespace

std::string ModbusFrames::request(const Bytes& frame) {
    if (REQUEST_LENGTH != frame.size()) {
        return "Modbus frame of " + std::to_string(frame.size()) + " bytes";
    }
    const std::string name = hex_word(word(frame, 2)) + " (" + request_of(frame).name + ")";
    const uint16_t field = word(frame, 4);
    if (WRITE == frame[1]) {
        return "Modbus write of register " + name + " = " + std::to_string(field) + " at " +
               slave_text(frame[0]);
    }
    return "Modbus read of register " + name +
           (1 == field ? "" : " with field " + std::to_string(field)) + " at " +
           slave_text(frame[0]);
}

Verdict ModbusFrames::answer(const Bytes& request, const Bytes& answer) {
    if (REQUEST_LENGTH != request.size()) {
        return Verdict();
    }
    if (Modbus::EXCEPTION_LENGTH == answer.size() && (answer[1] & EXCEPTION_BIT) &&
        crc_ok(answer)) {
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
    if (Modbus().compare_package(true, request, answer)) {
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
    if (static_cast<size_t>(Modbus::READ_LENGTH) != answer.size()) {
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
        verdict.text = "slave " + std::to_string(verdict.sender) + ": " + meaning(request, answer) +
                       ", CRC ok";
    }
    return verdict;
}

// The answer as the protocol decodes it for the request's package type.
std::string ModbusFrames::meaning(const Bytes& request, const Bytes& answer) {
    const Request asked = request_of(request);
    const AbstractPackageData data =
        Modbus().parse_get_normal_package(request[0], asked.type, answer);
    const uint16_t value = word(answer, 3);
    switch (asked.type) {
        case GripperProtocol::PT_ID:
            return "device id " + std::to_string(data.id_);
        case GripperProtocol::PT_VERSION:
            return "firmware " + dotted_bytes(data.version_);
        case GripperProtocol::PT_MODEL:
            return "model code " + hex_word(value) + ", model series " +
                   std::to_string(data.model_series_);
        case GripperProtocol::PT_INITIALIZE:
            return 1 == data.initialize_value_ ? "initialised" : "not initialised";
        case GripperProtocol::PT_MOVE_FEEDBACK:
            return motion_text(data, value);
        default:
            return std::string(asked.name) + " " + std::to_string(value);
    }
}

bool ModbusFrames::crc_ok(const Bytes& frame) {
    const uint16_t crc = modbus_crc_16(Bytes(frame.begin(), frame.end() - 2));
    return frame[frame.size() - 2] == (crc & 0xFF) && frame[frame.size() - 1] == (crc >> 8);
}

uint16_t ModbusFrames::word(const Bytes& frame, size_t offset) {
    return static_cast<uint16_t>(frame[offset] << 8 | frame[offset + 1]);
}

}  // namespace gripper_doctor
