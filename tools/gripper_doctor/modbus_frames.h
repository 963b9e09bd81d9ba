#ifndef TOOLS_GRIPPER_DOCTOR_MODBUS_FRAMES_H
#define TOOLS_GRIPPER_DOCTOR_MODBUS_FRAMES_H

#include <cstdint>
#include <string>

#include "tools/gripper_doctor/verdict.h"

namespace gripper_doctor {

// Modbus RTU requests and answers of the gripper's register map, told in words.
class ModbusFrames {
public:
    static constexpr size_t REQUEST_LENGTH = 8;

    static std::string request(const Bytes& frame);
    static Verdict answer(const Bytes& request, const Bytes& answer);

private:
    static Verdict exception(const Bytes& answer);
    static Verdict echo(const Bytes& request, const Bytes& answer);
    static Verdict read_answer(const Bytes& request, const Bytes& answer);
    static std::string meaning(uint16_t reg, const Bytes& answer);
    static std::string register_name(uint16_t reg);
    static bool crc_ok(const Bytes& frame);
    static uint16_t word(const Bytes& frame, size_t offset);
};

}  // namespace gripper_doctor

#endif
