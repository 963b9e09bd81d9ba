#ifndef TESTS_TEST_SUPPORT_RECORDING_OBSERVER_H
#define TESTS_TEST_SUPPORT_RECORDING_OBSERVER_H

#include <algorithm>
#include <mutex>
#include <string>
#include <vector>

#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control.h"

// Records every notification of a driver as a text such as "GS_MOVING", "CS_CONNECTED",
// "position 50.0", "force 40" or "speed 80", in the order they came, from any thread.
class RecordingObserver : public GripperLogicControl::NotifyInterface {
public:
    void on_communication_status_changed(
        GripperLogicControl*, GripperCommunication::CommunicationStatus status) override {
        record(GripperCommunication::communication_status_to_string(status));
    }
    void on_gripper_move_status_changed(GripperLogicControl*,
                                        GripperLogicControl::GripperStatus status) override {
        record(GripperLogicControl::gripper_status_to_string(status));
    }
    void on_gripper_turn_status_changed(GripperLogicControl*,
                                        GripperLogicControl::GripperStatus status) override {
        record("turn " + GripperLogicControl::gripper_status_to_string(status));
    }
    void on_position_changed(GripperLogicControl*, float position) override {
        char text[32];
        snprintf(text, sizeof(text), "position %.1f", static_cast<double>(position));
        record(text);
    }
    void on_force_changed(GripperLogicControl*, int force) override {
        record("force " + std::to_string(force));
    }
    void on_speed_changed(GripperLogicControl*, int speed) override {
        record("speed " + std::to_string(speed));
    }
    void on_angle_changed(GripperLogicControl*, int angle) override {
        record("angle " + std::to_string(angle));
    }

    std::vector<std::string> events() const {
        std::lock_guard<std::mutex> lock(mutex_);
        return events_;
    }
    long count(const std::string& event) const {
        std::lock_guard<std::mutex> lock(mutex_);
        return std::count(events_.begin(), events_.end(), event);
    }
    bool seen(const std::string& event) const { return count(event) > 0; }
    void clear() {
        std::lock_guard<std::mutex> lock(mutex_);
        events_.clear();
    }

private:
    void record(const std::string& event) {
        std::lock_guard<std::mutex> lock(mutex_);
        events_.push_back(event);
    }

    mutable std::mutex mutex_;
    std::vector<std::string> events_;
};

#endif
