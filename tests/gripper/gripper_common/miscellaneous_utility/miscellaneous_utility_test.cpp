#include "gripper/gripper_common/miscellaneous_utility/miscellaneous_utility.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/test_support/log_capture.h"

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

TEST(MiscellaneousUtilityTest, ChecksIpAddressesAndPorts) {
    check(MU::is_valid_ip, {{"0.0.0.0", {}},
                            {"255.255.255.255", {}},
                            {"4294967296.1.1.1", {"W a < 0 || a > 255"}},
                            {"192.168.1.10abc", {}},
                            {"256.1.1.1", {"W a < 0 || a > 255"}},
                            {"1.256.1.1", {"W b < 0 || b > 255"}},
                            {"1.1.-1.1", {"W c < 0 || c > 255"}},
                            {"1.1.1.300", {"W d < 0 || d > 255"}},
                            {"", {kIpScan, "W ip = "}}});
    check(MU::is_valid_port, {{"1024", {}},
                              {"65535", {}},
                              {"8080x", {}},
                              {"1023", {"W a < 1024 || a > 65535"}},
                              {"65536", {"W a < 1024 || a > 65535"}},
                              {"", {kPortScan, "W port = "}}});
}

}  // namespace
