#include "gripper/gripper_protocol/gripper_modbus_protocol/gripper_modbus_protocol.h"

#include <cstddef>
#include <string>

#include "gripper/gripper_common/miscellaneous_utility/miscellaneous_utility.h"
#include "gripper/gripper_common/simple_logger/simple_logger.h"

const int GripperModbusProtocol::WRITE_LENGTH;
const int GripperModbusProtocol::READ_LENGTH;
const int GripperModbusProtocol::GET_OFFSET_LENGTH;
const int GripperModbusProtocol::EXCEPTION_LENGTH;

namespace {

const uint8_t FUNCTION_READ = 0x03;
const uint8_t FUNCTION_WRITE = 0x06;
const uint8_t BROADCAST_ID = 0xFF;
const size_t OFFSET_ID = 0;
const size_t OFFSET_FUNCTION = 1;
const size_t OFFSET_ADDRESS = 2;
const size_t OFFSET_COUNT_OR_VALUE = 4;
const size_t OFFSET_CRC = 6;
const size_t OFFSET_DATA = 3;

const uint16_t REGISTER_ID = 0x0302;
const uint16_t REGISTER_MODEL = 0x0A00;
const uint16_t REGISTER_VERSION = 0x0A02;
const uint16_t REGISTER_EMERGENCY = 0x0500;
const uint16_t REGISTER_INITIALIZE_STATE = 0x0200;
const uint16_t REGISTER_INITIALIZE = 0x0100;
const uint16_t REGISTER_MOVE_FEEDBACK = 0x0201;
const uint16_t REGISTER_CURRENT_POSITION = 0x0202;
const uint16_t REGISTER_TARGET_POSITION = 0x0103;
const uint16_t REGISTER_FORCE = 0x0101;
const uint16_t REGISTER_SPEED = 0x0104;
const uint16_t REGISTER_MAXIMUM_CURRENT = 0x0306;

const int ONE_REGISTER = 0x0001;
const int EMERGENCY_OPEN = 0x0001;
const int EMERGENCY_CLOSE = 0x0002;
const int INITIALIZE_COMMAND = 0x00A5;

const uint16_t CRC_POLYNOMIAL = 0xA001;

void write_big_endian_16(std::vector<uint8_t>& byte_stream, size_t offset, int value) {
    const std::vector<uint8_t> bytes =
        GripperProtocol::int32_t_2_byte(value, 2, GripperProtocol::ET_BIG_ENDIAN);
    byte_stream[offset] = bytes[0];
    byte_stream[offset + 1] = bytes[1];
}

void log_write_read(const std::vector<uint8_t>& write_byte_stream,
                    const std::vector<uint8_t>& read_byte_stream) {
    GRIPPER_LOG("W", "MiscellaneousUtility::convert_hex_binary(write_byte_stream) = %s",
                MiscellaneousUtility::convert_hex_binary(write_byte_stream).c_str());
    GRIPPER_LOG("W", "MiscellaneousUtility::convert_hex_binary(read_byte_stream) = %s",
                MiscellaneousUtility::convert_hex_binary(read_byte_stream).c_str());
}

void log_byte_stream(const std::vector<uint8_t>& byte_stream) {
    GRIPPER_LOG("W", "MiscellaneousUtility::convert_hex_binary(byte_stream) = %s",
                MiscellaneousUtility::convert_hex_binary(byte_stream).c_str());
}

// A read answer must be one register frame with a valid CRC over everything before the CRC.
bool is_valid_read_answer(bool set, const std::vector<uint8_t>& read_byte_stream) {
    const size_t READ_LENGTH = GripperModbusProtocol::READ_LENGTH;
    if (READ_LENGTH != read_byte_stream.size()) {
        GRIPPER_LOG("W", "READ_LENGTH != read_byte_stream.size()");
        GRIPPER_LOG("W", "READ_LENGTH = %d", static_cast<int>(READ_LENGTH));
        GRIPPER_LOG("W", "read_byte_stream.size() = %d", static_cast<int>(read_byte_stream.size()));
        return false;
    }
    const std::vector<uint8_t> sub_byte_stream(read_byte_stream.begin(),
                                               read_byte_stream.begin() + (READ_LENGTH - 2));
    if (!modbus_crc_16_check(sub_byte_stream, read_byte_stream[READ_LENGTH - 2],
                             read_byte_stream[READ_LENGTH - 1])) {
        GRIPPER_LOG("W",
                    "!modbus_crc_16_check(sub_byte_stream, read_byte_stream[READ_LENGTH - 2], "
                    "read_byte_stream[READ_LENGTH - 1])");
        GRIPPER_LOG("W", "set = %d", set);
        return false;
    }
    return true;
}

// Writes are answered by their echo; reads by a one-register frame with a valid CRC.
bool is_answer_to(bool set, const std::vector<uint8_t>& write_byte_stream,
                  const std::vector<uint8_t>& read_byte_stream) {
    if (write_byte_stream.empty()) {
        GRIPPER_LOG("W", "0 == write_byte_stream.size()");
        return false;
    }
    if (read_byte_stream.empty()) {
        GRIPPER_LOG("W", "0 == read_byte_stream.size()");
        return false;
    }
    if (set) {
        return write_byte_stream == read_byte_stream;
    }
    return is_valid_read_answer(set, read_byte_stream);
}

bool has_read_length(const std::vector<uint8_t>& byte_stream) {
    const size_t READ_LENGTH = GripperModbusProtocol::READ_LENGTH;
    if (byte_stream.empty()) {
        GRIPPER_LOG("W", "0 == byte_stream.size()");
        return false;
    }
    if (READ_LENGTH != byte_stream.size()) {
        GRIPPER_LOG("W", "READ_LENGTH = %d", static_cast<int>(READ_LENGTH));
        GRIPPER_LOG("W", "byte_stream.size() = %d", static_cast<int>(byte_stream.size()));
        GRIPPER_LOG("W", "READ_LENGTH != byte_stream.size()");
        return false;
    }
    return true;
}

// The broadcast id accepts an answer from any slave.
bool is_from_slave(const AbstractPackageData& abstract_package_data,
                   const std::vector<uint8_t>& byte_stream) {
    if (abstract_package_data.id_ < BROADCAST_ID &&
        abstract_package_data.id_ != byte_stream[OFFSET_ID]) {
        GRIPPER_LOG("W", "byte_stream[OFFSET_ID] = %d", byte_stream[OFFSET_ID]);
        GRIPPER_LOG("W", "abstract_package_data.id_ = %d", abstract_package_data.id_);
        GRIPPER_LOG("W", "abstract_package_data.id_ != byte_stream[OFFSET_ID]");
        log_byte_stream(byte_stream);
        return false;
    }
    return true;
}

// The data bytes that the byte-count byte announces; false when they do not fit before the CRC.
bool extract_data(const std::vector<uint8_t>& byte_stream, std::vector<uint8_t>& data) {
    const size_t GET_OFFSET_LENGTH = GripperModbusProtocol::GET_OFFSET_LENGTH;
    if ((GET_OFFSET_LENGTH + 1) >= byte_stream.size()) {
        GRIPPER_LOG("W", "(GET_OFFSET_LENGTH + 1) >= byte_stream.size()");
        return false;
    }
    const size_t data_length = byte_stream[GET_OFFSET_LENGTH];
    if (0 == data_length) {
        log_byte_stream(byte_stream);
        GRIPPER_LOG("W", "data_length = %d", static_cast<int>(data_length));
        return false;
    }
    if ((GET_OFFSET_LENGTH + 1 + data_length) >= byte_stream.size()) {
        GRIPPER_LOG("W", "(GET_OFFSET_LENGTH + 1 + data_length) >= byte_stream.size()");
        return false;
    }
    data.assign(byte_stream.begin() + OFFSET_DATA, byte_stream.begin() + OFFSET_DATA + data_length);
    return true;
}

bool decode_move_feedback(int32_t value, const std::vector<uint8_t>& byte_stream,
                          AbstractPackageData& abstract_package_data) {
    static const GripperProtocol::Feedback states[] = {
        GripperProtocol::F_MOVING, GripperProtocol::F_ARRIVED, GripperProtocol::F_DETECTED,
        GripperProtocol::F_DROPPED};
    if (static_cast<uint32_t>(value) > 3) {
        abstract_package_data.feedback_ = GripperProtocol::F_UNDEFINE;
        GRIPPER_LOG("W", "value = %d", value);
        log_byte_stream(byte_stream);
        GRIPPER_LOG("W", "abstract_package_data.feedback_ = GripperProtocol::Feedback::F_UNDEFINE");
        return false;
    }
    abstract_package_data.feedback_ = states[value];
    return true;
}

int32_t model_series_of(const std::vector<uint8_t>& model_code) {
    const auto iter = GripperProtocol::map_model_series.find(model_code);
    return (GripperProtocol::map_model_series.end() == iter) ? 0 : iter->second;
}

// Stores the answer's value in the field that the requested package type names.
bool decode_by_type(const std::vector<uint8_t>& data, const std::vector<uint8_t>& byte_stream,
                    AbstractPackageData& abstract_package_data) {
    const int32_t value = GripperProtocol::byte_2_int32_t(data, GripperProtocol::ET_BIG_ENDIAN);
    switch (abstract_package_data.package_type_) {
        case GripperProtocol::PT_INITIALIZE:
            abstract_package_data.initialize_value_ = value;
            return true;
        case GripperProtocol::PT_MOVE_FEEDBACK:
            return decode_move_feedback(value, byte_stream, abstract_package_data);
        case GripperProtocol::PT_POSITION:
            abstract_package_data.position_value_ = value;
            return true;
        case GripperProtocol::PT_SPEED:
            abstract_package_data.speed_value_ = value;
            return true;
        case GripperProtocol::PT_FORCE:
            abstract_package_data.force_value_ = value;
            return true;
        case GripperProtocol::PT_MODEL:
            abstract_package_data.model_series_ = model_series_of(data);
            return true;
        case GripperProtocol::PT_ID:
            abstract_package_data.id_ = static_cast<uint8_t>(value);
            return true;
        case GripperProtocol::PT_VERSION:
            abstract_package_data.version_ = data;
            return true;
        default:
            return false;
    }
}

}  // namespace

uint16_t modbus_crc_16(const std::vector<uint8_t>& byte_stream) {
    uint16_t crc = 0xFFFF;
    for (uint8_t byte : byte_stream) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc & 0x0001) ? static_cast<uint16_t>((crc >> 1) ^ CRC_POLYNOMIAL)
                                 : static_cast<uint16_t>(crc >> 1);
        }
    }
    return crc;
}

bool modbus_crc_16_check(std::vector<uint8_t> sub_byte_stream, uint8_t modbus_crc1,
                         uint8_t modbus_crc2) {
    if (sub_byte_stream.empty()) {
        GRIPPER_LOG("W", "0 == sub_byte_stream.size()");
        return false;
    }
    const uint16_t crc = modbus_crc_16(sub_byte_stream);
    const uint8_t tmp_modbus_crc1 = static_cast<uint8_t>(crc & 0xFF);
    const uint8_t tmp_modbus_crc2 = static_cast<uint8_t>(crc >> 8);
    if (tmp_modbus_crc1 == modbus_crc1 && tmp_modbus_crc2 == modbus_crc2) {
        return true;
    }
    GRIPPER_LOG("W", "tmp_modbus_crc1 = %d", tmp_modbus_crc1);
    GRIPPER_LOG("W", "modbus_crc1 = %d", modbus_crc1);
    GRIPPER_LOG("W", "tmp_modbus_crc1 != modbus_crc1");
    GRIPPER_LOG("W", "tmp_modbus_crc2 = %d", tmp_modbus_crc2);
    GRIPPER_LOG("W", "modbus_crc2 = %d", modbus_crc2);
    GRIPPER_LOG("W", "tmp_modbus_crc2 != modbus_crc2");
    GRIPPER_LOG("W", "MiscellaneousUtility::convert_hex_binary(sub_byte_stream) = %s",
                MiscellaneousUtility::convert_hex_binary(sub_byte_stream).c_str());
    return false;
}

GripperModbusProtocol::~GripperModbusProtocol() {}

std::vector<uint8_t> GripperModbusProtocol::build_protocol_empty_byte(bool set) {
    std::vector<uint8_t> byte_stream(WRITE_LENGTH, 0);
    byte_stream[OFFSET_FUNCTION] = set ? FUNCTION_WRITE : FUNCTION_READ;
    return byte_stream;
}

std::vector<uint8_t> GripperModbusProtocol::build_frame(uint8_t id, bool set, uint16_t address,
                                                        int value) {
    std::vector<uint8_t> byte_stream = build_protocol_empty_byte(set);
    if (static_cast<size_t>(WRITE_LENGTH) == byte_stream.size()) {
        byte_stream[OFFSET_ID] = id;
        write_big_endian_16(byte_stream, OFFSET_ADDRESS, address);
        write_big_endian_16(byte_stream, OFFSET_COUNT_OR_VALUE, value);
    }
    if (!package_protocol(byte_stream)) {
        GRIPPER_LOG("E", "!package_protocol(byte_stream)");
        byte_stream.clear();
    }
    return byte_stream;
}

std::vector<uint8_t> GripperModbusProtocol::build_id_protocol() {
    return build_frame(BROADCAST_ID, false, REGISTER_ID, ONE_REGISTER);
}

std::vector<uint8_t> GripperModbusProtocol::build_model_protocol(uint8_t id) {
    return build_frame(id, false, REGISTER_MODEL, ONE_REGISTER);
}

std::vector<uint8_t> GripperModbusProtocol::build_version_protocol(uint8_t id) {
    return build_frame(id, false, REGISTER_VERSION, ONE_REGISTER);
}

// The emergency commands travel as reads, with the command code in the count field.
std::vector<uint8_t> GripperModbusProtocol::build_emergency_open(uint8_t id) {
    return build_frame(id, false, REGISTER_EMERGENCY, EMERGENCY_OPEN);
}

std::vector<uint8_t> GripperModbusProtocol::build_emegency_close(uint8_t id) {
    return build_frame(id, false, REGISTER_EMERGENCY, EMERGENCY_CLOSE);
}

std::vector<uint8_t> GripperModbusProtocol::build_initialize_protocol(uint8_t id, bool set) {
    if (set) {
        return build_frame(id, true, REGISTER_INITIALIZE, INITIALIZE_COMMAND);
    }
    return build_frame(id, false, REGISTER_INITIALIZE_STATE, ONE_REGISTER);
}

std::vector<uint8_t> GripperModbusProtocol::build_move_feedback_protocol(uint8_t id) {
    return build_frame(id, false, REGISTER_MOVE_FEEDBACK, ONE_REGISTER);
}

std::vector<uint8_t> GripperModbusProtocol::build_turn_feedback_protocol(uint8_t) {
    return std::vector<uint8_t>();
}

std::vector<uint8_t> GripperModbusProtocol::build_slow_protocol(uint8_t, bool, SlowMove) {
    return std::vector<uint8_t>();
}

// The current position is read from another register than the target position is written to.
std::vector<uint8_t> GripperModbusProtocol::build_position_protocol(uint8_t id, bool set,
                                                                    int value) {
    if (set) {
        return build_frame(id, true, REGISTER_TARGET_POSITION, value);
    }
    return build_frame(id, false, REGISTER_CURRENT_POSITION, ONE_REGISTER);
}

std::vector<uint8_t> GripperModbusProtocol::build_force_protocol(uint8_t id, bool set, int value) {
    return build_frame(id, set, REGISTER_FORCE, set ? value : ONE_REGISTER);
}

std::vector<uint8_t> GripperModbusProtocol::build_closing_force_protocol(uint8_t, bool, int) {
    return std::vector<uint8_t>();
}

std::vector<uint8_t> GripperModbusProtocol::build_speed_protocol(uint8_t id, bool set, int value) {
    return build_frame(id, set, REGISTER_SPEED, set ? value : ONE_REGISTER);
}

std::vector<uint8_t> GripperModbusProtocol::build_angle_protocol(uint8_t, bool, int) {
    return std::vector<uint8_t>();
}

std::vector<uint8_t> GripperModbusProtocol::build_maximum_current_protocol(uint8_t id, int value) {
    return build_frame(id, false, REGISTER_MAXIMUM_CURRENT, value);
}

bool GripperModbusProtocol::package_protocol(std::vector<uint8_t>& byte_stream) {
    if (byte_stream.empty()) {
        GRIPPER_LOG("E", "0 == byte_stream.size()");
        return false;
    }
    if (static_cast<size_t>(WRITE_LENGTH) != byte_stream.size()) {
        GRIPPER_LOG("E", "WRITE_LENGTH: = %d", WRITE_LENGTH);
        GRIPPER_LOG("E", "byte_stream.size() = %d", static_cast<int>(byte_stream.size()));
        GRIPPER_LOG("E", "WRITE_LENGTH != byte_stream.size()");
        return false;
    }
    const std::vector<uint8_t> payload(byte_stream.begin(), byte_stream.begin() + OFFSET_CRC);
    const uint16_t crc = modbus_crc_16(payload);
    byte_stream[OFFSET_CRC] = static_cast<uint8_t>(crc & 0xFF);
    byte_stream[OFFSET_CRC + 1] = static_cast<uint8_t>(crc >> 8);
    return true;
}

int GripperModbusProtocol::set_package_length() {
    return WRITE_LENGTH;
}

int GripperModbusProtocol::get_package_length() {
    return READ_LENGTH;
}

int GripperModbusProtocol::exception_length() {
    return EXCEPTION_LENGTH;
}

bool GripperModbusProtocol::exception_parse(const std::vector<uint8_t>&) {
    return false;
}

bool GripperModbusProtocol::compare_package(bool set, const std::vector<uint8_t>& write_byte_stream,
                                            const std::vector<uint8_t>& read_byte_stream) {
    if (is_answer_to(set, write_byte_stream, read_byte_stream)) {
        return true;
    }
    log_write_read(write_byte_stream, read_byte_stream);
    return false;
}

// A failed decode hands back the initial record, so no half-decoded field reaches the driver.
AbstractPackageData GripperModbusProtocol::parse_get_normal_package(
    uint8_t id, PackageType type, const std::vector<uint8_t>& byte_stream) {
    AbstractPackageData abstract_package_data;
    if (!has_read_length(byte_stream)) {
        return abstract_package_data;
    }
    abstract_package_data.package_type_ = type;
    abstract_package_data.id_ = id;
    std::vector<uint8_t> data;
    if (!is_from_slave(abstract_package_data, byte_stream) || !extract_data(byte_stream, data) ||
        !decode_by_type(data, byte_stream, abstract_package_data)) {
        return AbstractPackageData();
    }
    return abstract_package_data;
}

bool GripperModbusProtocol::parse_exception_package(uint8_t, const std::vector<uint8_t>&) {
    return false;
}

int GripperModbusProtocol::get_protocol_type() {
    return 1;
}
