#include "gripper/gripper_common/simple_logger/simple_logger.h"

#include <atomic>

#include "gripper/gripper_common/simple_logger/simple_logger_quiet.h"

namespace {
std::atomic<simple_logger_fn> g_simple_logger_{nullptr};
}

void register_simple_logger(simple_logger_fn fn) {
    g_simple_logger_.store(fn);
}

void simple_logger(const char* level, const char* file, unsigned int line, const char* format,
                   ...) {
    simple_logger_fn fn = g_simple_logger_.load();
    if (nullptr == fn || SimpleLoggerQuiet::active()) {
        return;
    }
    va_list args;
    va_start(args, format);
    fn(level, file, line, format, args);
    va_end(args);
}

bool try_global_lock() {
    return true;
}

void global_lock() {}

void global_unlock() {}
