#ifndef TOOLS_GRIPPER_DEMO_DRIVER_DESCRIPTION_H
#define TOOLS_GRIPPER_DEMO_DRIVER_DESCRIPTION_H

#include <string>

#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control.h"

// What a connected driver learnt in its handshake, as text.

// "Modbus RTU" or "custom frames".
std::string protocol_name(GripperLogicControl& driver);
// "version 0x01 0x02, model series 3"
std::string identity_text(GripperLogicControl& driver);
// "position 0-100 %, force 20-100, speed 20-100"
std::string limits_text(GripperLogicControl& driver);

#endif
