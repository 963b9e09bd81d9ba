#ifndef TOOLS_GRIPPER_DEMO_WAIT_UNTIL_H
#define TOOLS_GRIPPER_DEMO_WAIT_UNTIL_H

#include <chrono>
#include <thread>

// Polls `condition` until it holds or `timeout` has passed; true when it held.
template <typename Condition>
bool wait_until(Condition condition, std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

#endif
