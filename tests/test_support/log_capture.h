#ifndef TESTS_TEST_SUPPORT_LOG_CAPTURE_H
#define TESTS_TEST_SUPPORT_LOG_CAPTURE_H

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <string>
#include <utility>
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
        std::vector<std::string> result;
        for (const auto& entry : entries_) {
            result.push_back(entry.first + " " + entry.second);
        }
        return result;
    }

    // True when the text of some line (without its level) equals or contains text.
    bool contains(const std::string& text) const {
        std::lock_guard<std::mutex> lock(mutex());
        for (const auto& entry : entries_) {
            if (std::string::npos != entry.second.find(text)) {
                return true;
            }
        }
        return false;
    }

    void clear() {
        std::lock_guard<std::mutex> lock(mutex());
        entries_.clear();
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

    static std::string format_text(const char* format, va_list args) {
        va_list size_args;
        va_copy(size_args, args);
        const int length = vsnprintf(nullptr, 0, format, size_args);
        va_end(size_args);
        if (length <= 0) {
            return std::string();
        }
        std::vector<char> buffer(static_cast<size_t>(length) + 1);
        vsnprintf(buffer.data(), buffer.size(), format, args);
        return std::string(buffer.data(), static_cast<size_t>(length));
    }

    static void receive(const char* level, const char*, unsigned int, const char* format,
                        va_list args) {
        const std::string text = format_text(format, args);
        std::lock_guard<std::mutex> lock(mutex());
        if (nullptr != active()) {
            active()->entries_.emplace_back(level, text);
        }
    }

    std::vector<std::pair<std::string, std::string>> entries_;
};

#endif
