#include "gripper/gripper_common/simple_logger/simple_logger.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

// Every call the back end got, as "<level> <file>:<line> <text>".
std::vector<std::string> g_calls;

void back_end(const char* level, const char* file, unsigned int line, const char* format,
              va_list args) {
    char text[256];
    vsnprintf(text, sizeof(text), format, args);
    g_calls.push_back(std::string(level) + " " + file + ":" + std::to_string(line) + " " + text);
}

// Nothing reaches a back end before one is registered or after null is; each call goes to the one
// registered, with the caller's file and line when it comes through the macro.
TEST(SimpleLoggerTest, HandsEachCallToTheRegisteredBackEnd) {
    register_simple_logger(nullptr);
    simple_logger("E", "unregistered.cpp", 1, "dropped %d", 1);
    register_simple_logger(back_end);
    simple_logger("W", "a/b.cpp", 17, "%s = %d, %.1f", "speed", -3, 2.5);
    const unsigned int line = __LINE__ + 1;
    GRIPPER_LOG("E", "!private_->sync_id()");
    register_simple_logger(nullptr);
    simple_logger("D", "d.cpp", 9, "dropped %d", 2);

    EXPECT_EQ((std::vector<std::string>{"W a/b.cpp:17 speed = -3, 2.5",
                                        "E " + std::string(__FILE__) + ":" + std::to_string(line) +
                                            " !private_->sync_id()"}),
              g_calls);
}

}  // namespace
