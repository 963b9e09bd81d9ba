#include "tools/gripper_demo/log_collector.h"

#include <algorithm>
#include <cstdio>

#include "gripper/gripper_common/simple_logger/simple_logger.h"

namespace {

// The serial link logs each request it writes with this file and text.
const char* const SERIAL_LINK_FILE = "gripper_usb_serialport_communication_control_private.cpp";
const std::string REQUEST_TEXT = "write_stream = ";
const char* const LEVELS[] = {"D", "I", "W", "E"};

std::string base_name(const char* path) {
    const std::string text(path);
    return text.substr(text.find_last_of('/') + 1);
}

}  // namespace

std::atomic<LogCollector*> LogCollector::active_(nullptr);

LogCollector::LogCollector() : serial_requests_(0) {
    active_ = this;
    register_simple_logger(&LogCollector::receive);
}

LogCollector::~LogCollector() {
    register_simple_logger(nullptr);
    active_ = nullptr;
}

void LogCollector::flush(Console& console, std::size_t shown) {
    std::vector<Entry> entries;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        entries.swap(kept_);
    }
    // Errors first; within a level, in the order they were first logged.
    std::stable_sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
        return a.level == "E" && b.level != "E";
    });
    print(console, entries, shown);
}

void LogCollector::print(Console& console, const std::vector<Entry>& entries, std::size_t shown) {
    long hidden = 0;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const Entry& entry = entries[i];
        if (i >= shown) {
            hidden += entry.lines;
            continue;
        }
        const std::string times = entry.lines > 1 ? "  (x" + std::to_string(entry.lines) + ")" : "";
        console.dimmed("log " + entry.level + " " + entry.place + "  " + entry.text + times);
    }
    if (hidden > 0) {
        console.dimmed("log   ... " + std::to_string(hidden) + " more warning and error lines");
    }
}

long LogCollector::serial_requests() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return serial_requests_;
}

std::string LogCollector::totals() const {
    std::lock_guard<std::mutex> lock(mutex_);
    std::string text;
    for (const char* level : LEVELS) {
        const auto found = counts_.find(level);
        const long count = counts_.end() == found ? 0 : found->second;
        text += (text.empty() ? "" : ", ") + std::to_string(count) + " " + level;
    }
    return text;
}

void LogCollector::receive(const char* level, const char* file, unsigned int line,
                           const char* format, va_list args) {
    LogCollector* collector = active_;
    if (nullptr == collector) {
        return;
    }
    char text[512];
    std::vsnprintf(text, sizeof(text), format, args);
    collector->take(level, base_name(file), line, text);
}

void LogCollector::take(const std::string& level, const std::string& file, unsigned int line,
                        const std::string& text) {
    std::lock_guard<std::mutex> lock(mutex_);
    ++counts_[level];
    if (SERIAL_LINK_FILE == file && 0 == text.compare(0, REQUEST_TEXT.size(), REQUEST_TEXT)) {
        ++serial_requests_;
    }
    if ("W" == level || "E" == level) {
        keep(level, file + ":" + std::to_string(line), text);
    }
}

void LogCollector::keep(const std::string& level, const std::string& place,
                        const std::string& text) {
    for (Entry& entry : kept_) {
        if (entry.place == place) {
            ++entry.lines;
            return;
        }
    }
    kept_.push_back(Entry{level, place, text, 1});
}
