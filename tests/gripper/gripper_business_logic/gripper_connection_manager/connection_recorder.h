#ifndef TESTS_CONNECTION_MANAGER_CONNECTION_RECORDER_H
#define TESTS_CONNECTION_MANAGER_CONNECTION_RECORDER_H

#include <mutex>
#include <string>
#include <vector>

#include "gripper/gripper_business_logic/gripper_connection_manager/gripper_connection_manager.h"

// Records in one sequence, from any thread, the manager's notifications ("create", "destroy")
// and the link and motion status changes of the drivers it observes ("CS_CONNECTED",
// "GS_UNDEFINE" ...), each with the driver it names.
class ConnectionRecorder : public GripperConnectionManager::NotifyInterface,
                           public GripperLogicControl::NotifyInterface {
public:
    struct Event {
        std::string name;
        GripperLogicControl* control;
    };

    void on_gripper_abstract_control_create(GripperLogicControl* control) override {
        record("create", control);
    }
    void on_gripper_abstract_control_destroy(GripperLogicControl* control) override {
        record("destroy", control);
    }
    void on_scan_status_changed(GripperConnectionManager::ScanStatus) override {
        record("scan", nullptr);
    }
    void on_communication_status_changed(
        GripperLogicControl* control, GripperCommunication::CommunicationStatus status) override {
        record(GripperCommunication::communication_status_to_string(status), control);
    }
    void on_gripper_move_status_changed(GripperLogicControl* control,
                                        GripperLogicControl::GripperStatus status) override {
        record(GripperLogicControl::gripper_status_to_string(status), control);
    }
    // Values are not part of the connection story.
    void on_gripper_turn_status_changed(GripperLogicControl*,
                                        GripperLogicControl::GripperStatus) override {}
    void on_position_changed(GripperLogicControl*, float) override {}
    void on_force_changed(GripperLogicControl*, int) override {}
    void on_speed_changed(GripperLogicControl*, int) override {}
    void on_angle_changed(GripperLogicControl*, int) override {}

    std::vector<Event> events() const {
        std::lock_guard<std::mutex> lock(mutex_);
        return events_;
    }

    // The names of the events from index first on.
    std::vector<std::string> names(size_t first = 0) const {
        std::lock_guard<std::mutex> lock(mutex_);
        std::vector<std::string> result;
        for (size_t index = first; index < events_.size(); ++index) {
            result.push_back(events_[index].name);
        }
        return result;
    }

    size_t size() const {
        std::lock_guard<std::mutex> lock(mutex_);
        return events_.size();
    }

private:
    void record(const std::string& name, GripperLogicControl* control) {
        std::lock_guard<std::mutex> lock(mutex_);
        events_.push_back(Event{name, control});
    }

    mutable std::mutex mutex_;
    std::vector<Event> events_;
};

#endif
