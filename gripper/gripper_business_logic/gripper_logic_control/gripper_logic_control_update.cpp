// The update thread and the operations around it: start and stop, pacing, update cycles,
// motion feedback and status setters.
#include <errno.h>
#include <sched.h>

#include <chrono>

#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control.h"
#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control_private.h"
#include "gripper/gripper_common/miscellaneous_utility/miscellaneous_utility.h"
#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "gripper/gripper_protocol/gripper_custom_protocol/gripper_custom_protocol.h"

namespace {

typedef std::lock_guard<GripperDriverMutex> DriverLock;

const int32_t FAST_PERIOD = GripperLogicControl::DEFAULT_MOVE_PERIOD;
const int32_t SLOW_PERIOD = 1000;
const int32_t EXCEPTION_REPORT_INTERVAL = 3000;
// No pass of an exchange after this one waits for its answer.
const int LAST_AWAITED_PASS = 3;

// Milliseconds from since to now on the wrapping 32-bit clock.
int32_t elapsed_millis(int32_t now, int32_t since) {
    return static_cast<int32_t>(static_cast<uint32_t>(now) - static_cast<uint32_t>(since));
}

int32_t now_millis() {
    return MiscellaneousUtility::current_time_millis();
}

bool wait_semaphore(sem_t* semaphore) {
    int result = 0;
    do {
        result = sem_wait(semaphore);
    } while (0 != result && EINTR == errno);
    return 0 == result;
}

}  // namespace

void GripperLogicControl::start_loop_update() {
    DriverLock lock(private_->mutex_);
    if (private_->thread_start_) {
        GRIPPER_LOG("W", "private_->thread_start_");
        return;
    }
    if (0 != pthread_create(&private_->thread_, NULL, GripperLogicControlPrivate::thread_entry,
                            private_.get())) {
        GRIPPER_LOG("E",
                    "0 != pthread_create(&private_->thread_, NULL, "
                    "GripperLogicControlPrivate::thread_entry, private_.get())");
        return;
    }
    if (0 != pthread_detach(private_->thread_)) {
        GRIPPER_LOG("E", "0 != pthread_detach(private_->thread_)");
        return;
    }
    if (!wait_semaphore(&private_->semaphore_)) {
        GRIPPER_LOG("E", "0 != sem_wait(&(private_->semaphore_))");
        return;
    }
    private_->thread_start_ = true;
}

// The update thread never blocks on the lock while the loop is being stopped (it gives up a
// cycle it has not begun), so a stop can wait for the thread's end with the lock held and the
// loop has ended before the caller goes on to close the link.
void GripperLogicControl::stop_loop_update() {
    DriverLock lock(private_->mutex_);
    if (!private_->thread_start_) {
        GRIPPER_LOG("W", "private_->thread_start_");
        return;
    }
    private_->thread_loop_ = false;
    private_->wake_loop();
    if (pthread_equal(pthread_self(), private_->thread_)) {
        // Stopped from inside a cycle: the loop ends after it, there is nothing to wait for here.
        GRIPPER_LOG("W", "pthread_equal(pthread_self(), private_->thread_)");
        return;
    }
    if (!wait_semaphore(&private_->semaphore_)) {
        GRIPPER_LOG("E", "0 != sem_wait(&(private_->semaphore_))");
        return;
    }
    private_->thread_start_ = false;
}

bool GripperLogicControl::occur_exception() {
    switch (private_->communication_status_.load()) {
        case CS_WRITE_EXCEPTION:
        case CS_ALIVE_EXCEPTION:
        case CS_VERSION_EXCEPTION:
        case CS_DEVICE_EXCEPTION:
            return true;
        default:
            return false;
    }
}

void GripperLogicControl::set_communication_status(CommunicationStatus status) {
    if (status == private_->communication_status_.exchange(status)) {
        return;
    }
    GRIPPER_LOG("D", "private_->communication_status_ = %s",
                communication_status_to_string(status).c_str());
    // The loop pauses without cycles while the link is broken, and cycles again once it is not.
    private_->wake_loop();
    private_->notify([this, status](NotifyInterface* observer) {
        observer->on_communication_status_changed(this, status);
    });
}

void GripperLogicControl::set_gripper_status(GripperStatus status) {
    if (status == private_->gripper_status_.exchange(status)) {
        return;
    }
    GRIPPER_LOG("D", "private_->gripper_status_ = %s", gripper_status_to_string(status).c_str());
    private_->notify([this, status](NotifyInterface* observer) {
        observer->on_gripper_move_status_changed(this, status);
    });
}

bool GripperLogicControl::buffer_drop() {
    DriverLock lock(private_->mutex_);
    const int length = private_->communication_->available();
    if (length <= 0) {
        return true;
    }
    private_->discarding_ = true;
    const std::vector<uint8_t> drop_byte = private_->communication_->read(length);
    private_->discarding_ = false;
    if (drop_byte.empty()) {
        GRIPPER_LOG("W", "0 == drop_byte.size()");
        return false;
    }
    GRIPPER_LOG("W", "drop_byte = %s", MiscellaneousUtility::convert_hex_binary(drop_byte).c_str());
    take_dropped_feedback(drop_byte);
    return true;
}

bool GripperLogicControl::discarding_stale_bytes() const {
    return private_->discarding_;
}

bool GripperLogicControl::retry_cap_reached(int count) {
    if (count <= LAST_AWAITED_PASS) {
        return false;
    }
    GRIPPER_LOG("W", "count > 3");
    keep_failure(GripperLinkFailure::LF_TIMEOUT, 0, "count > 3");
    return true;
}

void GripperLogicControl::report_exhaustion() {
    if (private_->first_exhaustion_.exchange(false)) {
        set_communication_status(CS_READ_EXCEPTION);
    }
}

bool GripperLogicControl::take_dropped_feedback(const std::vector<uint8_t>& byte_stream) {
    if (!private_->uses_custom_protocol() ||
        !GripperCustomProtocol::contains_dropped_feedback(private_->id_, byte_stream)) {
        return false;
    }
    GRIPPER_LOG("W", "dropped feedback = %s",
                MiscellaneousUtility::convert_hex_binary(byte_stream).c_str());
    if (private_->may_hold_object()) {
        // The next cycle acknowledges it, as after a frame between cycles.
        set_gripper_status(GS_DROPPED);
    } else {
        GRIPPER_LOG("W", "get_gripper_status() = %s",
                    gripper_status_to_string(get_gripper_status()).c_str());
    }
    return true;
}

// A loop stopped from inside its own cycle was not waited for: its thread ends after that cycle,
// and the driver must not go away before.
void GripperLogicControl::finish_loop_update() {
    if (!private_->thread_start_) {
        return;
    }
    if (pthread_equal(pthread_self(), private_->thread_)) {
        GRIPPER_LOG("E", "pthread_equal(pthread_self(), private_->thread_)");
        return;
    }
    stop_loop_update();
}

void* GripperLogicControlPrivate::thread_entry(void* private_part) {
    GripperLogicControlPrivate* self = static_cast<GripperLogicControlPrivate*>(private_part);
    sem_post(&self->semaphore_);
    while (self->thread_loop_) {
        if (self->check_update()) {
            // What a cycle reads stays allocated until the cycle ends.
            const ObjectKeeper::Section section;
            self->update();
            sched_yield();
        }
    }
    // Nothing of the driver may be touched after this post: the stopping thread goes on.
    sem_post(&self->semaphore_);
    return nullptr;
}

bool GripperLogicControlPrivate::check_update() {
    const int32_t now = now_millis();
    const int32_t elapsed = elapsed_millis(now, last_update_time_);
    if (heal_link()) {
        return false;
    }
    if (parent_->occur_exception()) {
        // No cycle while the link is broken; say so every few seconds.
        if (elapsed > EXCEPTION_REPORT_INTERVAL) {
            GRIPPER_LOG("E", "parent_->occur_exception()");
            last_update_time_ = now;
        }
        pause_loop(EXCEPTION_REPORT_INTERVAL - elapsed_millis(now, last_update_time_) + 1);
        return false;
    }
    update_interval_ = pending_interval();
    if (elapsed > update_interval_) {
        last_update_time_ = now;
        return true;
    }
    pause_loop(update_interval_ - elapsed + 1);
    return false;
}

// As specified, a pending move is followed at the fast period only once the gripper has rested
// arrived through a cycle; a faster choice follows every pending move from its command on. A
// cycle is due once more than the interval has passed, so a faster choice is given as one
// millisecond less: its cycles start the chosen period apart.
int32_t GripperLogicControlPrivate::pending_interval() const {
    if (!move_pending_) {
        return SLOW_PERIOD;
    }
    const int32_t chosen = move_period_;
    if (FAST_PERIOD != chosen) {
        return chosen - 1;
    }
    return arrived_seen_ ? FAST_PERIOD : SLOW_PERIOD;
}

// Sleeps until the next cycle is due, unless a stop or a change of pacing wakes the loop first.
void GripperLogicControlPrivate::pause_loop(int32_t millis) {
    std::unique_lock<std::mutex> lock(loop_mutex_);
    loop_signal_.wait_for(lock, std::chrono::milliseconds(millis),
                          [this] { return !thread_loop_ || loop_woken_; });
    loop_woken_ = false;
}

void GripperLogicControlPrivate::wake_loop() {
    {
        std::lock_guard<std::mutex> lock(loop_mutex_);
        loop_woken_ = true;
    }
    loop_signal_.notify_all();
    // A cycle waiting for the driver lock gives up when the loop is being stopped.
    mutex_.wake_waiters();
}

void GripperLogicControlPrivate::update() {
    if (!lock_for_cycle()) {
        return;
    }
    std::lock_guard<GripperDriverMutex> lock(mutex_, std::adopt_lock);
    const GripperLogicControl::GripperStatus status = gripper_status_;
    if (run_cycle_for(status) &&
        (GripperLogicControl::GS_ARRIVED == status || GripperLogicControl::GS_DETECTED == status)) {
        move_pending_ = false;
    }
    publish_values();
}

// Takes the driver lock for a cycle, giving up when the loop is stopped meanwhile.
bool GripperLogicControlPrivate::lock_for_cycle() {
    return mutex_.lock_unless([this] { return !thread_loop_; });
}

bool GripperLogicControlPrivate::run_cycle_for(GripperLogicControl::GripperStatus status) {
    switch (status) {
        case GripperLogicControl::GS_INACTIVATE:
        case GripperLogicControl::GS_ACTIVATING:
        case GripperLogicControl::GS_ACTIVATED:
            if (!parent_->sync()) {
                GRIPPER_LOG("E", "!parent_->sync()");
                return false;
            }
            return true;
        case GripperLogicControl::GS_MOVING:
            if (!sync_move_feedback()) {
                GRIPPER_LOG("E", "!sync_move_feedback()");
                return false;
            }
            return sync_position_in_cycle();
        case GripperLogicControl::GS_ARRIVED:
            arrived_seen_ = true;
            return follow_move();
        case GripperLogicControl::GS_DETECTED:
            return follow_move();
        case GripperLogicControl::GS_DROPPED:
            return follow_drop();
        default:
            return false;
    }
}

// After a move: watch for an object being detected or lost, and read the position.
bool GripperLogicControlPrivate::follow_move() {
    if (uses_custom_protocol()) {
        unactivate_feedback();
    } else if (!sync_move_feedback()) {
        GRIPPER_LOG("E", "!sync_move_feedback()");
        return false;
    }
    return sync_position_in_cycle();
}

bool GripperLogicControlPrivate::follow_drop() {
    if (uses_custom_protocol()) {
        if (!stop_current_dropped_feedback()) {
            GRIPPER_LOG("E", "!stop_current_dropped_feedback()");
            return false;
        }
    } else if (!sync_move_feedback()) {
        GRIPPER_LOG("E", "!sync_move_feedback()");
        return false;
    }
    return sync_position_in_cycle();
}

bool GripperLogicControlPrivate::sync_position_in_cycle() {
    if (!sync_position()) {
        GRIPPER_LOG("E", "!sync_position()");
        return false;
    }
    return true;
}

bool GripperLogicControlPrivate::sync_move_feedback() {
    AbstractPackageData data;
    if (!read_back(parent_->gripper_protocol_->build_move_feedback_protocol(id_),
                   GripperProtocol::PT_MOVE_FEEDBACK, data)) {
        return false;
    }
    if (uses_custom_protocol() && GripperLogicControl::GS_DROPPED == gripper_status_) {
        // A dropped frame taken during this read stands: these answers cannot tell of a drop.
        return true;
    }
    switch (data.feedback_) {
        case GripperProtocol::F_MOVING:
            parent_->set_gripper_status(GripperLogicControl::GS_MOVING);
            break;
        case GripperProtocol::F_ARRIVED:
            parent_->set_gripper_status(GripperLogicControl::GS_ARRIVED);
            break;
        case GripperProtocol::F_DETECTED:
            parent_->set_gripper_status(GripperLogicControl::GS_DETECTED);
            break;
        case GripperProtocol::F_DROPPED:
            parent_->set_gripper_status(GripperLogicControl::GS_DROPPED);
            break;
        default:
            break;
    }
    return true;
}

// Collects the frame a custom gripper sends by itself when a held object is lost.
void GripperLogicControlPrivate::unactivate_feedback() {
    if (1 != initialize_) {
        GRIPPER_LOG("W", "1 != initialize_");
        return;
    }
    if (GripperLogicControl::GS_DETECTED != parent_->get_gripper_status()) {
        GRIPPER_LOG(
            "W",
            "GripperLogicControl::GripperStatus::GS_DETECTED != parent_->get_gripper_status()");
        GRIPPER_LOG(
            "W", "parent_->get_gripper_status() = %s",
            GripperLogicControl::gripper_status_to_string(parent_->get_gripper_status()).c_str());
        return;
    }
    GripperProtocol* protocol = parent_->gripper_protocol_;
    if (!uses_custom_protocol() || communication_->available() < protocol->get_package_length()) {
        return;
    }
    const std::vector<uint8_t> read_byte_stream =
        communication_->read(protocol->get_package_length());
    if (read_byte_stream.empty()) {
        GRIPPER_LOG("E", "0 == read_byte_stream.size()");
        return;
    }
    if (static_cast<int>(read_byte_stream.size()) != protocol->get_package_length()) {
        GRIPPER_LOG("W",
                    "static_cast<int>(read_byte_stream.size()) != "
                    "parent_->gripper_protocol_->get_package_length()");
        GRIPPER_LOG("W", "read_byte_stream.size() = %d", static_cast<int>(read_byte_stream.size()));
        GRIPPER_LOG("W", "parent_->gripper_protocol_->get_package_length() = %d",
                    protocol->get_package_length());
        return;
    }
    const AbstractPackageData data = protocol->parse_get_normal_package(
        id_, GripperProtocol::PT_STOP_CURRENT_FEEDBACK, read_byte_stream);
    if (GripperProtocol::PT_UNDEFINE == data.package_type_) {
        GRIPPER_LOG("W",
                    "GripperProtocol::PackageType::PT_UNDEFINE == "
                    "abstract_package_data.package_type_");
        return;
    }
    if (GripperProtocol::F_DROPPED == data.feedback_) {
        parent_->set_gripper_status(GripperLogicControl::GS_DROPPED);
    } else {
        GRIPPER_LOG("E", "unknown abstract_package_data.feedback_ = %d",
                    static_cast<int>(data.feedback_));
    }
}

// Acknowledges a dropped object to a custom gripper, which echoes the acknowledgement.
bool GripperLogicControlPrivate::stop_current_dropped_feedback() {
    if (1 != initialize_) {
        GRIPPER_LOG("W", "1 != initialize_");
        return false;
    }
    GripperCustomProtocol* protocol =
        dynamic_cast<GripperCustomProtocol*>(parent_->gripper_protocol_);
    if (nullptr == protocol) {
        GRIPPER_LOG("W", "NULL == parent_->gripper_protocol_");
        return false;
    }
    const std::vector<uint8_t> byte_stream =
        protocol->build_stop_current_droped_feedback_protocol(id_);
    const std::vector<uint8_t> read_byte_stream =
        communication_->write_read(false, protocol->get_package_length(), byte_stream);
    if (read_byte_stream.empty()) {
        GRIPPER_LOG("E", "0 == readbyte_stream.size()");
        GRIPPER_LOG("E", "byte_stream = %s",
                    MiscellaneousUtility::convert_hex_binary(byte_stream).c_str());
    }
    if (read_byte_stream == byte_stream) {
        return true;
    }
    GRIPPER_LOG("W", "read_byte_stream != byte_stream");
    GRIPPER_LOG("W", "readbyte_stream = %s",
                MiscellaneousUtility::convert_hex_binary(read_byte_stream).c_str());
    GRIPPER_LOG("W", "byte_stream = %s",
                MiscellaneousUtility::convert_hex_binary(byte_stream).c_str());
    return false;
}
