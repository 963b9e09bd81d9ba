#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control_private.h"

#include <algorithm>
#include <cmath>

#include "gripper/gripper_common/miscellaneous_utility/miscellaneous_utility.h"
#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "gripper/gripper_protocol/gripper_custom_protocol/gripper_custom_protocol.h"
#include "gripper/gripper_protocol/gripper_modbus_protocol/gripper_modbus_protocol.h"

namespace {

// Version of the TCP grippers that belong to model series 2.
const std::vector<uint8_t> SERIES_2_TCP_VERSION = {0x01, 0x02, 0x01, 0x04};

std::string hex(const std::vector<uint8_t>& bytes) {
    return MiscellaneousUtility::convert_hex_binary(bytes);
}

}  // namespace

GripperLogicControlPrivate::GripperLogicControlPrivate(GripperLogicControl* parent)
    : parent_(parent),
      last_update_time_(MiscellaneousUtility::current_time_millis()),
      update_interval_(100),
      thread_(),
      thread_start_(false),
      thread_loop_(true),
      loop_woken_(false),
      communication_(nullptr),
      discarding_(false),
      first_exhaustion_(true),
      move_pending_(false),
      arrived_seen_(false),
      move_period_(GripperLogicControl::DEFAULT_MOVE_PERIOD),
      initialize_(0),
      communication_status_(GripperCommunication::CS_UNDEFINE),
      gripper_status_(GripperLogicControl::GS_UNDEFINE),
      id_(GripperLogicControl::INVALID_ID),
      position_(0.0f),
      force_(0),
      speed_(0),
      angle_(0),
      maximum_current_(0),
      model_series_(0),
      cached_position_(0.0f),
      cached_force_(0),
      cached_speed_(0),
      zeroes_pending_(false),
      zeroing_(false) {
    sem_init(&semaphore_, 0, 0);
}

GripperLogicControlPrivate::~GripperLogicControlPrivate() {
    sem_destroy(&semaphore_);
}

bool GripperLogicControlPrivate::choose_protocol() {
    GripperProtocol*& protocol = parent_->gripper_protocol_;
    if (nullptr == protocol) {
        switch (communication_->get_communication_connection()) {
            case GripperCommunication::CC_TCP_CLIENT:
                protocol = new GripperCustomProtocol();
                break;
            case GripperCommunication::CC_USB_SERIALPORT:
                protocol = new GripperModbusProtocol();
                if (!sync_id()) {
                    // A serial gripper that ignores the Modbus id request speaks the frame
                    // protocol.
                    GRIPPER_LOG("E", "!private_->sync_id()");
                    delete protocol;
                    protocol = new GripperCustomProtocol();
                }
                break;
            default:
                break;
        }
    }
    if (nullptr == protocol) {
        GRIPPER_LOG("E", "NULL == gripper_protocol_");
        return false;
    }
    return true;
}

std::vector<uint8_t> GripperLogicControlPrivate::exchange(bool set,
                                                          const std::vector<uint8_t>& request) {
    if (request.empty()) {
        // The protocol has no such request.
        GRIPPER_LOG("W", "0 == byte_stream.size()");
        return std::vector<uint8_t>();
    }
    GripperProtocol* protocol = parent_->gripper_protocol_;
    // A command is answered by its echo, a read-back by a read answer.
    const int length = set ? protocol->set_package_length() : protocol->get_package_length();
    std::vector<uint8_t> answer = communication_->write_read(set, length, request);
    recovery_.note_exchange(!answer.empty());
    if (answer.empty()) {
        GRIPPER_LOG("W", "0 == read_byte_stream.size()");
        GRIPPER_LOG("W", "byte_stream = %s", hex(request).c_str());
    }
    return answer;
}

bool GripperLogicControlPrivate::read_back(const std::vector<uint8_t>& request,
                                           GripperProtocol::PackageType type,
                                           AbstractPackageData& data) {
    const std::vector<uint8_t> answer = exchange(false, request);
    if (answer.empty()) {
        return false;
    }
    data = parent_->gripper_protocol_->parse_get_normal_package(id_, type, answer);
    if (GripperProtocol::PT_UNDEFINE == data.package_type_) {
        GRIPPER_LOG("W",
                    "GripperProtocol::PackageType::PT_UNDEFINE == "
                    "abstract_package_data.package_type_");
        GRIPPER_LOG("W", "read_byte_stream = %s", hex(answer).c_str());
        return false;
    }
    return true;
}

bool GripperLogicControlPrivate::command(const std::vector<uint8_t>& request) {
    const std::vector<uint8_t> answer = exchange(true, request);
    if (answer.empty()) {
        return false;
    }
    if (!parent_->gripper_protocol_->compare_package(true, request, answer)) {
        GRIPPER_LOG("W",
                    "!gripper_protocol_->compare_package(true, byte_stream, read_byte_stream)");
        return false;
    }
    return true;
}

bool GripperLogicControlPrivate::accepts_motion_command() const {
    if (1 != initialize_) {
        GRIPPER_LOG("W", "1 != private_->initialize_");
        return false;
    }
    // Refused without a message while undefined, inactive, activating or turning.
    return parent_->takes_commands();
}

bool GripperLogicControlPrivate::may_hold_object() const {
    switch (gripper_status_.load()) {
        case GripperLogicControl::GS_MOVING:
        case GripperLogicControl::GS_ARRIVED:
        case GripperLogicControl::GS_DETECTED:
        case GripperLogicControl::GS_DROPPED:
            return true;
        default:
            return false;
    }
}

bool GripperLogicControlPrivate::sync_id() {
    AbstractPackageData data;
    if (!read_back(parent_->gripper_protocol_->build_id_protocol(), GripperProtocol::PT_ID, data)) {
        return false;
    }
    id_ = data.id_;
    return true;
}

bool GripperLogicControlPrivate::sync_version() {
    AbstractPackageData data;
    if (!read_back(parent_->gripper_protocol_->build_version_protocol(id_),
                   GripperProtocol::PT_VERSION, data)) {
        return false;
    }
    version_ = data.version_;
    if (GripperCommunication::CC_TCP_CLIENT == communication_->get_communication_connection() &&
        SERIES_2_TCP_VERSION == version_) {
        model_series_ = 2;
    }
    GRIPPER_LOG("D", "version = %s", hex(version_).c_str());
    return true;
}

bool GripperLogicControlPrivate::sync_model() {
    if (GripperLogicControl::INVALID_ID == id_) {
        GRIPPER_LOG("E", "(uint8_t) INVALID_ID == id_");
        return false;
    }
    if (nullptr == parent_->gripper_protocol_) {
        GRIPPER_LOG("E", "NULL == parent_->gripper_protocol_");
        return false;
    }
    const GripperCommunication::CommunicationConnection connection =
        communication_->get_communication_connection();
    GRIPPER_LOG("D", "parent_->get_communication_connection() = %d", static_cast<int>(connection));
    if (GripperCommunication::CC_TCP_CLIENT == connection) {
        model_series_ = 1;
        return true;
    }
    if (connection < GripperCommunication::CC_TCP_CLIENT ||
        connection > GripperCommunication::CC_FIXED_PORT) {
        return false;
    }
    if (uses_custom_protocol()) {
        model_series_ = 1;
        return true;
    }
    AbstractPackageData data;
    if (!read_back(parent_->gripper_protocol_->build_model_protocol(id_), GripperProtocol::PT_MODEL,
                   data)) {
        return false;
    }
    model_series_ = data.model_series_;
    GRIPPER_LOG("I", "model_series_ = %d", static_cast<int>(model_series_));
    return true;
}

bool GripperLogicControlPrivate::sync_values() {
    if (nullptr == parent_->gripper_protocol_) {
        GRIPPER_LOG("E", "NULL == gripper_protocol_");
        return false;
    }
    if (!sync_initialize()) {
        GRIPPER_LOG("E", "!private_->sync_initialize()");
        return false;
    }
    if (1 != initialize_) {
        return true;
    }
    if (!sync_position()) {
        GRIPPER_LOG("E", "!private_->sync_position()");
        return false;
    }
    if (support_unify_force()) {
        if (!sync_force()) {
            GRIPPER_LOG("E", "!private_->sync_force()");
            return false;
        }
    } else if (!sync_closing_force()) {
        GRIPPER_LOG("E", "!private_->sync_closing_force(");
        return false;
    }
    if (support_speed() && !sync_speed()) {
        GRIPPER_LOG("E", "!private_->sync_speed()");
        return false;
    }
    return true;
}

bool GripperLogicControlPrivate::sync_initialize() {
    initialize_ = 0;
    zeroes_pending_ = true;
    zeroing_ = true;
    set_gripper_position(0);
    set_gripper_force(0);
    if (support_speed()) {
        set_gripper_speed(0);
    }
    if (support_angle()) {
        set_gripper_angle(0);
    }
    zeroing_ = false;
    AbstractPackageData data;
    if (!read_back(parent_->gripper_protocol_->build_initialize_protocol(id_, false),
                   GripperProtocol::PT_INITIALIZE, data)) {
        return false;
    }
    if (1 == data.initialize_value_) {
        initialize_ = 1;
        parent_->set_gripper_status(GripperLogicControl::GS_ACTIVATED);
    } else if (GripperLogicControl::GS_ACTIVATING != gripper_status_) {
        parent_->set_gripper_status(GripperLogicControl::GS_INACTIVATE);
    }
    return true;
}

bool GripperLogicControlPrivate::sync_position() {
    AbstractPackageData data;
    if (!read_back(parent_->gripper_protocol_->build_position_protocol(id_, false, 0),
                   GripperProtocol::PT_POSITION, data)) {
        return false;
    }
    set_gripper_position(data.position_value_);
    return true;
}

bool GripperLogicControlPrivate::sync_force() {
    AbstractPackageData data;
    if (!read_back(parent_->gripper_protocol_->build_force_protocol(id_, false, 0),
                   GripperProtocol::PT_FORCE, data)) {
        return false;
    }
    set_gripper_force(data.force_value_);
    return true;
}

// Grippers without a unified force keep their closing force; nothing is read back.
bool GripperLogicControlPrivate::sync_closing_force() {
    return true;
}

bool GripperLogicControlPrivate::sync_speed() {
    AbstractPackageData data;
    if (!read_back(parent_->gripper_protocol_->build_speed_protocol(id_, false, 0),
                   GripperProtocol::PT_SPEED, data)) {
        return false;
    }
    set_gripper_speed(data.speed_value_);
    return true;
}

// The maximum current is left at the gripper's own setting; nothing is sent.
bool GripperLogicControlPrivate::limit_maximum_current() {
    return true;
}

void GripperLogicControlPrivate::set_gripper_position(int int_value) {
    const int maximum = get_int_position_max();
    if (int_value > maximum) {
        GRIPPER_LOG("W", "int_value > get_int_position_max()");
        int_value = maximum;
    }
    if (int_value < get_int_position_min()) {
        GRIPPER_LOG("W", "int_value < get_int_position_min()");
        int_value = get_int_position_min();
    }
    const float percent = static_cast<float>(int_value * 100.0 / maximum);
    if (std::fabs(percent - position_) < 1e-5f) {
        return;
    }
    position_ = percent;
    GRIPPER_LOG("D", "position_ = %f", static_cast<double>(position_));
    const float position = position_;
    publish_value(cached_position_, position);
    notify([this, position](GripperLogicControl::NotifyInterface* observer) {
        observer->on_position_changed(parent_, position);
    });
}

void GripperLogicControlPrivate::set_gripper_force(int force) {
    if (force == force_) {
        return;
    }
    force_ = force;
    publish_value(cached_force_, force);
    notify([this, force](GripperLogicControl::NotifyInterface* observer) {
        observer->on_force_changed(parent_, force);
    });
}

void GripperLogicControlPrivate::set_gripper_speed(int speed) {
    if (speed == speed_) {
        return;
    }
    speed_ = speed;
    publish_value(cached_speed_, speed);
    notify([this, speed](GripperLogicControl::NotifyInterface* observer) {
        observer->on_speed_changed(parent_, speed);
    });
}

// A value is published before its observers hear of it, so that a page redrawing on the
// notification reads it; the zeroes a read-back cycle reports first are not.
template <typename T>
void GripperLogicControlPrivate::publish_value(std::atomic<T>& cached, T value) {
    if (!zeroing_) {
        cached = value;
    }
}

void GripperLogicControlPrivate::publish_values() {
    if (zeroes_pending_) {
        return;
    }
    cached_position_ = position_;
    cached_force_ = force_;
    cached_speed_ = speed_;
}

bool GripperLogicControlPrivate::is_observer(GripperLogicControl::NotifyInterface* observer) {
    std::lock_guard<std::mutex> list_lock(notify_mutex_);
    return notify_interfaces_.end() !=
           std::find(notify_interfaces_.begin(), notify_interfaces_.end(), observer);
}

// Rotation is not driven by this system.
void GripperLogicControlPrivate::set_gripper_angle(int) {}
