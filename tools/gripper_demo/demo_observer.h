#ifndef TOOLS_GRIPPER_DEMO_DEMO_OBSERVER_H
#define TOOLS_GRIPPER_DEMO_DEMO_OBSERVER_H

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control.h"
#include "tools/gripper_demo/console.h"

// One status change a driver reported.
struct StatusEvent {
    enum Kind { LINK, MOTION };

    GripperLogicControl* driver;
    Kind kind;
    int value;
};

// The observer of both drivers: prints the notifications as they arrive, on whichever thread
// sends them, and keeps the status changes so that the main thread can wait for one.
class DemoObserver : public GripperLogicControl::NotifyInterface {
public:
    explicit DemoObserver(Console& console);

    // The connection manager notifies before it hands the new driver out: the notifications of
    // a driver not seen before are put under this name.
    void expect(const std::string& name);
    // The number of status changes so far; waits and counts start from such a mark.
    std::size_t mark() const;
    // True once `driver` has reported the change since `since`; false when the timeout passed.
    bool wait_for(GripperLogicControl* driver, StatusEvent::Kind kind, int value, std::size_t since,
                  std::chrono::milliseconds timeout);
    int count(GripperLogicControl* driver, StatusEvent::Kind kind, int value,
              std::size_t since) const;

    void on_communication_status_changed(GripperLogicControl* control,
                                         GripperCommunication::CommunicationStatus status) override;
    void on_gripper_move_status_changed(GripperLogicControl* control,
                                        GripperLogicControl::GripperStatus status) override;
    void on_gripper_turn_status_changed(GripperLogicControl* control,
                                        GripperLogicControl::GripperStatus status) override;
    void on_position_changed(GripperLogicControl* control, float position) override;
    void on_force_changed(GripperLogicControl* control, int force) override;
    void on_speed_changed(GripperLogicControl* control, int speed) override;
    void on_angle_changed(GripperLogicControl* control, int angle) override;

private:
    void print(GripperLogicControl* control, const std::string& text);
    void print_setting(GripperLogicControl* control, const std::string& setting, int value);
    void record(GripperLogicControl* control, StatusEvent::Kind kind, int value,
                const std::string& text);
    // Callers hold mutex_.
    const std::string& name_of(GripperLogicControl* control);
    int count_locked(GripperLogicControl* driver, StatusEvent::Kind kind, int value,
                     std::size_t since) const;

    Console& console_;
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::string expected_name_;
    std::map<GripperLogicControl*, std::string> names_;
    std::vector<StatusEvent> events_;
    // The force and speed printed last, by driver and setting.
    std::map<std::pair<GripperLogicControl*, std::string>, int> settings_;
};

#endif
