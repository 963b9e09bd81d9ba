#include "tools/gripper_demo/demo_observer.h"

#include <cstdio>

DemoObserver::DemoObserver(Console& console) : console_(console) {}

void DemoObserver::expect(const std::string& name) {
    std::lock_guard<std::mutex> lock(mutex_);
    expected_name_ = name;
}

std::size_t DemoObserver::mark() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return events_.size();
}

bool DemoObserver::wait_for(GripperLogicControl* driver, StatusEvent::Kind kind, int value,
                            std::size_t since, std::chrono::milliseconds timeout) {
    std::unique_lock<std::mutex> lock(mutex_);
    return changed_.wait_for(lock, timeout,
                             [&] { return count_locked(driver, kind, value, since) > 0; });
}

int DemoObserver::count(GripperLogicControl* driver, StatusEvent::Kind kind, int value,
                        std::size_t since) const {
    std::lock_guard<std::mutex> lock(mutex_);
    return count_locked(driver, kind, value, since);
}

void DemoObserver::on_communication_status_changed(
    GripperLogicControl* control, GripperCommunication::CommunicationStatus status) {
    record(control, StatusEvent::LINK, status,
           GripperCommunication::communication_status_to_string(status));
}

void DemoObserver::on_gripper_move_status_changed(GripperLogicControl* control,
                                                  GripperLogicControl::GripperStatus status) {
    record(control, StatusEvent::MOTION, status,
           GripperLogicControl::gripper_status_to_string(status));
}

void DemoObserver::on_gripper_turn_status_changed(GripperLogicControl* control,
                                                  GripperLogicControl::GripperStatus status) {
    print(control, "turn " + GripperLogicControl::gripper_status_to_string(status));
}

void DemoObserver::on_position_changed(GripperLogicControl* control, float position) {
    char text[32];
    std::snprintf(text, sizeof(text), "position %.1f %%", static_cast<double>(position));
    print(control, text);
}

void DemoObserver::on_force_changed(GripperLogicControl* control, int force) {
    print_setting(control, "force", force);
}

void DemoObserver::on_speed_changed(GripperLogicControl* control, int speed) {
    print_setting(control, "speed", speed);
}

void DemoObserver::on_angle_changed(GripperLogicControl* control, int angle) {
    print(control, "angle " + std::to_string(angle));
}

void DemoObserver::print(GripperLogicControl* control, const std::string& text) {
    std::lock_guard<std::mutex> lock(mutex_);
    console_.timed(name_of(control) + ": " + text);
}

// Each update cycle of an idle gripper sets force and speed to 0 ("not known") and then reads
// them back: only a known value other than the one printed last is worth a line.
void DemoObserver::print_setting(GripperLogicControl* control, const std::string& setting,
                                 int value) {
    std::lock_guard<std::mutex> lock(mutex_);
    int& last = settings_[std::make_pair(control, setting)];
    if (0 == value || value == last) {
        return;
    }
    last = value;
    console_.timed(name_of(control) + ": " + setting + " " + std::to_string(value));
}

void DemoObserver::record(GripperLogicControl* control, StatusEvent::Kind kind, int value,
                          const std::string& text) {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        events_.push_back(StatusEvent{control, kind, value});
        console_.timed(name_of(control) + ": " + text);
    }
    changed_.notify_all();
}

const std::string& DemoObserver::name_of(GripperLogicControl* control) {
    const auto found = names_.find(control);
    if (names_.end() != found) {
        return found->second;
    }
    return names_[control] = expected_name_;
}

int DemoObserver::count_locked(GripperLogicControl* driver, StatusEvent::Kind kind, int value,
                               std::size_t since) const {
    int count = 0;
    for (std::size_t i = since; i < events_.size(); ++i) {
        const StatusEvent& event = events_[i];
        count += (event.driver == driver && event.kind == kind && event.value == value) ? 1 : 0;
    }
    return count;
}
