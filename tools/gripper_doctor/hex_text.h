#ifndef TOOLS_GRIPPER_DOCTOR_HEX_TEXT_H
#define TOOLS_GRIPPER_DOCTOR_HEX_TEXT_H

#include <cstdint>
#include <string>
#include <vector>

namespace gripper_doctor {

// "FF 03 03 02": the bytes in upper-case hex, separated by blanks.
std::string hex_bytes(const std::vector<uint8_t>& bytes);
// "0x0302".
std::string hex_word(uint16_t value);
// "1.2.1.3": each byte in decimal, separated by dots.
std::string dotted_bytes(const std::vector<uint8_t>& bytes);

}  // namespace gripper_doctor

#endif
