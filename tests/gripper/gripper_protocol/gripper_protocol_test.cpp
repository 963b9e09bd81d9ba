#include "gripper/gripper_protocol/gripper_protocol/gripper_protocol.h"

#include <gtest/gtest.h>

#include <climits>

#include "tests/test_support/log_capture.h"
#include "tests/test_support/protocol_test_support.h"

namespace {

// Values to bytes and back, in both byte orders; any order other than big endian is little.
TEST(GripperProtocolConversion, IntsToBytesAndBack) {
    const struct {
        int value;
        int count;
        GP::EndianType endian;
        const char* bytes;
    } cases[] = {
        {0x1234, 2, GP::ET_BIG_ENDIAN, "12 34"},
        {0x1234, 2, GP::ET_LITTLE_ENDIAN, "34 12"},
        {1000, 4, static_cast<GP::EndianType>(7), "E8 03 00 00"},
        {0x123456, 3, GP::ET_BIG_ENDIAN, "12 34 56"},
        {-1, 4, GP::ET_LITTLE_ENDIAN, "FF FF FF FF"},
        {INT_MIN, 4, GP::ET_BIG_ENDIAN, "80 00 00 00"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.bytes, hex_text(GP::int32_t_2_byte(c.value, c.count, c.endian))) << c.bytes;
        EXPECT_EQ(c.value, GP::byte_2_int32_t(frame(c.bytes), c.endian)) << c.bytes;
    }
    EXPECT_EQ("", hex_text(GP::int32_t_2_byte(0x1234, 0, GP::ET_BIG_ENDIAN)));
    LogCapture log;
    EXPECT_EQ(0, GP::byte_2_int32_t(frame(""), GP::ET_BIG_ENDIAN));
    EXPECT_EQ(0, GP::byte_2_int32_t(frame("01 02 03 04 05"), GP::ET_BIG_ENDIAN));
    EXPECT_TRUE(log.contains("0 == byte_stream.size()") && log.contains("byte_stream.size() > 4"));
}

}  // namespace
