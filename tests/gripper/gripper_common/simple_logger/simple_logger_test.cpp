#include "gripper/gripper_common/simple_logger/simple_logger.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

// Every call a back end got, as "<back end> <level> <file>:<line> <text>".
std::vector<std::string> g_calls;

void record(const char* back_end, const char* level, const char* file, unsigned int line,
            const char* format, va_list args) {
    char text[256];
    vsnprintf(text, sizeof(text), format, args);
    g_calls.push_back(std::string(back_end) + " " + level + " " + file + ":" +
                      std::to_string(line) + " " + text);
}

void first_back_end(const char* level, const char* file, unsigned int line, const char* format,
                    va_list args) {
    record("first", level, file, line, format, args);
}

void second_back_end(const char* level, const char* file, unsigned int line, const char* format,
                     va_list args) {
    record("second", level, file, line, format, args);
}

// Nothing reaches a back end before one is registered or after null is; each call goes to the one
// registered last, with the caller's file and line when it comes through the macro.
TEST(SimpleLoggerTest, HandsEachCallToTheBackEndRegisteredLast) {
    register_simple_logger(nullptr);
    simple_logger("E", "unregistered.cpp", 1, "dropped %d", 1);
    register_simple_logger(first_back_end);
    simple_logger("W", "a/b.cpp", 17, "%s = %d, %.1f", "speed", -3, 2.5);
    const unsigned int line = __LINE__ + 1;
    GRIPPER_LOG("E", "!private_->sync_id()");
    register_simple_logger(second_back_end);
    simple_logger("I", "c.cpp", 4294967295u, "no arguments");
    register_simple_logger(nullptr);
    simple_logger("D", "d.cpp", 9, "dropped %d", 2);

    EXPECT_EQ((std::vector<std::string>{"first W a/b.cpp:17 speed = -3, 2.5",
                                        "first E " + std::string(__FILE__) + ":" +
                                            std::to_string(line) + " !private_->sync_id()",
                                        "second I c.cpp:4294967295 no arguments"}),
              g_calls);
}

}  // namespace
