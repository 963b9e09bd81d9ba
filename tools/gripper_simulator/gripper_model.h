#ifndef TOOLS_GRIPPER_SIMULATOR_GRIPPER_MODEL_H
#define TOOLS_GRIPPER_SIMULATOR_GRIPPER_MODEL_H

#include <chrono>
#include <mutex>

#include "tools/gripper_simulator/types.h"

namespace gripper_sim {

enum class Motion { moving, arrived, detected, dropped };

// The motion state as the Modbus register 0x0201 codes it: 0 moving, 1 arrived, 2 detected,
// 3 dropped.
int modbus_motion_code(Motion motion);

// The mechanics of one gripper: initialisation, finger travel, contact with an object and its
// loss. Positions are register values (0 .. position_max) computed from the monotonic clock when
// they are asked for, so nothing has to tick. Thread-safe.
class GripperModel {
public:
    using Clock = std::chrono::steady_clock;

    explicit GripperModel(const GripperOptions& options);

    // Starts (or restarts) the initialisation; it ends init_ms later. Stops the fingers.
    void initialise();
    bool initialised() const;
    // Moves the fingers towards `target` (clamped to the stroke); ignored until initialised.
    void set_target(int target);
    int target() const;
    int position() const;
    Motion motion() const;
    void set_force(int force);
    int force() const;
    void set_speed(int speed);
    int speed() const;
    // Slow mode moves at the lowest speed whatever the speed setting.
    void set_slow(bool slow);
    bool slow() const;
    void set_angle(int angle);
    int angle() const;
    void set_maximum_current(int current);
    int maximum_current() const;
    // Places an object at `position` (-1 removes it); fingers on their way stop there.
    void set_object(int position);
    // Loses the held object: the fingers stay, the state becomes dropped and the object is
    // gone. False when nothing is held.
    bool drop();
    // Everything but the frame counters.
    GripperSnapshot snapshot() const;

private:
    struct Travel {
        int from;
        int to;
        Clock::time_point start;
        double units_per_ms;
    };

    Clock::time_point stroke_end() const;
    bool initialised_at(Clock::time_point now) const;
    bool initialising_at(Clock::time_point now) const;
    int position_at(Clock::time_point now) const;
    Motion motion_at(Clock::time_point now) const;
    bool held_at(Clock::time_point now) const;
    void stop_at(Clock::time_point now);
    void replan(Clock::time_point now);
    bool object_ahead(int from, int direction) const;
    double units_per_ms() const;
    int clamp_position(int position) const;

    const int position_max_;
    const int init_ms_;
    const int full_stroke_ms_;
    mutable std::mutex mutex_;
    bool init_requested_ = false;
    Clock::time_point init_start_;
    Travel travel_;
    int target_ = 0;
    int force_ = 100;
    int speed_ = 100;
    int angle_ = 0;
    int maximum_current_ = 0;
    bool slow_ = false;
    int object_ = -1;
    int approach_ = 0;      // direction in which the fingers met the object; 0 while not in contact
    bool blocked_ = false;  // the current travel ends on the object
    bool dropped_ = false;
};

}  // namespace gripper_sim

#endif
