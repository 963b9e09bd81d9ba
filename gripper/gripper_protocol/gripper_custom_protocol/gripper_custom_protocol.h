#ifndef GRIPPER_CUSTOM_PROTOCOL_H
#define GRIPPER_CUSTOM_PROTOCOL_H

#include "gripper/gripper_protocol/gripper_protocol/gripper_protocol.h"

// Fixed 14-byte frames without checksum: header FF FE FD FC, id, primary and secondary register,
// read/write flag, a reserved byte, a little-endian int32 value and the trailer FB.
class GripperCustomProtocol : public GripperProtocol {
public:
    static const int FRAME_LENGTH = 14;
    static const int OFFSET_ID = 4;
    static const int OFFSET_REGISTER_PRIMARY = 5;
    static const int OFFSET_REGISTER_SECONDARY = 6;
    static const int OFFSET_READ_WRITE = 7;
    static const int OFFSET_VALUE = 9;

    static const uint8_t PRIMARY_REGISTER_FORCE = 0x05;
    static const uint8_t PRIMARY_REGISTER_POSITION = 0x06;
    static const uint8_t PRIMARY_REGISTER_ANGLE = 0x07;
    static const uint8_t PRIMARY_REGISTER_INITIALIZE = 0x08;
    static const uint8_t PRIMARY_REGISTER_MOVE_FEEDBACK = 0x0F;
    static const uint8_t PRIMARY_REGISTER_TURN_FEEDBACK = 0x0F;
    static const uint8_t PRIMARY_REGISTER_SLOW = 0x11;
    static const uint8_t PRIMARY_REGISTER_ID = 0x12;
    static const uint8_t PRIMARY_REGISTER_VERSION = 0x13;
    static const uint8_t PRIMARY_REGISTER_STOP_CURRENT = 0x15;

    GripperCustomProtocol() = default;
    ~GripperCustomProtocol() override;

    std::vector<uint8_t> build_protocol_empty_byte(bool set) override;
    std::vector<uint8_t> build_id_protocol() override;
    std::vector<uint8_t> build_model_protocol(uint8_t id) override;
    std::vector<uint8_t> build_version_protocol(uint8_t id) override;
    std::vector<uint8_t> build_emergency_open(uint8_t id) override;
    std::vector<uint8_t> build_emegency_close(uint8_t id) override;
    std::vector<uint8_t> build_initialize_protocol(uint8_t id, bool set) override;
    std::vector<uint8_t> build_move_feedback_protocol(uint8_t id) override;
    std::vector<uint8_t> build_turn_feedback_protocol(uint8_t id) override;
    std::vector<uint8_t> build_slow_protocol(uint8_t id, bool set, SlowMove slow) override;
    std::vector<uint8_t> build_position_protocol(uint8_t id, bool set, int value) override;
    std::vector<uint8_t> build_force_protocol(uint8_t id, bool set, int value) override;
    std::vector<uint8_t> build_closing_force_protocol(uint8_t id, bool set, int value) override;
    std::vector<uint8_t> build_speed_protocol(uint8_t id, bool set, int value) override;
    std::vector<uint8_t> build_angle_protocol(uint8_t id, bool set, int value) override;
    std::vector<uint8_t> build_maximum_current_protocol(uint8_t id, int value) override;
    bool package_protocol(std::vector<uint8_t>& stream) override;
    int set_package_length() override;
    int get_package_length() override;
    int exception_length() override;
    bool exception_parse(const std::vector<uint8_t>& stream) override;
    bool compare_package(bool set, const std::vector<uint8_t>& write,
                         const std::vector<uint8_t>& read) override;
    AbstractPackageData parse_get_normal_package(uint8_t id, PackageType type,
                                                 const std::vector<uint8_t>& stream) override;
    bool parse_exception_package(uint8_t id, const std::vector<uint8_t>& stream) override;
    int get_protocol_type() override;

    // Acknowledges the gripper's unsolicited dropped frame; the gripper echoes it.
    std::vector<uint8_t> build_stop_current_droped_feedback_protocol(uint8_t id);
    // True when the bytes hold the dropped frame that gripper id sends by itself: a whole frame
    // on the stop-current register other than the echo of the acknowledgement. Id 255 accepts
    // any sender.
    static bool contains_dropped_feedback(uint8_t id, const std::vector<uint8_t>& byte_stream);

private:
    // One frame: blank frame for set, id, primary and secondary register, the value little endian,
    // then header and trailer; empty when the frame cannot be completed.
    std::vector<uint8_t> build_frame(uint8_t id, bool set, uint8_t primary, uint8_t secondary,
                                     int value);
};

#endif
