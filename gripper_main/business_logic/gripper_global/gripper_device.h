#ifndef GRIPPER_DEVICE_H
#define GRIPPER_DEVICE_H

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control.h"
#include "gripper/gripper_communication_control/gripper_communication/gripper_communication.h"

// One configured gripper slot of the registry. The Setting page owns the meaning of the link
// fields; the slot does not own its driver.
struct GripperDevice {
    // A GripperCommunication::CommunicationConnection value: the link chosen for this slot.
    int32_t connection_type_ = 0;
    // A GripperCommunication::CommunicationStatus value: the slot's last known link state.
    int32_t connection_state_ = 0;
    // The last parameters entered for each link type.
    std::map<GripperCommunication::CommunicationConnection, std::vector<std::string>>
        map_connection_parameters_{
            {GripperCommunication::CC_TCP_CLIENT, std::vector<std::string>()},
            {GripperCommunication::CC_USB_SERIALPORT, std::vector<std::string>()},
        };
    // A MiscellaneousUtility::ConnectOperate value: how the slot was last connected.
    int32_t connect_operate_ = 0;
    // The connected driver; null while the slot is not connected.
    GripperLogicControl* gripper_abstract_control_ = nullptr;
};

#endif
