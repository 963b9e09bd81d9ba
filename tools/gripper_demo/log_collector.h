#ifndef TOOLS_GRIPPER_DEMO_LOG_COLLECTOR_H
#define TOOLS_GRIPPER_DEMO_LOG_COLLECTOR_H

#include <atomic>
#include <cstdarg>
#include <cstddef>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "tools/gripper_demo/console.h"

// Keeps the driver's log out of the demo's story: every line is counted, warnings and errors
// are kept, one entry per place in the code, to be shown briefly between steps, and the requests
// written on the serial link are counted, which tells when the serial gripper's polling has
// stopped. One instance at a time is the registered log back end, from construction to
// destruction.
class LogCollector {
public:
    LogCollector();
    ~LogCollector();
    LogCollector(const LogCollector&) = delete;
    LogCollector& operator=(const LogCollector&) = delete;

    // Prints up to `shown` kept entries, errors first, dimmed, with the number of lines each
    // stands for and how many lines the others hold; forgets them all.
    void flush(Console& console, std::size_t shown);
    long serial_requests() const;
    // "12 D, 3 I, 40 W, 5 E"
    std::string totals() const;

private:
    // The first line logged at one place since the last flush, and how many lines came from it.
    struct Entry {
        std::string level;
        std::string place;
        std::string text;
        long lines;
    };

    static void receive(const char* level, const char* file, unsigned int line, const char* format,
                        va_list args);
    void take(const std::string& level, const std::string& file, unsigned int line,
              const std::string& text);
    void keep(const std::string& level, const std::string& place, const std::string& text);
    static void print(Console& console, const std::vector<Entry>& entries, std::size_t shown);
    static std::string line_of(const Entry& entry);

    static std::atomic<LogCollector*> active_;
    mutable std::mutex mutex_;
    std::map<std::string, long> counts_;
    std::vector<Entry> kept_;
    long serial_requests_;
};

#endif
