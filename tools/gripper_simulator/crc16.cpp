#include "tools/gripper_simulator/crc16.h"

namespace gripper_sim {

uint16_t crc16_modbus(const uint8_t* data, size_t size) {
    uint16_t crc = 0xFFFF;
    for (size_t i = 0; i < size; ++i) {
        crc ^= data[i];
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc & 1) ? static_cast<uint16_t>((crc >> 1) ^ 0xA001) : (crc >> 1);
        }
    }
    return crc;
}

}  // namespace gripper_sim
