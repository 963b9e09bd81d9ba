#include "gripper/gripper_protocol/gripper_protocol/gripper_protocol.h"

#include <gtest/gtest.h>

#include <climits>

#include "tests/test_support/protocol_test_support.h"
#include "tests/test_support/log_capture.h"

namespace {

TEST(GripperProtocolConversion, IntToBytes) {
    const struct {
        int value;
        int count;
        GP::EndianType endian;
        const char* expected;
    } cases[] = {
        {0x1234, 2, GP::ET_BIG_ENDIAN, "12 34"},
        {0x1234, 2, GP::ET_LITTLE_ENDIAN, "34 12"},
        {300, 1, GP::ET_BIG_ENDIAN, "2C"},
        {1000, 4, GP::ET_LITTLE_ENDIAN, "E8 03 00 00"},
        {0x123456, 3, GP::ET_BIG_ENDIAN, "12 34 56"},
        {-1, 3, GP::ET_LITTLE_ENDIAN, "FF FF FF"},
        {INT_MIN, 4, GP::ET_BIG_ENDIAN, "80 00 00 00"},
        // Any value other than big endian means least significant byte first.
        {0x1234, 2, static_cast<GP::EndianType>(7), "34 12"},
        // Shifts wrap at 32 bits: a fifth byte repeats the lowest byte, no sign padding.
        {0x11223344, 5, GP::ET_BIG_ENDIAN, "44 11 22 33 44"},
        {0x11223344, 5, GP::ET_LITTLE_ENDIAN, "44 33 22 11 44"},
        {0x1234, 0, GP::ET_BIG_ENDIAN, ""},
        {0x1234, -3, GP::ET_LITTLE_ENDIAN, ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.expected, hex_text(GP::int32_t_2_byte(c.value, c.count, c.endian)))
            << c.value << " in " << c.count << " endian " << c.endian;
    }
}

TEST(GripperProtocolConversion, BytesToInt) {
    const struct {
        const char* bytes;
        GP::EndianType endian;
        int32_t expected;
        const char* log;
    } cases[] = {
        {"12 34", GP::ET_BIG_ENDIAN, 0x1234, nullptr},
        {"12 34", GP::ET_LITTLE_ENDIAN, 0x3412, nullptr},
        {"01 02 03", GP::ET_BIG_ENDIAN, 0x010203, nullptr},
        {"01 02 03", GP::ET_LITTLE_ENDIAN, 0x030201, nullptr},
        {"FF FF", GP::ET_BIG_ENDIAN, 65535, nullptr},
        {"80", GP::ET_LITTLE_ENDIAN, 128, nullptr},
        {"FF FF FF FF", GP::ET_LITTLE_ENDIAN, -1, nullptr},
        {"80 00 00 00", GP::ET_BIG_ENDIAN, INT_MIN, nullptr},
        {"E8 03 00 00", static_cast<GP::EndianType>(-4), 1000, nullptr},
        {"", GP::ET_BIG_ENDIAN, 0, "0 == byte_stream.size()"},
        {"01 02 03 04 05", GP::ET_LITTLE_ENDIAN, 0, "byte_stream.size() > 4"},
    };
    for (const auto& c : cases) {
        LogCapture log;
        EXPECT_EQ(c.expected, GP::byte_2_int32_t(frame(c.bytes), c.endian)) << c.bytes;
        EXPECT_EQ(nullptr != c.log, !log.lines().empty()) << c.bytes;
        EXPECT_TRUE(nullptr == c.log || log.contains(c.log)) << c.bytes;
    }
}

TEST(GripperProtocolRecord, StartsUndecoded) {
    EXPECT_EQ(
        "{type 0, id 255, version [], model 0, feedback 0, initialize -1, force -1, position -1, "
        "speed -1, spare -1}",
        printed(Record()));
}

TEST(GripperProtocolModelSeries, HoldsEveryCodeOnce) {
    const struct {
        const char* code;
        int32_t series;
    } rows[] = {
        {"00 00", 1}, {"02 00", 1}, {"02 02", 1}, {"02 03", 1}, {"02 04", 1}, {"02 05", 1},
        {"02 06", 1}, {"02 07", 1}, {"01 00", 2}, {"10 00", 3}, {"11 00", 3}, {"12 00", 3},
        {"20 00", 3}, {"21 00", 3}, {"22 00", 3}, {"23 00", 3}, {"24 00", 3}, {"30 00", 3},
        {"31 00", 3}, {"40 00", 3}, {"50 00", 3},
    };
    const auto& map = GP::map_model_series;
    for (const auto& row : rows) {
        const auto iter = map.find(frame(row.code));
        ASSERT_NE(map.end(), iter) << row.code;
        EXPECT_EQ(row.series, iter->second) << row.code;
    }
    // 02 07 is listed twice but stored once.
    EXPECT_EQ(sizeof(rows) / sizeof(rows[0]), map.size());
    for (const char* missing : {"02 01", "02", "02 07 00"}) {
        EXPECT_EQ(0u, map.count(frame(missing))) << missing;
    }
}

}  // namespace
