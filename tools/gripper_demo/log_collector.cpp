#include "tools/gripper_demo/log_collector.h"

#include <algorithm>
#include <cstdio>

#include "gripper/gripper_common/simple_logger/simple_logger.h"

namespace {

// The serial link logs each request it writes with this file and text.
const char* const SERIAL_LINK_FILE = "gripper_usb_serialport_communication_control_private.cpp";
const std::string REQUEST_TEXT = "write_stream = ";
const char* const LEVELS[] = {"D", "I", "W", "E"};
// Kept log lines are cut to this width; the console indents them by ten more columns.
const std::size_t LINE_WIDTH = 90;

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
        if (i < shown) {
            console.dimmed(line_of(entries[i]));
        } else {
            hidden += entries[i].lines;
        }
    }
    if (hidden > 0) {
        const std::string lines = 1 == hidden ? " more line" : " more lines";
        console.dimmed("log   ... " + std::to_string(hidden) + lines + " of warnings and errors");
    }
}

// "log W   4x text", cut to the width of the story's lines; the text tells the place well enough.
std::string LogCollector::line_of(const Entry& entry) {
    char count[16];
    std::snprintf(count, sizeof(count), "%3ldx ", entry.lines);
    const std::string line = "log " + entry.level + " " + count + entry.text;
    return line.size() <= LINE_WIDTH ? line : line.substr(0, LINE_WIDTH - 3) + "...";
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
