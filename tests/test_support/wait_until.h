#ifndef TESTS_TEST_SUPPORT_WAIT_UNTIL_H
#define TESTS_TEST_SUPPORT_WAIT_UNTIL_H

#include <chrono>
#include <thread>

// Polls condition until it holds or the deadline passes; true when it held.
template <typename Condition>
bool wait_until(Condition condition,
                std::chrono::milliseconds deadline = std::chrono::seconds(10)) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

#endif
