#ifndef GRIPPER_COMMON_SIMPLE_LOGGER_H
#define GRIPPER_COMMON_SIMPLE_LOGGER_H

#include <cstdarg>

// Back end that receives every log call: level ("D", "I", "W", "E"), source file, line, printf
// format and its arguments.
typedef void (*simple_logger_fn)(const char* level, const char* file, unsigned int line,
                                 const char* format, va_list args);

// Registers the back end; a later call replaces it.
void register_simple_logger(simple_logger_fn fn);

// Hands one message to the registered back end; does nothing while none is registered.
void simple_logger(const char* level, const char* file, unsigned int line, const char* format, ...)
    __attribute__((format(printf, 4, 5)));

// Hooks for a logging lock that this build does not need.
bool try_global_lock();
void global_lock();
void global_unlock();

// Logs with the caller's file and line: GRIPPER_LOG("W", "count = %d", count).
#define GRIPPER_LOG(level, ...) simple_logger(level, __FILE__, __LINE__, __VA_ARGS__)

#endif
