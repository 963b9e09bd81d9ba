#include "gripper/gripper_common/miscellaneous_utility/miscellaneous_utility.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "tests/test_support/log_capture.h"

namespace {

using Lines = std::vector<std::string>;

TEST(MiscellaneousUtilityTest, NamesConnectOperations) {
    const std::vector<std::pair<MiscellaneousUtility::ConnectOperate, std::string>> names = {
        {MiscellaneousUtility::CO_UNDEFINE, "CO_UNDEFINE"},
        {MiscellaneousUtility::CO_MANUAL, "CO_MANUAL"},
        {MiscellaneousUtility::CO_SCAN, "CO_SCAN"}};
    LogCapture log;
    for (const auto& name : names) {
        EXPECT_EQ(name.second, MiscellaneousUtility::connect_operate_to_string(name.first));
        EXPECT_EQ(name.first, MiscellaneousUtility::string_to_connect_operate(name.second));
    }
    EXPECT_TRUE(log.lines().empty());

    EXPECT_EQ("", MiscellaneousUtility::connect_operate_to_string(
                      static_cast<MiscellaneousUtility::ConnectOperate>(10)));
    EXPECT_EQ(MiscellaneousUtility::CO_UNDEFINE,
              MiscellaneousUtility::string_to_connect_operate("co_scan"));
    EXPECT_EQ(MiscellaneousUtility::CO_UNDEFINE,
              MiscellaneousUtility::string_to_connect_operate("CO_SCAN "));
    ASSERT_EQ(3u, log.lines().size());
    EXPECT_TRUE(log.contains("uncontain this 10"));
    EXPECT_TRUE(log.contains("uncontain this co_scan"));
    EXPECT_TRUE(log.contains("uncontain this CO_SCAN "));
}

struct AddressCase {
    std::string text;
    bool valid;
    Lines log;
};

const char kIpScan[] = "4 != sscanf(ip.c_str(), \"%d.%d.%d.%d\", &a, &b, &c, &d)";
const char kPortScan[] = "1 != sscanf(port.c_str(), \"%d\", &a)";

// Each case: the result and the texts of the lines logged, in order.
void check_addresses(bool (*is_valid)(const std::string&), const std::vector<AddressCase>& cases) {
    for (const AddressCase& address : cases) {
        LogCapture log;
        EXPECT_EQ(address.valid, is_valid(address.text)) << address.text;
        const Lines lines = log.lines();
        ASSERT_EQ(address.log.size(), lines.size()) << address.text;
        for (size_t i = 0; i < lines.size(); ++i) {
            EXPECT_EQ(address.log[i], lines[i].substr(lines[i].find(' ') + 1)) << address.text;
        }
    }
}

TEST(MiscellaneousUtilityTest, ChecksIpAddresses) {
    check_addresses(MiscellaneousUtility::is_valid_ip,
                    {{"0.0.0.0", true, {}},
                     {"255.255.255.255", true, {}},
                     {"192.168.1.10abc", true, {}},
                     {"256.1.1.1", false, {"a < 0 || a > 255"}},
                     {"-1.0.0.0", false, {"a < 0 || a > 255"}},
                     {"1.256.1.1", false, {"b < 0 || b > 255"}},
                     {"1.1.-1.1", false, {"c < 0 || c > 255"}},
                     {"1.1.1.300", false, {"d < 0 || d > 255"}},
                     {"300.300.300.300", false, {"a < 0 || a > 255"}},
                     {"4294967296.1.1.1", false, {"a < 0 || a > 255"}},
                     {"1.1.1.4294967297", false, {"d < 0 || d > 255"}},
                     {"10.0.0", false, {kIpScan, "ip = 10.0.0"}},
                     {"", false, {kIpScan, "ip = "}},
                     {"host.example", false, {kIpScan, "ip = host.example"}}});
}

TEST(MiscellaneousUtilityTest, ChecksPorts) {
    check_addresses(MiscellaneousUtility::is_valid_port,
                    {{"1024", true, {}},
                     {"65535", true, {}},
                     {"8080x", true, {}},
                     {"1023", false, {"a < 1024 || a > 65535"}},
                     {"65536", false, {"a < 1024 || a > 65535"}},
                     {"-1", false, {"a < 1024 || a > 65535"}},
                     {"4294968320", false, {"a < 1024 || a > 65535"}},
                     {"99999999999999999999999", false, {"a < 1024 || a > 65535"}},
                     {"abc", false, {kPortScan, "port = abc"}},
                     {"", false, {kPortScan, "port = "}}});
}

TEST(MiscellaneousUtilityTest, WritesBytesAsUpperCaseHex) {
    EXPECT_EQ("0xFF 0x03 ", MiscellaneousUtility::convert_hex_binary({0xFF, 0x03}));
    EXPECT_EQ(10u, MiscellaneousUtility::convert_hex_binary({0xFF, 0x03}).size());
    EXPECT_EQ("0x01 0xAB ", MiscellaneousUtility::convert_hex_binary({0x01, 0xAB}));
    EXPECT_EQ("", MiscellaneousUtility::convert_hex_binary({}));

    std::vector<uint8_t> every_byte;
    std::string expected;
    for (int value = 0; value < 256; ++value) {
        every_byte.push_back(static_cast<uint8_t>(value));
        char group[8];
        snprintf(group, sizeof(group), "0x%02X ", static_cast<unsigned int>(value));
        expected += group;
    }
    EXPECT_EQ(expected, MiscellaneousUtility::convert_hex_binary(every_byte));
}

// The monotonic clock in milliseconds, wrapped to 32 bits as current_time_millis computes it.
int32_t steady_millis() {
    const auto since_start = std::chrono::steady_clock::now().time_since_epoch();
    const auto millis = std::chrono::duration_cast<std::chrono::milliseconds>(since_start);
    return static_cast<int32_t>(static_cast<uint32_t>(millis.count()));
}

// Wrap-safe difference later - earlier.
int32_t elapsed(int32_t earlier, int32_t later) {
    return static_cast<int32_t>(static_cast<uint32_t>(later) - static_cast<uint32_t>(earlier));
}

TEST(MiscellaneousUtilityTest, CountsMonotonicMilliseconds) {
    const int32_t before = MiscellaneousUtility::current_time_millis();
    const int32_t reference = steady_millis();
    const int32_t after = MiscellaneousUtility::current_time_millis();
    EXPECT_LE(0, elapsed(before, reference));
    EXPECT_LE(0, elapsed(reference, after));

    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    int32_t previous = after;
    while (elapsed(after, previous) < 3 && std::chrono::steady_clock::now() < deadline) {
        const int32_t now = MiscellaneousUtility::current_time_millis();
        ASSERT_LE(0, elapsed(previous, now));
        previous = now;
    }
    EXPECT_LE(3, elapsed(after, previous));
}

}  // namespace
