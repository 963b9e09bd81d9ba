#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control_private.h"
#include "gripper/gripper_business_logic/gripper_logic_control/gripper_operation_lock.h"
#include "gripper/gripper_common/enum_name_map/enum_name_map.h"
#include "gripper/gripper_common/simple_logger/simple_logger.h"

namespace {

typedef std::lock_guard<GripperDriverMutex> DriverLock;

std::atomic<int> s_live_count(0);

struct Static {
    std::map<GripperLogicControl::GripperStatus, std::string> map_gripper_status_{
        {GripperLogicControl::GS_UNDEFINE, "GS_UNDEFINE"},
        {GripperLogicControl::GS_INACTIVATE, "GS_INACTIVATE"},
        {GripperLogicControl::GS_ACTIVATING, "GS_ACTIVATING"},
        {GripperLogicControl::GS_ACTIVATED, "GS_ACTIVATED"},
        {GripperLogicControl::GS_MOVING, "GS_MOVING"},
        {GripperLogicControl::GS_TURNING, "GS_TURNING"},
        {GripperLogicControl::GS_ARRIVED, "GS_ARRIVED"},
        {GripperLogicControl::GS_DETECTED, "GS_DETECTED"},
        {GripperLogicControl::GS_DROPPED, "GS_DROPPED"},
    };
};

const Static& statics() {
    static const Static instance;
    return instance;
}

// Statuses in which an activation may be started.
bool accepts_activation(GripperLogicControl::GripperStatus status) {
    return GripperLogicControl::GS_INACTIVATE == status ||
           GripperLogicControl::GS_ACTIVATED == status ||
           GripperLogicControl::GS_ARRIVED == status ||
           GripperLogicControl::GS_DETECTED == status || GripperLogicControl::GS_DROPPED == status;
}

}  // namespace

GripperLogicControl::NotifyInterface::~NotifyInterface() {}

GripperLogicControl::GripperLogicControl()
    : gripper_protocol_(nullptr), private_(new GripperLogicControlPrivate(this)) {
    ++s_live_count;
}

GripperLogicControl::~GripperLogicControl() {
    --s_live_count;
    delete gripper_protocol_;
    gripper_protocol_ = nullptr;
}

bool GripperLogicControl::handshake() {
    GripperOperationLock lock(*private_);
    if (!private_->choose_protocol()) {
        return false;
    }
    if (INVALID_ID == private_->id_) {
        if (0 == gripper_protocol_->get_protocol_type() && !private_->sync_id()) {
            GRIPPER_LOG("E", "!private_->sync_id()");
            return false;
        }
        if (INVALID_ID == private_->id_) {
            GRIPPER_LOG("E", "INVALID_ID == private_->id_");
            return false;
        }
    }
    if (!private_->sync_version()) {
        GRIPPER_LOG("E", "!private_->sync_version()");
        return false;
    }
    if (0 == private_->model_series_ && !private_->sync_model()) {
        GRIPPER_LOG("E", "!private_->sync_model()");
        return false;
    }
    if (-1 == private_->maximum_current_) {
        return true;
    }
    if (!private_->limit_maximum_current()) {
        GRIPPER_LOG("E", "!private_->limit_maximum_current()");
        return false;
    }
    return true;
}

bool GripperLogicControl::sync() {
    GripperOperationLock lock(*private_);
    if (!private_->sync_values()) {
        return false;
    }
    private_->zeroes_pending_ = false;
    return true;
}

bool GripperLogicControl::set_activate() {
    GripperOperationLock lock(*private_);
    if (!accepts_activation(get_gripper_status())) {
        GRIPPER_LOG("W", "get_gripper_status() = %s",
                    gripper_status_to_string(get_gripper_status()).c_str());
        return false;
    }
    private_->initialize_ = 0;
    if (!private_->command(gripper_protocol_->build_initialize_protocol(private_->id_, true))) {
        return false;
    }
    set_gripper_status(GS_ACTIVATING);
    return true;
}

bool GripperLogicControl::set_position(float position) {
    GripperOperationLock lock(*private_);
    if (!std::isfinite(position)) {
        // The clamp below keeps NaN, which would round to register 0: a full stroke.
        GRIPPER_LOG("W", "!std::isfinite(position)");
        return false;
    }
    if (!private_->accepts_motion_command()) {
        return false;
    }
    const float clamped = std::min(std::max(position, get_position_min()), get_position_max());
    const int value = static_cast<int>(
        std::lround(clamped / 100.0 * static_cast<double>(private_->get_int_position_max())));
    if (!private_->command(
            gripper_protocol_->build_position_protocol(private_->id_, true, value))) {
        return false;
    }
    set_gripper_status(GS_MOVING);
    private_->move_pending_ = true;
    // The loop follows the move at its own pace from now on.
    private_->wake_loop();
    return true;
}

bool GripperLogicControl::set_position_min() {
    return set_position(get_position_min());
}

bool GripperLogicControl::set_position_max() {
    return set_position(get_position_max());
}

bool GripperLogicControl::set_force(int force) {
    GripperOperationLock lock(*private_);
    if (!private_->accepts_motion_command()) {
        return false;
    }
    const int value = std::min(std::max(force, get_force_min()), get_force_max());
    const uint8_t id = private_->id_;
    const bool unify = support_unify_force();
    if (!private_->command(
            unify ? gripper_protocol_->build_force_protocol(id, true, value)
                  : gripper_protocol_->build_closing_force_protocol(id, true, value))) {
        return false;
    }
    if (unify && !private_->sync_force()) {
        GRIPPER_LOG("E", "!private_->sync_force()");
        return false;
    }
    if (!unify && !private_->sync_closing_force()) {
        GRIPPER_LOG("E", "!private_->sync_closing_force()");
        return false;
    }
    return true;
}

bool GripperLogicControl::set_force_min() {
    return set_force(get_force_min());
}

bool GripperLogicControl::set_force_max() {
    return set_force(get_force_max());
}

bool GripperLogicControl::set_speed(int speed) {
    GripperOperationLock lock(*private_);
    if (!private_->accepts_motion_command()) {
        return false;
    }
    const int value = std::min(std::max(speed, get_speed_min()), get_speed_max());
    if (!private_->command(gripper_protocol_->build_speed_protocol(private_->id_, true, value))) {
        return false;
    }
    if (!private_->sync_speed()) {
        // The speed read-back keeps the force read-back's message.
        GRIPPER_LOG("E", "!private_->sync_force()");
        return false;
    }
    return true;
}

bool GripperLogicControl::set_speed_min() {
    return set_speed(get_speed_min());
}

bool GripperLogicControl::set_speed_max() {
    return set_speed(get_speed_max());
}

float GripperLogicControl::get_position() const {
    DriverLock lock(private_->mutex_);
    return private_->position_;
}

int GripperLogicControl::get_force() {
    DriverLock lock(private_->mutex_);
    return private_->force_;
}

int GripperLogicControl::get_speed() {
    DriverLock lock(private_->mutex_);
    return private_->speed_;
}

float GripperLogicControl::cached_position() const {
    return private_->cached_position_;
}

int GripperLogicControl::cached_force() const {
    return private_->cached_force_;
}

int GripperLogicControl::cached_speed() const {
    return private_->cached_speed_;
}

GripperLogicControl::GripperStatus GripperLogicControl::get_gripper_status() const {
    return private_->gripper_status_;
}

bool GripperLogicControl::takes_commands() const {
    switch (get_gripper_status()) {
        case GS_ACTIVATED:
        case GS_MOVING:
        case GS_ARRIVED:
        case GS_DETECTED:
        case GS_DROPPED:
            return true;
        default:
            return false;
    }
}

GripperCommunication::CommunicationStatus GripperLogicControl::get_communication_status() const {
    return private_->communication_status_;
}

int32_t GripperLogicControl::get_model_series() const {
    return private_->model_series_;
}

int GripperLogicControl::protocol_type() const {
    DriverLock lock(private_->mutex_);
    return nullptr == gripper_protocol_ ? -1 : gripper_protocol_->get_protocol_type();
}

std::vector<uint8_t> GripperLogicControl::get_version() const {
    DriverLock lock(private_->mutex_);
    return private_->version_;
}

int GripperLogicControl::lock_waiters() const {
    return private_->mutex_.waiters();
}

void GripperLogicControl::add_notify_interface(NotifyInterface* notify) {
    std::lock_guard<std::mutex> list_lock(private_->notify_mutex_);
    auto& observers = private_->notify_interfaces_;
    if (observers.end() == std::find(observers.begin(), observers.end(), notify)) {
        observers.push_back(notify);
    }
}

void GripperLogicControl::remove_notify_interface(NotifyInterface* notify) {
    DriverLock lock(private_->mutex_);
    std::lock_guard<std::mutex> list_lock(private_->notify_mutex_);
    auto& observers = private_->notify_interfaces_;
    auto iter = std::find(observers.begin(), observers.end(), notify);
    if (observers.end() != iter) {
        observers.erase(iter);
    }
}

void GripperLogicControl::detach_notify_interface(NotifyInterface* notify) {
    std::lock_guard<std::mutex> list_lock(private_->notify_mutex_);
    auto& observers = private_->notify_interfaces_;
    observers.erase(std::remove(observers.begin(), observers.end(), notify), observers.end());
}

int GripperLogicControl::live_count() {
    return s_live_count.load();
}

void GripperLogicControl::tear_down() {
    GripperOperationLock lock(*private_);
    stop_loop_update();
    private_->recovery_.end();
    set_gripper_status(GS_UNDEFINE);
    set_communication_status(CS_DISCONNECTED);
    close();
}

void GripperLogicControl::set_gripper_communication(GripperCommunication* communication) {
    private_->communication_ = communication;
}

std::string GripperLogicControl::gripper_status_to_string(GripperStatus status) {
    return enum_name_of(statics().map_gripper_status_, status);
}

GripperLogicControl::GripperStatus GripperLogicControl::string_to_gripper_status(
    const std::string& text) {
    return enum_value_of(statics().map_gripper_status_, text);
}
