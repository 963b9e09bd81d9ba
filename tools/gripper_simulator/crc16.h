#ifndef TOOLS_GRIPPER_SIMULATOR_CRC16_H
#define TOOLS_GRIPPER_SIMULATOR_CRC16_H

#include <cstddef>
#include <cstdint>

namespace gripper_sim {

// CRC-16/MODBUS (polynomial 0xA001 reflected, start 0xFFFF, no final XOR). Sent low byte first.
uint16_t crc16_modbus(const uint8_t* data, size_t size);

}  // namespace gripper_sim

#endif
