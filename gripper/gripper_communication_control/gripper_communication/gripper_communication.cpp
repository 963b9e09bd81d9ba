#include "gripper/gripper_communication_control/gripper_communication/gripper_communication.h"

#include <map>

#include "gripper/gripper_common/enum_name_map/enum_name_map.h"

namespace {

struct Static {
    std::map<GripperCommunication::CommunicationStatus, std::string> map_communicatoin_status_{
        {GripperCommunication::CS_UNDEFINE, "CS_UNDEFINE"},
        {GripperCommunication::CS_UNCONNECTED, "CS_UNCONNECTED"},
        {GripperCommunication::CS_CONNECT_FAILURE, "CS_CONNECT_FAILURE"},
        {GripperCommunication::CS_CONNECTED, "CS_CONNECTED"},
        {GripperCommunication::CS_DISCONNECTED, "CS_DISCONNECTED"},
        {GripperCommunication::CS_WRITE_EXCEPTION, "CS_WRITE_EXCEPTION"},
        {GripperCommunication::CS_READ_EXCEPTION, "CS_READ_EXCEPTION"},
        {GripperCommunication::CS_ALIVE_EXCEPTION, "CS_ALIVE_EXCEPTION"},
        {GripperCommunication::CS_VERSION_EXCEPTION, "CS_VERSION_EXCEPTION"},
        {GripperCommunication::CS_DEVICE_EXCEPTION, "CS_DEVICE_EXCEPTION"},
    };
    std::map<GripperCommunication::CommunicationConnection, std::string>
        map_communicatoin_connection_{
            {GripperCommunication::CC_UNDEFINE, "CC_UNDEFINE"},
            {GripperCommunication::CC_TCP_CLIENT, "CC_TCP_CLIENT"},
            {GripperCommunication::CC_USB_SERIALPORT, "CC_USB_SERIALPORT"},
            {GripperCommunication::CC_FIXED_PORT, "CC_FIXED_PORT"},
        };
};

const Static& statics() {
    static const Static instance;
    return instance;
}

}  // namespace

GripperCommunication::~GripperCommunication() {}

std::string GripperCommunication::communication_status_to_string(CommunicationStatus status) {
    return enum_name_of(statics().map_communicatoin_status_, status);
}

std::string GripperCommunication::communication_connection_to_string(
    CommunicationConnection connection) {
    return enum_name_of(statics().map_communicatoin_connection_, connection);
}

GripperCommunication::CommunicationStatus GripperCommunication::string_to_communication_status(
    const std::string& text) {
    return enum_value_of(statics().map_communicatoin_status_, text);
}

GripperCommunication::CommunicationConnection
GripperCommunication::string_to_communication_connection(const std::string& text) {
    return enum_value_of(statics().map_communicatoin_connection_, text);
}
