// The TCP link against a loopback server on which the test plays the gripper.

#include <gtest/gtest.h>

#include <fcntl.h>

#include <tuple>

#include "gripper/gripper_communication_control/gripper_tcp_client_communication_control/gripper_tcp_client_communication_control.h"
#include "tests/test_support/log_capture.h"
#include "tests/test_support/loopback_server.h"
#include "tests/test_support/recording_observer.h"
#include "tests/test_support/wait_until.h"

namespace {

typedef GripperLinkFailure LF;

// A TCP link and the loopback server whose gripper the test plays.
class TcpLinkTest : public ::testing::Test {
protected:
    void SetUp() override { link_.add_notify_interface(&observer_); }

    bool connect_link() {
        return link_.open({"CO_MANUAL", "127.0.0.1", server_.port()}) && server_.accept_client();
    }

    LogCapture log_;
    LoopbackServer server_;
    RecordingObserver observer_;
    GripperTCPClientCommunicationControl link_;
};

}  // namespace

TEST_F(TcpLinkTest, RefusedParametersLogWhyAndConnectNothing) {
    const std::string port = server_.port();
    const int descriptor = next_descriptor();
    // Parameters, the failure's log line and its code; all fail before any socket exists but the
    // last, whose address passes the check, which ignores trailing text, but is no address. The
    // checks both links share are rows of the serial link's table.
    const LF::Code bad = LF::LF_PARAMETERS;
    const std::vector<std::tuple<std::vector<std::string>, std::string, LF::Code>> cases = {
        {{"CO_SCAN", "127.0.0.1", port}, "W 2 != real_parameters.size()", bad},
        {{"CO_MANUAL", "127.0.0.1"}, "W 3 != list_parameters.size()", bad},
        {{"CO_MANUAL", "127.0.0.256", port}, "W !MiscellaneousUtility::is_valid_ip(ip)", bad},
        {{"CO_MANUAL", "127.0.0.1", "1023"}, "W !MiscellaneousUtility::is_valid_port(port)", bad},
        {{"CO_MANUAL", "127.0.0.1abc", port},
         "W 1 != inet_pton(AF_INET, ip.c_str(), &address.sin_addr)",
         bad},
        {{"CO_MANUAL", "127.0.0.1", LoopbackServer::unused_port()},
         "W strerror(111) = Connection refused",
         LF::LF_CONNECT},
    };
    for (const auto& refused : cases) {
        SCOPED_TRACE(std::get<1>(refused));
        log_.clear();
        EXPECT_FALSE(link_.open(std::get<0>(refused)));
        EXPECT_LE(1, log_.count(std::get<1>(refused)));
        EXPECT_EQ(LF::LF_CONNECT == std::get<2>(refused), log_.contains("ip.c_str() = "));
        EXPECT_EQ(std::get<2>(refused), link_.last_failure().code);
    }
    EXPECT_EQ(descriptor, next_descriptor());
    EXPECT_FALSE(server_.accept_client(0));
}

TEST_F(TcpLinkTest, UnansweredConnectFailsInTwiceTheWaitIntervalAndLeavesNoSocket) {
    LoopbackServer full(0);
    ASSERT_TRUE(full.fill_backlog());
    const int descriptor = next_descriptor();
    EXPECT_FALSE(link_.open({"CO_MANUAL", "127.0.0.1", full.port()}));
    EXPECT_EQ(1, log_.count("W connect timeout result = 0"));
    EXPECT_EQ(ETIMEDOUT, link_.last_failure().error_number);
    EXPECT_EQ(descriptor, next_descriptor());
    EXPECT_TRUE(observer_.events().empty());
}

TEST_F(TcpLinkTest, ConnectsLoggingItsAddressAndCloseResetsTheConnection) {
    ASSERT_TRUE(connect_link());
    EXPECT_TRUE(log_.contains("ip.c_str() = 127.0.0.1"));
    EXPECT_TRUE(log_.contains("port.c_str() = " + server_.port()));
    EXPECT_EQ(TCP_ESTABLISHED, server_.client_state());
    EXPECT_TRUE(link_.close());
    // After an orderly close the server's end would wait in CLOSE_WAIT and could still send.
    EXPECT_TRUE(wait_until([this] { return TCP_CLOSE == server_.client_state(); }));
    EXPECT_FALSE(server_.client().write({0x01}));
    EXPECT_TRUE(observer_.events().empty());
}
