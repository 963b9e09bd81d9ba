#include "tools/gripper_doctor/hex_text.h"

#include <cstdio>

namespace gripper_doctor {

std::string hex_bytes(const std::vector<uint8_t>& bytes) {
    std::string text;
    for (uint8_t byte : bytes) {
        char digits[4];
        std::snprintf(digits, sizeof(digits), "%02X", byte);
        text += (text.empty() ? "" : " ") + std::string(digits);
    }
    return text;
}

std::string hex_word(uint16_t value) {
    char text[8];
    std::snprintf(text, sizeof(text), "0x%04X", value);
    return text;
}

std::string dotted_bytes(const std::vector<uint8_t>& bytes) {
    std::string text;
    for (uint8_t byte : bytes) {
        text += (text.empty() ? "" : ".") + std::to_string(byte);
    }
    return text;
}

}  // namespace gripper_doctor
