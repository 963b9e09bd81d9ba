#include "gripper/gripper_protocol/gripper_protocol/gripper_protocol.h"

#include <gtest/gtest.h>

#include <climits>

#include "tests/gripper/gripper_protocol/protocol_test_support.h"
#include "tests/test_support/log_capture.h"

namespace {

typedef GripperProtocol GP;

TEST(GripperProtocolConversion, IntToBytes) {
    struct Case {
        int value;
        int count;
        GP::EndianType endian;
        const char* expected;
    };
    const Case cases[] = {
        {0x1234, 2, GP::ET_BIG_ENDIAN, "12 34"},
        {0x1234, 2, GP::ET_LITTLE_ENDIAN, "34 12"},
        {300, 1, GP::ET_BIG_ENDIAN, "2C"},
        {300, 1, GP::ET_LITTLE_ENDIAN, "2C"},
        {70000, 2, GP::ET_BIG_ENDIAN, "11 70"},
        {1000, 4, GP::ET_LITTLE_ENDIAN, "E8 03 00 00"},
        {-1, 4, GP::ET_LITTLE_ENDIAN, "FF FF FF FF"},
        {-2, 2, GP::ET_BIG_ENDIAN, "FF FE"},
        {0x12345678, 4, GP::ET_BIG_ENDIAN, "12 34 56 78"},
        {0x12345678, 4, GP::ET_LITTLE_ENDIAN, "78 56 34 12"},
        {INT_MIN, 4, GP::ET_BIG_ENDIAN, "80 00 00 00"},
        // Any value other than big endian means least significant byte first.
        {0x1234, 2, static_cast<GP::EndianType>(7), "34 12"},
        // Shifts wrap at 32 bits: a fifth byte repeats the lowest byte, no sign padding.
        {0x11223344, 5, GP::ET_BIG_ENDIAN, "44 11 22 33 44"},
        {0x11223344, 5, GP::ET_LITTLE_ENDIAN, "44 33 22 11 44"},
        {-1, 6, GP::ET_LITTLE_ENDIAN, "FF FF FF FF FF FF"},
        {0x1234, 0, GP::ET_BIG_ENDIAN, ""},
        {0x1234, -3, GP::ET_LITTLE_ENDIAN, ""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(hex_text(GP::int32_t_2_byte(c.value, c.count, c.endian)), c.expected)
            << "value " << c.value << " count " << c.count << " endian " << c.endian;
    }
}

TEST(GripperProtocolConversion, BytesToInt) {
    struct Case {
        const char* bytes;
        GP::EndianType endian;
        int32_t expected;
        const char* log;
    };
    const Case cases[] = {
        {"12 34", GP::ET_BIG_ENDIAN, 0x1234, nullptr},
        {"12 34", GP::ET_LITTLE_ENDIAN, 0x3412, nullptr},
        {"2C", GP::ET_BIG_ENDIAN, 0x2C, nullptr},
        {"01 02 03", GP::ET_BIG_ENDIAN, 0x010203, nullptr},
        {"01 02 03", GP::ET_LITTLE_ENDIAN, 0x030201, nullptr},
        {"FF FF", GP::ET_BIG_ENDIAN, 65535, nullptr},
        {"FF FF FF FF", GP::ET_LITTLE_ENDIAN, -1, nullptr},
        {"80 00 00 00", GP::ET_BIG_ENDIAN, INT_MIN, nullptr},
        {"E8 03 00 00", static_cast<GP::EndianType>(-4), 1000, nullptr},
        {"", GP::ET_BIG_ENDIAN, 0, "0 == byte_stream.size()"},
        {"01 02 03 04 05", GP::ET_BIG_ENDIAN, 0, "byte_stream.size() > 4"},
        {"01 02 03 04 05", GP::ET_LITTLE_ENDIAN, 0, "byte_stream.size() = 5"},
    };
    for (const Case& c : cases) {
        LogCapture log;
        EXPECT_EQ(GP::byte_2_int32_t(frame(c.bytes), c.endian), c.expected) << c.bytes;
        if (c.log) {
            EXPECT_TRUE(log.contains(c.log)) << c.bytes;
        } else {
            EXPECT_TRUE(log.lines().empty()) << c.bytes;
        }
    }
}

TEST(GripperProtocolConversion, RoundTripsEveryWidthAndOrder) {
    const int values[] = {0, 1, 0x7F, 0x80, 0xFF, 0x1234, 0xABCDEF, 0x7FFFFFFF, -1, INT_MIN};
    const GP::EndianType orders[] = {GP::ET_BIG_ENDIAN, GP::ET_LITTLE_ENDIAN};
    for (int value : values) {
        for (GP::EndianType endian : orders) {
            for (int count = 1; count <= 4; ++count) {
                const uint32_t mask = (count == 4) ? 0xFFFFFFFFu : ((1u << (8 * count)) - 1);
                const int32_t expected = static_cast<int32_t>(static_cast<uint32_t>(value) & mask);
                EXPECT_EQ(GP::byte_2_int32_t(GP::int32_t_2_byte(value, count, endian), endian),
                          expected)
                    << "value " << value << " count " << count << " endian " << endian;
            }
        }
    }
}

TEST(GripperProtocolRecord, StartsUndecoded) {
    const AbstractPackageData data;
    EXPECT_EQ(data.package_type_, GP::PT_UNDEFINE);
    EXPECT_EQ(data.id_, 255);
    EXPECT_TRUE(data.version_.empty());
    EXPECT_EQ(data.model_series_, 0);
    EXPECT_EQ(data.feedback_, GP::F_UNDEFINE);
    EXPECT_EQ(data.initialize_value_, -1);
    EXPECT_EQ(data.force_value_, -1);
    EXPECT_EQ(data.position_value_, -1);
    EXPECT_EQ(data.speed_value_, -1);
    EXPECT_EQ(data.spare_value_, -1);
}

TEST(GripperProtocolModelSeries, HoldsEveryCodeOnce) {
    struct Row {
        const char* code;
        int32_t series;
    };
    const Row rows[] = {
        {"00 00", 1}, {"02 00", 1}, {"02 02", 1}, {"02 03", 1}, {"02 04", 1}, {"02 05", 1},
        {"02 06", 1}, {"02 07", 1}, {"01 00", 2}, {"10 00", 3}, {"11 00", 3}, {"12 00", 3},
        {"20 00", 3}, {"21 00", 3}, {"22 00", 3}, {"23 00", 3}, {"24 00", 3}, {"30 00", 3},
        {"31 00", 3}, {"40 00", 3}, {"50 00", 3},
    };
    const auto& map = GP::map_model_series;
    for (const Row& row : rows) {
        const auto iter = map.find(frame(row.code));
        ASSERT_NE(iter, map.end()) << row.code;
        EXPECT_EQ(iter->second, row.series) << row.code;
    }
    // 02 07 is listed twice but stored once.
    EXPECT_EQ(map.size(), sizeof(rows) / sizeof(rows[0]));
    EXPECT_EQ(map.count(frame("02 01")), 0u);
    EXPECT_EQ(map.count(frame("02")), 0u);
    EXPECT_EQ(map.count(frame("02 07 00")), 0u);
}

}  // namespace
