// Automatic reconnect and the choice of the update period while a move is pending.
#include <mutex>

#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control.h"
#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control_private.h"
#include "gripper/gripper_common/miscellaneous_utility/miscellaneous_utility.h"
#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "gripper/gripper_common/simple_logger/simple_logger_quiet.h"

namespace {

typedef std::lock_guard<GripperDriverMutex> DriverLock;

const int32_t FASTER_MOVE_PERIODS[] = {50, 20};

int32_t now_millis() {
    return MiscellaneousUtility::current_time_millis();
}

}  // namespace

const int32_t GripperLogicControl::DEFAULT_MOVE_PERIOD;

void GripperLogicControl::set_reconnect(bool enabled) {
    private_->recovery_.set_enabled(enabled);
    private_->wake_loop();
}

bool GripperLogicControl::reconnect() const {
    return private_->recovery_.enabled();
}

bool GripperLogicControl::reconnecting() const {
    return private_->recovery_.reconnecting();
}

int GripperLogicControl::reconnect_tries() const {
    return private_->recovery_.tries();
}

void GripperLogicControl::set_link_parameters(const std::vector<std::string>& parameters) {
    DriverLock lock(private_->mutex_);
    private_->recovery_.set_parameters(parameters);
}

bool GripperLogicControl::set_move_period(int32_t millis) {
    bool known = DEFAULT_MOVE_PERIOD == millis;
    for (int32_t period : FASTER_MOVE_PERIODS) {
        known = known || period == millis;
    }
    if (!known) {
        GRIPPER_LOG("W", "unknown move period = %d", millis);
        return false;
    }
    private_->move_period_ = millis;
    private_->wake_loop();
    return true;
}

int32_t GripperLogicControl::move_period() const {
    return private_->move_period_;
}

bool GripperLogicControlPrivate::heal_link() {
    if (!recovery_.enabled()) {
        return false;
    }
    if (!recovery_.active()) {
        return notice_failure();
    }
    const int32_t wait = recovery_.wait_before_try(now_millis());
    if (wait > 0) {
        pause_loop(wait);
        return true;
    }
    try_reconnect();
    return true;
}

// Looks at the link between cycles; a driver busy with a command is looked at next time.
bool GripperLogicControlPrivate::notice_failure() {
    if (!mutex_.try_lock()) {
        return false;
    }
    DriverLock lock(mutex_, std::adopt_lock);
    if (!link_failed()) {
        return false;
    }
    begin_recovery();
    return true;
}

bool GripperLogicControlPrivate::link_failed() {
    return recovery_.exchanges_unanswered() || parent_->occur_exception() ||
           byte_arrival_.hung_up();
}

// A blocking move waiting on this gripper ends as for a lost gripper: its status is undefined.
void GripperLogicControlPrivate::begin_recovery() {
    GRIPPER_LOG("W", "link lost: reconnecting");
    recovery_.begin(now_millis());
    move_pending_ = false;
    parent_->set_gripper_status(GripperLogicControl::GS_UNDEFINE);
    parent_->set_communication_status(GripperCommunication::CS_DISCONNECTED);
    parent_->close();
}

// One try with the steps of a connect. Its own failures stay out of the log: the tries are
// reported in groups.
void GripperLogicControlPrivate::try_reconnect() {
    if (!lock_for_cycle()) {
        return;
    }
    DriverLock lock(mutex_, std::adopt_lock);
    recovery_.try_started(now_millis());
    // The status stays CS_DISCONNECTED; told again, the pages show the new count of tries.
    notify([this](GripperLogicControl::NotifyInterface* observer) {
        observer->on_communication_status_changed(parent_, GripperCommunication::CS_DISCONNECTED);
    });
    if (!reopen()) {
        if (recovery_.try_failed()) {
            GRIPPER_LOG("W", "reconnect tries %d to %d failed", recovery_.report_from(),
                        recovery_.tries());
        }
        return;
    }
    GRIPPER_LOG("W", "reconnected after %d tries", recovery_.tries());
    last_update_time_ = now_millis();
    recovery_.end();
    parent_->set_communication_status(GripperCommunication::CS_CONNECTED);
}

bool GripperLogicControlPrivate::reopen() {
    const SimpleLoggerQuiet quiet;
    if (parent_->open(recovery_.parameters()) && parent_->handshake() &&
        parent_->handshake_check() && parent_->sync()) {
        return true;
    }
    parent_->close();
    parent_->set_gripper_status(GripperLogicControl::GS_UNDEFINE);
    parent_->set_communication_status(GripperCommunication::CS_DISCONNECTED);
    return false;
}
