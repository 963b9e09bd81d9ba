#include "tools/gripper_demo/console.h"

#include <unistd.h>

#include <cstdio>

namespace {

// As wide as the time stamp "[ 1.23 s] ".
const char* const INDENT = "          ";
const char* const DIM = "\033[2m";
const char* const NORMAL = "\033[0m";

}  // namespace

Console::Console() : start_(std::chrono::steady_clock::now()), terminal_(isatty(STDOUT_FILENO)) {}

void Console::timed(const std::string& text) {
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start_;
    char stamp[32];
    std::snprintf(stamp, sizeof(stamp), "[%5.2f s] ", elapsed.count());
    write(stamp + text);
}

void Console::plain(const std::string& text) {
    write(text);
}

void Console::indented(const std::string& text) {
    write(INDENT + text);
}

void Console::dimmed(const std::string& text) {
    write(terminal_ ? INDENT + (DIM + text + NORMAL) : INDENT + text);
}

void Console::write(const std::string& line) {
    std::lock_guard<std::mutex> lock(mutex_);
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}
