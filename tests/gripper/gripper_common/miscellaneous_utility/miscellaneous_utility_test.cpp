#include "gripper/gripper_common/miscellaneous_utility/miscellaneous_utility.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "tests/test_support/log_capture.h"
#include "tests/test_support/wait_until.h"

namespace {

typedef MiscellaneousUtility MU;
typedef std::vector<std::string> Lines;

const char kIpScan[] = "W 4 != sscanf(ip.c_str(), \"%d.%d.%d.%d\", &a, &b, &c, &d)";
const char kPortScan[] = "W 1 != sscanf(port.c_str(), \"%d\", &a)";

// Each case: the text, the result and the lines logged, in order.
void check(bool (*is_valid)(const std::string&),
           const std::vector<std::pair<std::string, Lines>>& valid_or_refused) {
    for (const auto& address : valid_or_refused) {
        LogCapture log;
        EXPECT_EQ(address.second.empty(), is_valid(address.first)) << address.first;
        EXPECT_EQ(address.second, log.lines()) << address.first;
    }
}

TEST(MiscellaneousUtilityTest, ChecksIpAddresses) {
    check(MU::is_valid_ip, {{"0.0.0.0", {}},
                            {"255.255.255.255", {}},
                            {"4294967296.1.1.1", {"W a < 0 || a > 255"}},
                            {"192.168.1.10abc", {}},
                            {"256.1.1.1", {"W a < 0 || a > 255"}},
                            {"1.256.1.1", {"W b < 0 || b > 255"}},
                            {"1.1.-1.1", {"W c < 0 || c > 255"}},
                            {"1.1.1.300", {"W d < 0 || d > 255"}},
                            {"", {kIpScan, "W ip = "}}});
}

TEST(MiscellaneousUtilityTest, ChecksPorts) {
    check(MU::is_valid_port, {{"1024", {}},
                              {"65535", {}},
                              {"8080x", {}},
                              {"1023", {"W a < 1024 || a > 65535"}},
                              {"65536", {"W a < 1024 || a > 65535"}},
                              {"", {kPortScan, "W port = "}}});
}

// The monotonic clock in milliseconds, wrapped to 32 bits: it lies between two readings of the
// steady clock taken around it, and it advances.
TEST(MiscellaneousUtilityTest, CountsMonotonicMilliseconds) {
    const auto elapsed = [](int32_t earlier, int32_t later) {
        return static_cast<int32_t>(static_cast<uint32_t>(later) - static_cast<uint32_t>(earlier));
    };
    const int32_t before = MU::current_time_millis();
    const auto steady = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
    const int32_t after = MU::current_time_millis();
    const int32_t reference = static_cast<int32_t>(static_cast<uint32_t>(steady.count()));
    EXPECT_LE(0, elapsed(before, reference));
    EXPECT_LE(0, elapsed(reference, after));
    EXPECT_TRUE(wait_until([&] { return elapsed(after, MU::current_time_millis()) >= 3; }));
}

}  // namespace
