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

GripperCommunication::TrafficObserver::~TrafficObserver() {}

bool GripperCommunication::TrafficObserver::refuse_write(const std::vector<uint8_t>&) {
    return false;
}

void GripperCommunication::set_traffic_observer(TrafficObserver* observer) {
    traffic_observer_ = observer;
}

GripperLinkFailure GripperCommunication::last_failure() const {
    std::lock_guard<std::mutex> lock(failure_mutex_);
    return last_failure_;
}

bool GripperCommunication::refuse_write(const std::vector<uint8_t>& bytes) {
    TrafficObserver* observer = traffic_observer_;
    return nullptr != observer && observer->refuse_write(bytes);
}

void GripperCommunication::report_written(const std::vector<uint8_t>& bytes, bool ok) {
    TrafficObserver* observer = traffic_observer_;
    if (nullptr != observer) {
        observer->on_written(bytes, ok);
    }
}

void GripperCommunication::report_read(const std::vector<uint8_t>& bytes, bool discarded_as_stale) {
    TrafficObserver* observer = traffic_observer_;
    if (nullptr != observer) {
        observer->on_read(bytes, discarded_as_stale);
    }
}

void GripperCommunication::keep_failure(GripperLinkFailure::Code code, int error_number,
                                        const std::string& sentence) {
    std::lock_guard<std::mutex> lock(failure_mutex_);
    last_failure_.code = code;
    last_failure_.error_number = error_number;
    last_failure_.sentence = sentence;
}

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
