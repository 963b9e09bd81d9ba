#include "gripper/gripper_common/miscellaneous_utility/miscellaneous_utility.h"

#include <time.h>

#include <cstdio>
#include <map>

#include "gripper/gripper_common/enum_name_map/enum_name_map.h"
#include "gripper/gripper_common/simple_logger/simple_logger.h"

namespace {

struct Static {
    std::map<MiscellaneousUtility::ConnectOperate, std::string> map_connect_operate_{
        {MiscellaneousUtility::CO_UNDEFINE, "CO_UNDEFINE"},
        {MiscellaneousUtility::CO_MANUAL, "CO_MANUAL"},
        {MiscellaneousUtility::CO_SCAN, "CO_SCAN"},
    };
};

const Static& statics() {
    static const Static instance;
    return instance;
}

bool in_byte_range(long value) {
    return value >= 0 && value <= 255;
}

}  // namespace

std::string MiscellaneousUtility::connect_operate_to_string(ConnectOperate operate) {
    return enum_name_of(statics().map_connect_operate_, operate);
}

MiscellaneousUtility::ConnectOperate MiscellaneousUtility::string_to_connect_operate(
    const std::string& text) {
    return enum_value_of(statics().map_connect_operate_, text);
}

int32_t MiscellaneousUtility::current_time_millis() {
    struct timespec start;
    if (0 != clock_gettime(CLOCK_MONOTONIC, &start)) {
        GRIPPER_LOG("E", "0 != clock_gettime(CLOCK_MONOTONIC, &start)");
        return 0;
    }
    // Unsigned arithmetic gives the wrap-around of 32-bit signed milliseconds without overflow.
    uint32_t millis = static_cast<uint32_t>(start.tv_sec) * 1000u +
                      static_cast<uint32_t>(start.tv_nsec / 1000000);
    return static_cast<int32_t>(millis);
}

bool MiscellaneousUtility::is_valid_ip(const std::string& ip) {
    // Scanned as long so that numbers past the int range are refused instead of wrapping into it
    // (4294967296.1.1.1 would read as 0.1.1.1).
    long a = 0, b = 0, c = 0, d = 0;
    if (4 != sscanf(ip.c_str(), "%ld.%ld.%ld.%ld", &a, &b, &c, &d)) {
        GRIPPER_LOG("W", "4 != sscanf(ip.c_str(), \"%%d.%%d.%%d.%%d\", &a, &b, &c, &d)");
        GRIPPER_LOG("W", "ip = %s", ip.c_str());
        return false;
    }
    const long parts[] = {a, b, c, d};
    const char* conditions[] = {"a < 0 || a > 255", "b < 0 || b > 255", "c < 0 || c > 255",
                                "d < 0 || d > 255"};
    for (int i = 0; i < 4; ++i) {
        if (!in_byte_range(parts[i])) {
            GRIPPER_LOG("W", "%s", conditions[i]);
            return false;
        }
    }
    return true;
}

bool MiscellaneousUtility::is_valid_port(const std::string& port) {
    long a = 0;  // as long: 4294968320 must not wrap to 1024
    if (1 != sscanf(port.c_str(), "%ld", &a)) {
        GRIPPER_LOG("W", "1 != sscanf(port.c_str(), \"%%d\", &a)");
        GRIPPER_LOG("W", "port = %s", port.c_str());
        return false;
    }
    if (a < 1024 || a > 65535) {
        GRIPPER_LOG("W", "a < 1024 || a > 65535");
        return false;
    }
    return true;
}

std::string MiscellaneousUtility::convert_hex_binary(const std::vector<uint8_t>& byte_stream) {
    static const char digits[] = "0123456789ABCDEF";
    std::string text;
    text.reserve(byte_stream.size() * 5);
    for (uint8_t byte : byte_stream) {
        text += "0x";
        text += digits[byte >> 4];
        text += digits[byte & 0x0F];
        text += ' ';
    }
    return text;
}
