#include "tools/gripper_simulator/gripper_model.h"

#include <algorithm>
#include <cstdlib>

namespace gripper_sim {
namespace {

constexpr int kSlowestSpeed = 20;
constexpr int kFastestSpeed = 100;

int sign(int value) {
    return (value > 0) - (value < 0);
}

}  // namespace

int modbus_motion_code(Motion motion) {
    switch (motion) {
        case Motion::moving:
            return 0;
        case Motion::arrived:
            return 1;
        case Motion::detected:
            return 2;
        case Motion::dropped:
            return 3;
    }
    return 0;
}

GripperModel::GripperModel(const GripperOptions& options)
    : position_max_(std::max(1, options.position_max)),
      init_ms_(std::max(0, options.init_ms)),
      full_stroke_ms_(std::max(0, options.full_stroke_ms)),
      travel_{0, 0, Clock::now(), 0.0} {
    object_ = options.object_at < 0 ? -1 : clamp_position(options.object_at);
}

void GripperModel::initialise() {
    std::lock_guard<std::mutex> lock(mutex_);
    const auto now = Clock::now();
    stop_at(now);
    target_ = travel_.to;
    init_requested_ = true;
    init_start_ = now;
    dropped_ = false;
}

bool GripperModel::initialised() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return initialised_at(Clock::now());
}

void GripperModel::set_target(int target) {
    std::lock_guard<std::mutex> lock(mutex_);
    const auto now = Clock::now();
    if (!initialised_at(now)) {
        return;
    }
    target_ = clamp_position(target);
    dropped_ = false;
    replan(now);
}

int GripperModel::target() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return target_;
}

int GripperModel::position() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return position_at(Clock::now());
}

Motion GripperModel::motion() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return motion_at(Clock::now());
}

void GripperModel::set_force(int force) {
    std::lock_guard<std::mutex> lock(mutex_);
    force_ = force;
}

int GripperModel::force() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return force_;
}

void GripperModel::set_speed(int speed) {
    std::lock_guard<std::mutex> lock(mutex_);
    speed_ = speed;
    if (!dropped_) {
        replan(Clock::now());
    }
}

int GripperModel::speed() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return speed_;
}

void GripperModel::set_slow(bool slow) {
    std::lock_guard<std::mutex> lock(mutex_);
    slow_ = slow;
    if (!dropped_) {
        replan(Clock::now());
    }
}

bool GripperModel::slow() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return slow_;
}

void GripperModel::set_angle(int angle) {
    std::lock_guard<std::mutex> lock(mutex_);
    angle_ = angle;
}

int GripperModel::angle() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return angle_;
}

void GripperModel::set_maximum_current(int current) {
    std::lock_guard<std::mutex> lock(mutex_);
    maximum_current_ = current;
}

int GripperModel::maximum_current() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return maximum_current_;
}

void GripperModel::set_object(int position) {
    std::lock_guard<std::mutex> lock(mutex_);
    const int object = position < 0 ? -1 : clamp_position(position);
    if (object == object_) {
        return;
    }
    object_ = object;
    approach_ = 0;
    if (!dropped_) {
        replan(Clock::now());
    }
}

bool GripperModel::drop() {
    std::lock_guard<std::mutex> lock(mutex_);
    const auto now = Clock::now();
    if (!held_at(now)) {
        return false;
    }
    stop_at(now);
    dropped_ = true;
    object_ = -1;
    return true;
}

GripperSnapshot GripperModel::snapshot() const {
    std::lock_guard<std::mutex> lock(mutex_);
    const auto now = Clock::now();
    return GripperSnapshot{position_at(now),
                           target_,
                           force_,
                           speed_,
                           initialised_at(now),
                           modbus_motion_code(motion_at(now)),
                           held_at(now),
                           0,
                           0,
                           0,
                           stroke_end().time_since_epoch().count()};
}

// The fingers reach the end of the travel when they have moved its whole span.
GripperModel::Clock::time_point GripperModel::stroke_end() const {
    const int span = std::abs(travel_.to - travel_.from);
    if (full_stroke_ms_ == 0 || span == 0 || travel_.units_per_ms <= 0.0) {
        return travel_.start;
    }
    return travel_.start +
           std::chrono::duration_cast<Clock::duration>(
               std::chrono::duration<double, std::milli>(span / travel_.units_per_ms));
}

bool GripperModel::initialised_at(Clock::time_point now) const {
    return init_requested_ && now - init_start_ >= std::chrono::milliseconds(init_ms_);
}

bool GripperModel::initialising_at(Clock::time_point now) const {
    return init_requested_ && !initialised_at(now);
}

int GripperModel::position_at(Clock::time_point now) const {
    const int span = std::abs(travel_.to - travel_.from);
    const double elapsed_ms =
        std::chrono::duration<double, std::milli>(now - travel_.start).count();
    const double moved = full_stroke_ms_ == 0 ? span : elapsed_ms * travel_.units_per_ms;
    const int step = moved >= span ? span : static_cast<int>(moved);
    return travel_.from + sign(travel_.to - travel_.from) * step;
}

Motion GripperModel::motion_at(Clock::time_point now) const {
    if (initialising_at(now)) {
        return Motion::moving;
    }
    if (dropped_) {
        return Motion::dropped;
    }
    if (position_at(now) != travel_.to) {
        return Motion::moving;
    }
    return blocked_ ? Motion::detected : Motion::arrived;
}

bool GripperModel::held_at(Clock::time_point now) const {
    return blocked_ && !dropped_ && position_at(now) == travel_.to;
}

void GripperModel::stop_at(Clock::time_point now) {
    const int position = position_at(now);
    travel_ = Travel{position, position, now, 0.0};
    blocked_ = false;
    approach_ = 0;
}

void GripperModel::replan(Clock::time_point now) {
    const int from = position_at(now);
    const int direction = sign(target_ - from);
    blocked_ = object_ahead(from, direction);
    if (blocked_) {
        approach_ = direction;
    }
    travel_ = Travel{from, blocked_ ? object_ : target_, now, units_per_ms()};
}

bool GripperModel::object_ahead(int from, int direction) const {
    if (object_ < 0 || direction == 0) {
        return false;
    }
    // Fingers resting on the object and still pushing the same way stay on it.
    const bool ahead =
        (object_ - from) * direction > 0 || (object_ == from && approach_ == direction);
    return ahead && (target_ - object_) * direction >= 0;
}

double GripperModel::units_per_ms() const {
    const int speed =
        slow_ ? kSlowestSpeed : std::min(std::max(speed_, kSlowestSpeed), kFastestSpeed);
    if (full_stroke_ms_ == 0) {
        return 0.0;
    }
    return static_cast<double>(position_max_) * speed / (100.0 * full_stroke_ms_);
}

int GripperModel::clamp_position(int position) const {
    return std::min(std::max(position, 0), position_max_);
}

}  // namespace gripper_sim
