#ifndef TOOLS_GRIPPER_DOCTOR_MODBUS_FRAMES_H
#define TOOLS_GRIPPER_DOCTOR_MODBUS_FRAMES_H

#include <cstdint>
#include <string>

#include "tools/gripper_doctor/verdict.h"

namespace gripper_doctor {

// Modbus RTU requests and answers told in words. A request is known by the plug-in's protocol
// building the same frame; an answer is checked and decoded by that protocol too.
class ModbusFrames {
public:
    static std::string request(const Bytes& frame);
    static Verdict answer(const Bytes& request, const Bytes& answer);

private:
    static Verdict exception(const Bytes& answer);
    static Verdict echo(const Bytes& request, const Bytes& answer);
    static Verdict read_answer(const Bytes& request, const Bytes& answer);
    static std::string meaning(const Bytes& request, const Bytes& answer);
    static bool crc_ok(const Bytes& frame);
    static uint16_t word(const Bytes& frame, size_t offset);
};

}  // namespace gripper_doctor

#endif
