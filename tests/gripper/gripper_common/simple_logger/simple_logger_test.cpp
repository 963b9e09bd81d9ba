#include "gripper/gripper_common/simple_logger/simple_logger.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

struct Call {
    std::string back_end;
    std::string level;
    std::string file;
    unsigned int line;
    std::string text;
};

std::vector<Call> g_calls;

std::string expand(const char* format, va_list args) {
    char text[256];
    vsnprintf(text, sizeof(text), format, args);
    return text;
}

void first_back_end(const char* level, const char* file, unsigned int line, const char* format,
                    va_list args) {
    g_calls.push_back({"first", level, file, line, expand(format, args)});
}

void second_back_end(const char* level, const char* file, unsigned int line, const char* format,
                     va_list args) {
    g_calls.push_back({"second", level, file, line, expand(format, args)});
}

class SimpleLoggerTest : public ::testing::Test {
protected:
    void SetUp() override {
        register_simple_logger(nullptr);
        g_calls.clear();
    }
    void TearDown() override { register_simple_logger(nullptr); }
};

TEST_F(SimpleLoggerTest, HandsEachCallToTheBackEndRegisteredLast) {
    simple_logger("E", "unregistered.cpp", 1, "dropped %d", 1);
    EXPECT_TRUE(g_calls.empty());

    register_simple_logger(first_back_end);
    simple_logger("W", "a/b.cpp", 17, "%s = %d, %.1f", "speed", -3, 2.5);
    register_simple_logger(second_back_end);
    simple_logger("I", "c.cpp", 4294967295u, "no arguments");
    register_simple_logger(nullptr);
    simple_logger("D", "d.cpp", 9, "dropped %d", 2);

    ASSERT_EQ(2u, g_calls.size());
    EXPECT_EQ("first", g_calls[0].back_end);
    EXPECT_EQ("W", g_calls[0].level);
    EXPECT_EQ("a/b.cpp", g_calls[0].file);
    EXPECT_EQ(17u, g_calls[0].line);
    EXPECT_EQ("speed = -3, 2.5", g_calls[0].text);
    EXPECT_EQ("second", g_calls[1].back_end);
    EXPECT_EQ("I", g_calls[1].level);
    EXPECT_EQ(4294967295u, g_calls[1].line);
    EXPECT_EQ("no arguments", g_calls[1].text);
}

TEST_F(SimpleLoggerTest, MacroPassesTheCallersFileAndLine) {
    register_simple_logger(first_back_end);
    const unsigned int line = __LINE__ + 1;
    GRIPPER_LOG("E", "!private_->sync_id()");

    ASSERT_EQ(1u, g_calls.size());
    EXPECT_EQ(__FILE__, g_calls[0].file);
    EXPECT_EQ(line, g_calls[0].line);
    EXPECT_EQ("!private_->sync_id()", g_calls[0].text);
    EXPECT_TRUE(try_global_lock());
    global_lock();
    global_unlock();
}

}  // namespace
