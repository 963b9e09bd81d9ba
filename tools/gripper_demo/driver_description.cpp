#include "tools/gripper_demo/driver_description.h"

#include <cstdio>

#include "gripper/gripper_common/miscellaneous_utility/miscellaneous_utility.h"

namespace {

std::string number(float value) {
    char text[16];
    std::snprintf(text, sizeof(text), "%g", static_cast<double>(value));
    return text;
}

std::string range(int low, int high) {
    return std::to_string(low) + "-" + std::to_string(high);
}

}  // namespace

// The driver does not name its protocol. Over TCP it always speaks custom frames; on a serial
// port it falls back to them when the gripper ignores the Modbus id request, and only such a
// gripper moves in whole percents.
std::string protocol_name(GripperLogicControl& driver) {
    const bool tcp = GripperCommunication::CC_TCP_CLIENT == driver.get_communication_connection();
    return (tcp || 1.0f == driver.position_step()) ? "custom frames" : "Modbus RTU";
}

std::string identity_text(GripperLogicControl& driver) {
    std::string version = MiscellaneousUtility::convert_hex_binary(driver.get_version());
    if (!version.empty()) {
        version.pop_back();  // the trailing separator
    }
    return "version " + version + ", model series " + std::to_string(driver.get_model_series());
}

std::string limits_text(GripperLogicControl& driver) {
    const std::string speed = driver.support_speed()
                                  ? "speed " + range(driver.get_speed_min(), driver.get_speed_max())
                                  : "no speed setting";
    return "position " + number(driver.get_position_min()) + "-" +
           number(driver.get_position_max()) + " %, force " +
           range(driver.get_force_min(), driver.get_force_max()) + ", " + speed;
}
