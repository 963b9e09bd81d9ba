#ifndef GRIPPER_MODBUS_PROTOCOL_H
#define GRIPPER_MODBUS_PROTOCOL_H

#include "gripper/gripper_protocol/gripper_protocol/gripper_protocol.h"

// Modbus RTU: one 8-byte request per register (0x03 read, 0x06 write), 7-byte read answers,
// echoed writes, CRC-16/MODBUS low byte first.
class GripperModbusProtocol : public GripperProtocol {
public:
    static const int WRITE_LENGTH = 8;
    static const int READ_LENGTH = 7;
    static const int GET_OFFSET_LENGTH = 2;
    static const int EXCEPTION_LENGTH = 5;

    GripperModbusProtocol() = default;
    ~GripperModbusProtocol() override;

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

private:
    // One request for a register: blank frame for set, slave id, register (high byte first),
    // count or value in bytes 4-5, then the CRC; empty when the frame cannot be completed.
    std::vector<uint8_t> build_frame(uint8_t id, bool set, uint16_t address, int value);
};

// CRC-16/MODBUS: start 0xFFFF, reflected polynomial 0xA001, no final XOR.
uint16_t modbus_crc_16(const std::vector<uint8_t>& byte_stream);

// True when the CRC of sub_byte_stream has low byte modbus_crc1 and high byte modbus_crc2.
bool modbus_crc_16_check(std::vector<uint8_t> sub_byte_stream, uint8_t modbus_crc1,
                         uint8_t modbus_crc2);

#endif
