#ifndef TESTS_TEST_SUPPORT_RECORDING_OBSERVER_H
#define TESTS_TEST_SUPPORT_RECORDING_OBSERVER_H

#include <algorithm>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "gripper/gripper_business_logic/gripper_connection_manager/gripper_connection_manager.h"

// Records in one sequence, from any thread, the notifications of the drivers and of the connection
// manager it observes, each as a text with the driver it names: "CS_CONNECTED", "GS_MOVING",
// "turn GS_ARRIVED", "create", "destroy", "scan" and, unless values are left out, "position 50.0",
// "force 40", "speed 80" or "angle 90".
class RecordingObserver : public GripperLogicControl::NotifyInterface,
                          public GripperConnectionManager::NotifyInterface {
public:
    struct Event {
        std::string name;
        GripperLogicControl* control;
    };

    explicit RecordingObserver(bool values = true) : values_(values) {}

    void on_communication_status_changed(
        GripperLogicControl* control, GripperCommunication::CommunicationStatus status) override {
        record(GripperCommunication::communication_status_to_string(status), control);
    }
    void on_gripper_move_status_changed(GripperLogicControl* control,
                                        GripperLogicControl::GripperStatus status) override {
        record(GripperLogicControl::gripper_status_to_string(status), control);
    }
    void on_gripper_turn_status_changed(GripperLogicControl* control,
                                        GripperLogicControl::GripperStatus status) override {
        record("turn " + GripperLogicControl::gripper_status_to_string(status), control, values_);
    }
    void on_position_changed(GripperLogicControl* control, float position) override {
        char text[32];
        snprintf(text, sizeof(text), "position %.1f", static_cast<double>(position));
        record(text, control, values_);
    }
    void on_force_changed(GripperLogicControl* control, int force) override {
        record("force " + std::to_string(force), control, values_);
    }
    void on_speed_changed(GripperLogicControl* control, int speed) override {
        record("speed " + std::to_string(speed), control, values_);
    }
    void on_angle_changed(GripperLogicControl* control, int angle) override {
        record("angle " + std::to_string(angle), control, values_);
    }
    void on_gripper_abstract_control_create(GripperLogicControl* control) override {
        record("create", control);
    }
    void on_gripper_abstract_control_destroy(GripperLogicControl* control) override {
        record("destroy", control);
    }
    void on_scan_status_changed(GripperConnectionManager::ScanStatus) override {
        record("scan", nullptr);
    }

    std::vector<Event> entries() const {
        std::lock_guard<std::mutex> lock(mutex_);
        return entries_;
    }
    // The names of the events from index first on.
    std::vector<std::string> events(size_t first = 0) const {
        std::vector<std::string> names;
        for (const Event& event : entries()) {
            names.push_back(event.name);
        }
        names.erase(names.begin(), names.begin() + std::min(first, names.size()));
        return names;
    }
    size_t size() const { return entries().size(); }
    long count(const std::string& name) const {
        const std::vector<std::string> names = events();
        return std::count(names.begin(), names.end(), name);
    }
    bool seen(const std::string& name) const { return count(name) > 0; }
    void clear() {
        std::lock_guard<std::mutex> lock(mutex_);
        entries_.clear();
    }

    // True when, for every driver address, "create" and "destroy" alternate and begin with
    // "create" (an address may be reused by a later driver once the earlier one was deleted).
    bool alternate() const {
        std::map<GripperLogicControl*, bool> alive;
        for (const Event& event : entries()) {
            const bool create = "create" == event.name;
            if (create || "destroy" == event.name) {
                if (alive[event.control] == create) {
                    return false;
                }
                alive[event.control] = create;
            }
        }
        return true;
    }

private:
    void record(const std::string& name, GripperLogicControl* control, bool wanted = true) {
        std::lock_guard<std::mutex> lock(mutex_);
        if (wanted) {
            entries_.push_back(Event{name, control});
        }
    }

    const bool values_;
    mutable std::mutex mutex_;
    std::vector<Event> entries_;
};

#endif
