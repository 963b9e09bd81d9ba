#ifndef GRIPPER_COMMON_MISCELLANEOUS_UTILITY_H
#define GRIPPER_COMMON_MISCELLANEOUS_UTILITY_H

#include <cstdint>
#include <string>
#include <vector>

// Small helpers shared by the protocols and the links: clock, address checks, hex dumps and the
// names of the ways a connection is started.
class MiscellaneousUtility {
public:
    enum ConnectOperate : int32_t {
        CO_UNDEFINE = 0,
        CO_MANUAL = 1,
        CO_SCAN = 2,
    };

    static std::string connect_operate_to_string(ConnectOperate operate);
    static ConnectOperate string_to_connect_operate(const std::string& text);

    // Monotonic milliseconds in 32-bit signed arithmetic; wraps, so callers only take differences.
    static int32_t current_time_millis();

    static bool is_valid_ip(const std::string& ip);
    static bool is_valid_port(const std::string& port);

    // "0x01 0xAB " for the bytes 01 AB; empty for no bytes.
    static std::string convert_hex_binary(const std::vector<uint8_t>& byte_stream);
};

#endif
