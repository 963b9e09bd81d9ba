#ifndef TESTS_TEST_SUPPORT_LOG_CAPTURE_H
#define TESTS_TEST_SUPPORT_LOG_CAPTURE_H

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <string>
#include <vector>

#include "gripper/gripper_common/simple_logger/simple_logger.h"

// Collects every simple_logger line while it lives, as "LEVEL text" (for example
// "W READ_LENGTH != read_byte_stream.size()"). Registers itself as the logging back end on
// construction and registers no back end on destruction. Use one at a time; lines may arrive from
// any thread.
class LogCapture {
public:
    LogCapture() {
        std::lock_guard<std::mutex> lock(mutex());
        active() = this;
        register_simple_logger(&LogCapture::receive);
    }

    ~LogCapture() {
        register_simple_logger(nullptr);
        std::lock_guard<std::mutex> lock(mutex());
        active() = nullptr;
    }

    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    std::vector<std::string> lines() const {
        std::lock_guard<std::mutex> lock(mutex());
        return lines_;
    }

    // How often line ("LEVEL text") was logged.
    long count(const std::string& line) const {
        const std::vector<std::string> all = lines();
        return std::count(all.begin(), all.end(), line);
    }

    // True when the text of some line (without its level) contains text.
    bool contains(const std::string& text) const {
        for (const std::string& line : lines()) {
            if (std::string::npos != line.find(text, line.find(' ') + 1)) {
                return true;
            }
        }
        return false;
    }

    void clear() {
        std::lock_guard<std::mutex> lock(mutex());
        lines_.clear();
    }

private:
    static std::mutex& mutex() {
        static std::mutex instance;
        return instance;
    }

    static LogCapture*& active() {
        static LogCapture* instance = nullptr;
        return instance;
    }

    static void receive(const char* level, const char*, unsigned int, const char* format,
                        va_list args) {
        va_list size_args;
        va_copy(size_args, args);
        std::vector<char> text(std::max(vsnprintf(nullptr, 0, format, size_args), 0) + 1);
        va_end(size_args);
        vsnprintf(text.data(), text.size(), format, args);
        std::lock_guard<std::mutex> lock(mutex());
        if (nullptr != active()) {
            active()->lines_.push_back(std::string(level) + " " + text.data());
        }
    }

    std::vector<std::string> lines_;
};

#endif
