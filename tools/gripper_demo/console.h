#ifndef TOOLS_GRIPPER_DEMO_CONSOLE_H
#define TOOLS_GRIPPER_DEMO_CONSOLE_H

#include <chrono>
#include <mutex>
#include <string>

// The demo's output. Each line is written whole under one lock, so the lines of the drivers'
// threads and of the main thread never mix; timed lines carry the seconds since the start.
class Console {
public:
    Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    // "[ 1.23 s] text"
    void timed(const std::string& text);
    void plain(const std::string& text);
    // Indented below the timed lines.
    void indented(const std::string& text);
    // Indented below the timed lines, and dimmed when stdout is a terminal.
    void dimmed(const std::string& text);

private:
    void write(const std::string& line);

    const std::chrono::steady_clock::time_point start_;
    const bool terminal_;
    std::mutex mutex_;
};

#endif
