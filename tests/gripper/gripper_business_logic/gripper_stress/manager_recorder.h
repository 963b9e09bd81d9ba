#ifndef TESTS_GRIPPER_STRESS_MANAGER_RECORDER_H
#define TESTS_GRIPPER_STRESS_MANAGER_RECORDER_H

#include <map>
#include <mutex>
#include <vector>

#include "gripper/gripper_business_logic/gripper_connection_manager/gripper_connection_manager.h"

// Records the connection manager's create and destroy notifications, from any thread.
class ManagerRecorder : public GripperConnectionManager::NotifyInterface {
public:
    void on_gripper_abstract_control_create(GripperLogicControl* control) override {
        record(control, true);
    }
    void on_gripper_abstract_control_destroy(GripperLogicControl* control) override {
        record(control, false);
    }
    void on_scan_status_changed(GripperConnectionManager::ScanStatus) override {}

    int creates() const { return count(true); }
    int destroys() const { return count(false); }

    // True when, for every driver address, creations and destructions alternate and begin with a
    // creation (an address may be reused by a later driver once the earlier one was deleted).
    bool alternate() const {
        std::lock_guard<std::mutex> lock(mutex_);
        std::map<GripperLogicControl*, bool> alive;
        for (const Event& event : events_) {
            if (alive[event.control] == event.create) {
                return false;
            }
            alive[event.control] = event.create;
        }
        return true;
    }

private:
    struct Event {
        GripperLogicControl* control;
        bool create;
    };

    void record(GripperLogicControl* control, bool create) {
        std::lock_guard<std::mutex> lock(mutex_);
        events_.push_back(Event{control, create});
    }

    int count(bool create) const {
        std::lock_guard<std::mutex> lock(mutex_);
        int result = 0;
        for (const Event& event : events_) {
            result += (event.create == create) ? 1 : 0;
        }
        return result;
    }

    mutable std::mutex mutex_;
    std::vector<Event> events_;
};

#endif
