#ifndef TOOLS_GRIPPER_DEMO_GRIPPER_STORY_H
#define TOOLS_GRIPPER_DEMO_GRIPPER_STORY_H

#include <chrono>
#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control.h"
#include "gripper_main/business_logic/gripper_global/gripper_device.h"
#include "tools/gripper_demo/console.h"
#include "tools/gripper_demo/demo_observer.h"
#include "tools/gripper_demo/log_collector.h"
#include "tools/gripper_simulator/simulator.h"

// A missed deadline: what the demo expected and did not see in time.
class DemoFailure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The demo's steps: two simulated grippers, connected through the connection manager and held
// in registry slots 1 and 2, commanded and watched, faulted, and disconnected again. Gripper n
// is simulator gripper n and registry slot n. Every wait has a deadline; a missed one throws
// DemoFailure.
class GripperStory {
public:
    GripperStory(Console& console, DemoObserver& observer, LogCollector& log);
    GripperStory(const GripperStory&) = delete;
    GripperStory& operator=(const GripperStory&) = delete;

    void run();

private:
    void start_grippers();
    void connect_grippers();
    void activate_grippers();
    void grip_and_lose_object();
    void set_force_and_move();
    void silence_gripper();
    void vanish_port();
    void disconnect_grippers();

    void begin(const std::string& title);
    void end();
    void connect(int n, GripperCommunication::CommunicationConnection link,
                 const std::vector<std::string>& parameters);
    void describe(int n);
    void disconnect(int n);
    void order(int n, const std::string& command, const std::function<bool()>& call);
    void await_motion(int n, GripperLogicControl::GripperStatus status, std::size_t since);
    void await_link(int n, GripperCommunication::CommunicationStatus status, std::size_t since);
    void settle(int n);
    void await_position(int n, float percent);
    void await(const std::function<bool()>& condition, std::chrono::milliseconds timeout,
               const std::string& expectation);
    void require(bool condition, const std::string& expectation);
    GripperLogicControl* driver(int n) const;

    Console& console_;
    DemoObserver& observer_;
    LogCollector& log_;
    gripper_sim::Simulator simulator_;
    gripper_sim::GripperOptions options_[2];
    GripperDevice* slots_[2];
};

#endif
