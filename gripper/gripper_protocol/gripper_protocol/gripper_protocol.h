#ifndef GRIPPER_PROTOCOL_H
#define GRIPPER_PROTOCOL_H

#include <cstdint>
#include <map>
#include <vector>

struct AbstractPackageData;

// The wire protocol of one gripper: builds request frames, checks answers against their requests
// and decodes them. Holds no state of its own.
class GripperProtocol {
public:
    enum PackageType : int32_t {
        PT_UNDEFINE = 0,
        PT_STOP_CURRENT_FEEDBACK = 1,
        PT_RESERVED_2 = 2,
        PT_RESERVED_3 = 3,
        PT_INITIALIZE = 4,
        PT_MOVE_FEEDBACK = 5,
        PT_TURN_FEEDBACK = 6,
        PT_POSITION = 7,
        PT_SPEED = 8,
        PT_SPARE = 9,
        PT_FORCE = 10,
        PT_ACKNOWLEDGE = 11,
        PT_MODEL = 12,
        PT_ID = 13,
        PT_VERSION = 14,
    };

    enum Feedback : int32_t {
        F_UNDEFINE = 0,
        F_MOVING = 1,
        F_TURNING = 2,
        F_ARRIVED = 3,
        F_DETECTED = 4,
        F_DROPPED = 5,
    };

    enum SlowMove : int32_t {
        SM_SLOW = 0,
        SM_NORMAL = 1,
    };

    enum EndianType : int32_t {
        ET_LITTLE_ENDIAN = 0,
        ET_BIG_ENDIAN = 1,
    };

    GripperProtocol() = default;
    GripperProtocol(const GripperProtocol&) = delete;
    GripperProtocol& operator=(const GripperProtocol&) = delete;

    virtual ~GripperProtocol() = 0;
    virtual std::vector<uint8_t> build_protocol_empty_byte(bool set) = 0;
    virtual std::vector<uint8_t> build_id_protocol() = 0;
    virtual std::vector<uint8_t> build_model_protocol(uint8_t id) = 0;
    virtual std::vector<uint8_t> build_version_protocol(uint8_t id) = 0;
    virtual std::vector<uint8_t> build_emergency_open(uint8_t id) = 0;
    virtual std::vector<uint8_t> build_emegency_close(uint8_t id) = 0;
    virtual std::vector<uint8_t> build_initialize_protocol(uint8_t id, bool set) = 0;
    virtual std::vector<uint8_t> build_move_feedback_protocol(uint8_t id) = 0;
    virtual std::vector<uint8_t> build_turn_feedback_protocol(uint8_t id) = 0;
    virtual std::vector<uint8_t> build_slow_protocol(uint8_t id, bool set, SlowMove slow) = 0;
    virtual std::vector<uint8_t> build_position_protocol(uint8_t id, bool set, int value) = 0;
    virtual std::vector<uint8_t> build_force_protocol(uint8_t id, bool set, int value) = 0;
    virtual std::vector<uint8_t> build_closing_force_protocol(uint8_t id, bool set, int value) = 0;
    virtual std::vector<uint8_t> build_speed_protocol(uint8_t id, bool set, int value) = 0;
    virtual std::vector<uint8_t> build_angle_protocol(uint8_t id, bool set, int value) = 0;
    virtual std::vector<uint8_t> build_maximum_current_protocol(uint8_t id, int value) = 0;
    virtual bool package_protocol(std::vector<uint8_t>& stream) = 0;
    virtual int set_package_length() = 0;
    virtual int get_package_length() = 0;
    virtual int exception_length() = 0;
    virtual bool exception_parse(const std::vector<uint8_t>& stream) = 0;
    virtual bool compare_package(bool set, const std::vector<uint8_t>& write,
                                 const std::vector<uint8_t>& read) = 0;
    virtual AbstractPackageData parse_get_normal_package(uint8_t id, PackageType type,
                                                         const std::vector<uint8_t>& stream) = 0;
    virtual bool parse_exception_package(uint8_t id, const std::vector<uint8_t>& stream) = 0;
    virtual int get_protocol_type() = 0;

    static std::vector<uint8_t> int32_t_2_byte(int value, int count, EndianType endian);
    static int32_t byte_2_int32_t(std::vector<uint8_t> bytes, EndianType endian);

    // Model code (the data bytes of a model answer) to model series, filled once at start-up.
    static const std::map<std::vector<uint8_t>, int32_t> map_model_series;
};

// One decoded answer. An untouched value field reads -1; PT_UNDEFINE marks a failed decode.
struct AbstractPackageData {
    GripperProtocol::PackageType package_type_ = GripperProtocol::PT_UNDEFINE;
    uint8_t id_ = 255;
    std::vector<uint8_t> version_;
    int32_t model_series_ = 0;
    GripperProtocol::Feedback feedback_ = GripperProtocol::F_UNDEFINE;
    int32_t initialize_value_ = -1;
    int32_t force_value_ = -1;
    int32_t position_value_ = -1;
    int32_t speed_value_ = -1;
    int32_t spare_value_ = -1;
};

#endif
