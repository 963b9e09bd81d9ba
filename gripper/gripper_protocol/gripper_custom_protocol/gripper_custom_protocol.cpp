#include "gripper/gripper_protocol/gripper_custom_protocol/gripper_custom_protocol.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>

#include "gripper/gripper_common/miscellaneous_utility/miscellaneous_utility.h"
#include "gripper/gripper_common/simple_logger/simple_logger.h"

const int GripperCustomProtocol::FRAME_LENGTH;
const int GripperCustomProtocol::OFFSET_ID;
const int GripperCustomProtocol::OFFSET_REGISTER_PRIMARY;
const int GripperCustomProtocol::OFFSET_REGISTER_SECONDARY;
const int GripperCustomProtocol::OFFSET_READ_WRITE;
const int GripperCustomProtocol::OFFSET_VALUE;
const uint8_t GripperCustomProtocol::PRIMARY_REGISTER_FORCE;
const uint8_t GripperCustomProtocol::PRIMARY_REGISTER_POSITION;
const uint8_t GripperCustomProtocol::PRIMARY_REGISTER_ANGLE;
const uint8_t GripperCustomProtocol::PRIMARY_REGISTER_INITIALIZE;
const uint8_t GripperCustomProtocol::PRIMARY_REGISTER_MOVE_FEEDBACK;
const uint8_t GripperCustomProtocol::PRIMARY_REGISTER_TURN_FEEDBACK;
const uint8_t GripperCustomProtocol::PRIMARY_REGISTER_SLOW;
const uint8_t GripperCustomProtocol::PRIMARY_REGISTER_ID;
const uint8_t GripperCustomProtocol::PRIMARY_REGISTER_VERSION;
const uint8_t GripperCustomProtocol::PRIMARY_REGISTER_STOP_CURRENT;

namespace {

typedef GripperCustomProtocol Custom;

const size_t FRAME_SIZE = Custom::FRAME_LENGTH;
const int VALUE_LENGTH = 4;
const size_t OFFSET_TRAILER = 13;
const uint8_t HEADER[] = {0xFF, 0xFE, 0xFD, 0xFC};
const uint8_t TRAILER = 0xFB;
const uint8_t ID_REQUEST_ID = 0x00;
const uint8_t BROADCAST_ID = 0xFF;

const uint8_t SECONDARY_ID = 0x01;
const uint8_t SECONDARY_VERSION = 0x01;
const uint8_t SECONDARY_INITIALIZE = 0x02;
const uint8_t SECONDARY_MOVE_FEEDBACK = 0x01;
const uint8_t SECONDARY_TURN_FEEDBACK = 0x02;
const uint8_t SECONDARY_SLOW_SLOW = 0x02;
const uint8_t SECONDARY_SLOW_NORMAL = 0x01;
const uint8_t SECONDARY_SLOW_OTHER = 0x00;
const uint8_t SECONDARY_POSITION = 0x02;
const uint8_t SECONDARY_FORCE = 0x04;
const uint8_t SECONDARY_CLOSING_FORCE = 0x02;
const uint8_t SECONDARY_ANGLE = 0x02;
const uint8_t SECONDARY_STOP_CURRENT = 0x02;

// Every gripper that speaks this protocol belongs to one model series.
const int32_t CUSTOM_MODEL_SERIES = 3;

std::string hex_of(const std::vector<uint8_t>& byte_stream) {
    return MiscellaneousUtility::convert_hex_binary(byte_stream);
}

uint8_t slow_secondary_register(GripperProtocol::SlowMove slow) {
    switch (slow) {
        case GripperProtocol::SM_SLOW:
            return SECONDARY_SLOW_SLOW;
        case GripperProtocol::SM_NORMAL:
            return SECONDARY_SLOW_NORMAL;
        default:
            return SECONDARY_SLOW_OTHER;
    }
}

// False, logged, unless the value conversion gave exactly the four value bytes.
bool is_value_bytes(const std::vector<uint8_t>& byte_data) {
    if (byte_data.empty()) {
        GRIPPER_LOG("E", "0 == byte_data.size()");
        return false;
    }
    if (static_cast<size_t>(VALUE_LENGTH) != byte_data.size()) {
        GRIPPER_LOG("E", "4 != byte_data.size()");
        return false;
    }
    return true;
}

bool has_frame_length(const std::vector<uint8_t>& byte_stream) {
    if (FRAME_SIZE != byte_stream.size()) {
        GRIPPER_LOG("W", "FRAME_LENGTH != byte_stream.size()");
        GRIPPER_LOG("W", "MiscellaneousUtility::convert_hex_binary(byte_stream) = %s",
                    hex_of(byte_stream).c_str());
        return false;
    }
    return true;
}

// The broadcast id accepts an answer from any gripper.
bool is_from_gripper(const AbstractPackageData& abstract_package_data,
                     const std::vector<uint8_t>& byte_stream) {
    const uint8_t sender = byte_stream[Custom::OFFSET_ID];
    if (abstract_package_data.id_ < BROADCAST_ID && abstract_package_data.id_ != sender) {
        GRIPPER_LOG("W", "abstract_package_data.id_ != byte_stream[OFFSET_ID]");
        GRIPPER_LOG("W", "byte_stream[OFFSET_ID] = %d", sender);
        GRIPPER_LOG("W", "abstract_package_data.id_ = %d", abstract_package_data.id_);
        return false;
    }
    return true;
}

std::vector<uint8_t> value_bytes_of(const std::vector<uint8_t>& byte_stream) {
    const auto begin = byte_stream.begin() + Custom::OFFSET_VALUE;
    return std::vector<uint8_t>(begin, begin + VALUE_LENGTH);
}

uint8_t primary_register_of(const std::vector<uint8_t>& byte_stream) {
    return byte_stream[Custom::OFFSET_REGISTER_PRIMARY];
}

bool decode_initialize(const std::vector<uint8_t>& byte_stream, int32_t value,
                       AbstractPackageData& abstract_package_data) {
    if (Custom::PRIMARY_REGISTER_INITIALIZE != primary_register_of(byte_stream)) {
        GRIPPER_LOG("W", "byte_stream[OFFSET_REGISTER_PRIMARY] = %x",
                    primary_register_of(byte_stream));
        GRIPPER_LOG("W", "PRIMARY_REGISTER_INITIALIZE != byteStream[OFFSET_REGISTER_PRIMARY]");
        return false;
    }
    abstract_package_data.initialize_value_ = value;
    return true;
}

// Motion states 0, 2 and 3; any other value, 1 included, is refused.
bool decode_move_feedback(const std::vector<uint8_t>& byte_stream, int32_t value,
                          AbstractPackageData& abstract_package_data) {
    if (Custom::PRIMARY_REGISTER_MOVE_FEEDBACK != primary_register_of(byte_stream)) {
        GRIPPER_LOG("W", "byte_stream[OFFSET_REGISTER_PRIMARY] = %x",
                    primary_register_of(byte_stream));
        GRIPPER_LOG("W", "PRIMARY_REGISTER_MOVE_FEEDBACK != byteStream[OFFSET_REGISTER_PRIMARY]");
        GRIPPER_LOG("W", "byte_stream = %s", hex_of(byte_stream).c_str());
        return false;
    }
    switch (value) {
        case 0:
            abstract_package_data.feedback_ = GripperProtocol::F_MOVING;
            return true;
        case 2:
            abstract_package_data.feedback_ = GripperProtocol::F_ARRIVED;
            return true;
        case 3:
            abstract_package_data.feedback_ = GripperProtocol::F_DETECTED;
            return true;
        default:
            GRIPPER_LOG("W", "value = %d", value);
            GRIPPER_LOG("W",
                        "abstract_package_data.package_type_ = "
                        "GripperProtocol::PackageType::PT_UNDEFINE");
            GRIPPER_LOG("W", "byte_stream = %s", hex_of(byte_stream).c_str());
            return false;
    }
}

// Rotation states 0, 2 and 3; an unknown value leaves the feedback undefined but is accepted.
bool decode_turn_feedback(const std::vector<uint8_t>& byte_stream, int32_t value,
                          AbstractPackageData& abstract_package_data) {
    if (Custom::PRIMARY_REGISTER_TURN_FEEDBACK != primary_register_of(byte_stream)) {
        GRIPPER_LOG("W", "byte_stream[OFFSET_REGISTER_PRIMARY] = %d",
                    primary_register_of(byte_stream));
        GRIPPER_LOG("W", "PRIMARY_REGISTER_TURN_FEEDBACK != byte_stream[OFFSET_REGISTER_PRIMARY]");
        return false;
    }
    switch (value) {
        case 0:
            abstract_package_data.feedback_ = GripperProtocol::F_TURNING;
            break;
        case 2:
            abstract_package_data.feedback_ = GripperProtocol::F_ARRIVED;
            break;
        case 3:
            abstract_package_data.feedback_ = GripperProtocol::F_DETECTED;
            break;
        default:
            abstract_package_data.feedback_ = GripperProtocol::F_UNDEFINE;
            GRIPPER_LOG("W", "value = %d", value);
            GRIPPER_LOG("W", "abstractPackageData.feedback = Feedback.UNDEFINE");
            GRIPPER_LOG("W", "MiscellaneousUtility::convert_hex_binary(byte_stream) = %s",
                        hex_of(byte_stream).c_str());
            break;
    }
    return true;
}

bool decode_position(const std::vector<uint8_t>& byte_stream, int32_t value,
                     AbstractPackageData& abstract_package_data) {
    if (Custom::PRIMARY_REGISTER_POSITION != primary_register_of(byte_stream)) {
        GRIPPER_LOG("W", "PRIMARY_REGISTER_POSITION != byteStream[OFFSET_REGISTER_PRIMARY]");
        return false;
    }
    abstract_package_data.position_value_ = value;
    return true;
}

bool decode_force(const std::vector<uint8_t>& byte_stream, int32_t value,
                  AbstractPackageData& abstract_package_data) {
    if (Custom::PRIMARY_REGISTER_FORCE != primary_register_of(byte_stream)) {
        GRIPPER_LOG("W", "PRIMARY_REGISTER_FORCE != byteStream[OFFSET_REGISTER_PRIMARY]");
        return false;
    }
    abstract_package_data.force_value_ = value;
    return true;
}

// Stores the answer's value in the field that the requested package type names.
bool decode_by_type(const std::vector<uint8_t>& byte_stream,
                    AbstractPackageData& abstract_package_data) {
    const std::vector<uint8_t> value_bytes = value_bytes_of(byte_stream);
    const int32_t value =
        GripperProtocol::byte_2_int32_t(value_bytes, GripperProtocol::ET_LITTLE_ENDIAN);
    switch (abstract_package_data.package_type_) {
        case GripperProtocol::PT_STOP_CURRENT_FEEDBACK:
            abstract_package_data.feedback_ = GripperProtocol::F_DROPPED;
            return true;
        case GripperProtocol::PT_INITIALIZE:
            return decode_initialize(byte_stream, value, abstract_package_data);
        case GripperProtocol::PT_MOVE_FEEDBACK:
            return decode_move_feedback(byte_stream, value, abstract_package_data);
        case GripperProtocol::PT_TURN_FEEDBACK:
            return decode_turn_feedback(byte_stream, value, abstract_package_data);
        case GripperProtocol::PT_POSITION:
            return decode_position(byte_stream, value, abstract_package_data);
        case GripperProtocol::PT_SPEED:
            abstract_package_data.speed_value_ = value;
            return true;
        case GripperProtocol::PT_SPARE:
            abstract_package_data.spare_value_ = value;
            return true;
        case GripperProtocol::PT_FORCE:
            return decode_force(byte_stream, value, abstract_package_data);
        case GripperProtocol::PT_ACKNOWLEDGE:
            return true;
        case GripperProtocol::PT_MODEL:
            abstract_package_data.model_series_ = CUSTOM_MODEL_SERIES;
            return true;
        case GripperProtocol::PT_ID:
            abstract_package_data.id_ = static_cast<uint8_t>(value);
            return true;
        case GripperProtocol::PT_VERSION:
            abstract_package_data.version_ = value_bytes;
            return true;
        default:
            return false;
    }
}

}  // namespace

GripperCustomProtocol::~GripperCustomProtocol() {}

std::vector<uint8_t> GripperCustomProtocol::build_protocol_empty_byte(bool set) {
    std::vector<uint8_t> byte_stream(FRAME_SIZE, 0);
    byte_stream[OFFSET_READ_WRITE] = set ? 1 : 0;
    return byte_stream;
}

std::vector<uint8_t> GripperCustomProtocol::build_frame(uint8_t id, bool set, uint8_t primary,
                                                        uint8_t secondary, int value) {
    const std::vector<uint8_t> byte_data = int32_t_2_byte(value, VALUE_LENGTH, ET_LITTLE_ENDIAN);
    if (!is_value_bytes(byte_data)) {
        return std::vector<uint8_t>();
    }
    std::vector<uint8_t> byte_stream = build_protocol_empty_byte(set);
    if (FRAME_SIZE == byte_stream.size()) {
        byte_stream[OFFSET_ID] = id;
        byte_stream[OFFSET_REGISTER_PRIMARY] = primary;
        byte_stream[OFFSET_REGISTER_SECONDARY] = secondary;
        std::copy(byte_data.begin(), byte_data.end(), byte_stream.begin() + OFFSET_VALUE);
    }
    if (!package_protocol(byte_stream)) {
        GRIPPER_LOG("E", "!package_protocol(byte_stream)");
        byte_stream.clear();
    }
    return byte_stream;
}

std::vector<uint8_t> GripperCustomProtocol::build_id_protocol() {
    return build_frame(ID_REQUEST_ID, false, PRIMARY_REGISTER_ID, SECONDARY_ID, 0);
}

std::vector<uint8_t> GripperCustomProtocol::build_model_protocol(uint8_t) {
    return std::vector<uint8_t>();
}

std::vector<uint8_t> GripperCustomProtocol::build_version_protocol(uint8_t id) {
    return build_frame(id, false, PRIMARY_REGISTER_VERSION, SECONDARY_VERSION, 0);
}

std::vector<uint8_t> GripperCustomProtocol::build_emergency_open(uint8_t) {
    return std::vector<uint8_t>();
}

std::vector<uint8_t> GripperCustomProtocol::build_emegency_close(uint8_t) {
    return std::vector<uint8_t>();
}

std::vector<uint8_t> GripperCustomProtocol::build_initialize_protocol(uint8_t id, bool set) {
    return build_frame(id, set, PRIMARY_REGISTER_INITIALIZE, SECONDARY_INITIALIZE, 0);
}

std::vector<uint8_t> GripperCustomProtocol::build_move_feedback_protocol(uint8_t id) {
    return build_frame(id, false, PRIMARY_REGISTER_MOVE_FEEDBACK, SECONDARY_MOVE_FEEDBACK, 0);
}

std::vector<uint8_t> GripperCustomProtocol::build_turn_feedback_protocol(uint8_t id) {
    return build_frame(id, false, PRIMARY_REGISTER_TURN_FEEDBACK, SECONDARY_TURN_FEEDBACK, 0);
}

std::vector<uint8_t> GripperCustomProtocol::build_slow_protocol(uint8_t id, bool set,
                                                                SlowMove slow) {
    return build_frame(id, set, PRIMARY_REGISTER_SLOW, slow_secondary_register(slow), 0);
}

std::vector<uint8_t> GripperCustomProtocol::build_position_protocol(uint8_t id, bool set,
                                                                    int value) {
    return build_frame(id, set, PRIMARY_REGISTER_POSITION, SECONDARY_POSITION, set ? value : 0);
}

std::vector<uint8_t> GripperCustomProtocol::build_force_protocol(uint8_t id, bool set, int value) {
    return build_frame(id, set, PRIMARY_REGISTER_FORCE, SECONDARY_FORCE, set ? value : 0);
}

std::vector<uint8_t> GripperCustomProtocol::build_closing_force_protocol(uint8_t id, bool set,
                                                                         int value) {
    return build_frame(id, set, PRIMARY_REGISTER_FORCE, SECONDARY_CLOSING_FORCE, set ? value : 0);
}

std::vector<uint8_t> GripperCustomProtocol::build_speed_protocol(uint8_t, bool, int) {
    return std::vector<uint8_t>();
}

std::vector<uint8_t> GripperCustomProtocol::build_angle_protocol(uint8_t id, bool set, int value) {
    return build_frame(id, set, PRIMARY_REGISTER_ANGLE, SECONDARY_ANGLE, set ? value : 0);
}

std::vector<uint8_t> GripperCustomProtocol::build_maximum_current_protocol(uint8_t, int) {
    return std::vector<uint8_t>();
}

bool GripperCustomProtocol::contains_dropped_feedback(uint8_t id,
                                                      const std::vector<uint8_t>& byte_stream) {
    for (size_t start = 0; start + FRAME_SIZE <= byte_stream.size(); ++start) {
        const uint8_t* frame = byte_stream.data() + start;
        if (std::equal(HEADER, HEADER + sizeof(HEADER), frame) &&
            TRAILER == frame[OFFSET_TRAILER] && (BROADCAST_ID == id || id == frame[OFFSET_ID]) &&
            PRIMARY_REGISTER_STOP_CURRENT == frame[OFFSET_REGISTER_PRIMARY] &&
            SECONDARY_STOP_CURRENT != frame[OFFSET_REGISTER_SECONDARY]) {
            return true;
        }
    }
    return false;
}

std::vector<uint8_t> GripperCustomProtocol::build_stop_current_droped_feedback_protocol(
    uint8_t id) {
    return build_frame(id, true, PRIMARY_REGISTER_STOP_CURRENT, SECONDARY_STOP_CURRENT, 0);
}

bool GripperCustomProtocol::package_protocol(std::vector<uint8_t>& byte_stream) {
    if (byte_stream.empty()) {
        GRIPPER_LOG("E", "0 == byte_stream.size()");
        return false;
    }
    if (FRAME_LENGTH != static_cast<int>(byte_stream.size())) {
        GRIPPER_LOG("E", "FRAME_LENGTH != static_cast<int>(byte_stream.size())");
        return false;
    }
    std::copy(std::begin(HEADER), std::end(HEADER), byte_stream.begin());
    byte_stream[OFFSET_TRAILER] = TRAILER;
    return true;
}

int GripperCustomProtocol::set_package_length() {
    return FRAME_LENGTH;
}

int GripperCustomProtocol::get_package_length() {
    return FRAME_LENGTH;
}

int GripperCustomProtocol::exception_length() {
    return 0;
}

bool GripperCustomProtocol::exception_parse(const std::vector<uint8_t>&) {
    return false;
}

// Only the request is checked here; the decoder checks the answer's id and register.
bool GripperCustomProtocol::compare_package(bool set, const std::vector<uint8_t>& write_byte_stream,
                                            const std::vector<uint8_t>& read_byte_stream) {
    if (write_byte_stream.empty()) {
        GRIPPER_LOG("W", "0 == write_byte_stream.size()");
        return false;
    }
    if (read_byte_stream.empty()) {
        GRIPPER_LOG("W", "0 == read_byte_stream.size()");
        return false;
    }
    if (FRAME_LENGTH != static_cast<int>(write_byte_stream.size())) {
        GRIPPER_LOG("W", "FRAME_LENGTH != static_cast<int>(write_byte_stream.size())");
        GRIPPER_LOG("W", "set:%d", set);
        return false;
    }
    return true;
}

// A failed decode only clears the package type; fields already written keep their values.
AbstractPackageData GripperCustomProtocol::parse_get_normal_package(
    uint8_t id, PackageType type, const std::vector<uint8_t>& byte_stream) {
    AbstractPackageData abstract_package_data;
    abstract_package_data.package_type_ = type;
    abstract_package_data.id_ = id;
    if (!has_frame_length(byte_stream) || !is_from_gripper(abstract_package_data, byte_stream) ||
        !decode_by_type(byte_stream, abstract_package_data)) {
        abstract_package_data.package_type_ = PT_UNDEFINE;
    }
    return abstract_package_data;
}

bool GripperCustomProtocol::parse_exception_package(uint8_t, const std::vector<uint8_t>&) {
    return false;
}

int GripperCustomProtocol::get_protocol_type() {
    return 0;
}
