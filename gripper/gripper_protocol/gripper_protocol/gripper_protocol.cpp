#include "gripper/gripper_protocol/gripper_protocol/gripper_protocol.h"

#include <cstddef>

#include "gripper/gripper_common/simple_logger/simple_logger.h"

namespace {

// Inserted in this order; a key already present keeps its first series.
std::map<std::vector<uint8_t>, int32_t> make_model_series() {
    const std::pair<std::vector<uint8_t>, int32_t> entries[] = {
        {{0x00, 0x00}, 1}, {{0x02, 0x00}, 1}, {{0x02, 0x02}, 1}, {{0x02, 0x03}, 1},
        {{0x02, 0x04}, 1}, {{0x02, 0x05}, 1}, {{0x02, 0x06}, 1}, {{0x02, 0x07}, 1},
        {{0x02, 0x07}, 1}, {{0x01, 0x00}, 2}, {{0x10, 0x00}, 3}, {{0x11, 0x00}, 3},
        {{0x12, 0x00}, 3}, {{0x20, 0x00}, 3}, {{0x21, 0x00}, 3}, {{0x22, 0x00}, 3},
        {{0x23, 0x00}, 3}, {{0x24, 0x00}, 3}, {{0x30, 0x00}, 3}, {{0x31, 0x00}, 3},
        {{0x40, 0x00}, 3}, {{0x50, 0x00}, 3},
    };
    std::map<std::vector<uint8_t>, int32_t> map;
    for (const auto& entry : entries) {
        map.insert(entry);
    }
    return map;
}

}  // namespace

const std::map<std::vector<uint8_t>, int32_t> GripperProtocol::map_model_series =
    make_model_series();

GripperProtocol::~GripperProtocol() {}

std::vector<uint8_t> GripperProtocol::int32_t_2_byte(int value, int count, EndianType endian) {
    if (count < 1) {
        return std::vector<uint8_t>();
    }
    std::vector<uint8_t> bytes(static_cast<size_t>(count));
    const uint32_t bits = static_cast<uint32_t>(value);
    for (int i = 0; i < count; ++i) {
        const int position = (ET_BIG_ENDIAN == endian) ? count - 1 - i : i;
        bytes[static_cast<size_t>(position)] = static_cast<uint8_t>(bits >> ((8 * i) % 32));
    }
    return bytes;
}

int32_t GripperProtocol::byte_2_int32_t(std::vector<uint8_t> bytes, EndianType endian) {
    if (bytes.empty()) {
        GRIPPER_LOG("W", "0 == byte_stream.size()");
        return 0;
    }
    if (bytes.size() > 4) {
        GRIPPER_LOG("W", "byte_stream.size() > 4");
        GRIPPER_LOG("W", "byte_stream.size() = %d", static_cast<int>(bytes.size()));
        return 0;
    }
    uint32_t value = 0;
    const size_t count = bytes.size();
    for (size_t i = 0; i < count; ++i) {
        const size_t position = (ET_BIG_ENDIAN == endian) ? count - 1 - i : i;
        value |= static_cast<uint32_t>(bytes[position]) << (8 * i);
    }
    return static_cast<int32_t>(value);
}
