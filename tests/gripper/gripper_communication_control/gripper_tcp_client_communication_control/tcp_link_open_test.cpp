#include <dirent.h>

#include "tests/gripper/gripper_communication_control/gripper_tcp_client_communication_control/tcp_link_fixture.h"
#include "tests/test_support/wait_until.h"

namespace {

int open_descriptor_count() {
    DIR* directory = opendir("/proc/self/fd");
    int count = 0;
    while (nullptr != readdir(directory)) {
        ++count;
    }
    closedir(directory);
    return count;
}

}  // namespace

TEST_F(TcpLinkTest, RefusedParametersLogWhyAndConnectNothing) {
    const std::string port = server_.port();
    // The closing line shows that the failure came before any socket existed.
    const std::string no_socket = "W -1 == private_->socket_";
    const std::vector<std::pair<std::vector<std::string>, std::vector<std::string>>> cases = {
        {{}, {"E list_parameters.size() < 2", no_socket}},
        {{"CO_MANUAL"}, {"E list_parameters.size() < 2", "E CO_MANUAL", no_socket}},
        {{"CO_BOGUS", "127.0.0.1", port},
         {"W MiscellaneousUtility::ConnectOperate::CO_UNDEFINE == type", no_socket}},
        {{"CO_SCAN", "127.0.0.1", port}, {"W 2 != real_parameters.size()", no_socket}},
        {{"CO_MANUAL", "127.0.0.1"}, {"W 3 != list_parameters.size()", no_socket}},
        {{"CO_MANUAL", "127.0.0", port},
         {"W !MiscellaneousUtility::is_valid_ip(ip)", "W ip = 127.0.0", no_socket}},
        {{"CO_MANUAL", "127.0.0.256", port},
         {"W !MiscellaneousUtility::is_valid_ip(ip)", "W ip = 127.0.0.256", no_socket}},
        {{"CO_MANUAL", "127.0.0.1", "1023"},
         {"W !MiscellaneousUtility::is_valid_port(port)", "W port = 1023", no_socket}},
        // Passes the address check, which ignores trailing text, but is no address.
        {{"CO_MANUAL", "127.0.0.1abc", port},
         {"W 1 != inet_pton(AF_INET, ip.c_str(), &address.sin_addr)"}},
    };
    for (const auto& refused : cases) {
        SCOPED_TRACE(refused.second.front());
        log_.clear();
        EXPECT_FALSE(link_.open(refused.first));
        for (const std::string& line : refused.second) {
            EXPECT_LE(1, count_lines(log_, line)) << line;
        }
        EXPECT_FALSE(log_.contains("ip.c_str() = "));
    }
    EXPECT_FALSE(server_.accept_client(0));
}

TEST_F(TcpLinkTest, RefusedPortFailsAndClosesTheSocket) {
    EXPECT_FALSE(link_.open({"CO_MANUAL", "127.0.0.1", LoopbackServer::unused_port()}));
    EXPECT_TRUE(log_.contains("Connection refused"));
    log_.clear();
    EXPECT_FALSE(link_.write(request_));
    EXPECT_TRUE(log_.contains("-1 == private_->socket_"));
    EXPECT_TRUE(observer_.events().empty());
}

TEST_F(TcpLinkTest, ConnectThatIsNeverAnsweredTimesOut) {
    LoopbackServer full(0);
    ASSERT_TRUE(full.fill_backlog());

    EXPECT_FALSE(link_.open({"CO_MANUAL", "127.0.0.1", full.port()}));
    EXPECT_EQ(1, count_lines(log_, "W connect timeout result = 0"));
    log_.clear();
    EXPECT_FALSE(link_.write(request_));
    EXPECT_TRUE(log_.contains("-1 == private_->socket_"));
}

TEST_F(TcpLinkTest, FailedOpensLeaveNoDescriptorBehind) {
    LoopbackServer full(0);
    ASSERT_TRUE(full.fill_backlog());
    const std::string unused = LoopbackServer::unused_port();
    const int before = open_descriptor_count();
    for (int round = 0; round < 20; ++round) {
        EXPECT_FALSE(link_.open({"CO_SCAN", "127.0.0.1", server_.port()}));
        EXPECT_FALSE(link_.open({"CO_MANUAL", "127.0.0.1abc", server_.port()}));
        EXPECT_FALSE(link_.open({"CO_MANUAL", "127.0.0.1", unused}));
    }
    EXPECT_FALSE(link_.open({"CO_MANUAL", "127.0.0.1", full.port()}));
    EXPECT_EQ(before, open_descriptor_count());
}

TEST_F(TcpLinkTest, ConnectsWithTheLinkIdentityAndLimits) {
    ASSERT_TRUE(connect_link());
    EXPECT_TRUE(log_.contains("ip.c_str() = 127.0.0.1"));
    EXPECT_TRUE(log_.contains("port.c_str() = " + server_.port()));
    EXPECT_EQ(GripperCommunication::CC_TCP_CLIENT, link_.get_communication_connection());
    EXPECT_TRUE(link_.handshake_check());
    EXPECT_TRUE(link_.is_alive());
    EXPECT_EQ(1, link_.get_write_retry_max_count());
    EXPECT_EQ(4, link_.get_wait_retry_max_count());
    EXPECT_EQ(4, link_.get_alive_retry_max_count());
    EXPECT_EQ(100, link_.get_default_wait_for_length_available_interval());
    EXPECT_EQ(TCP_ESTABLISHED, server_.client_state());
}

TEST_F(TcpLinkTest, CloseResetsTheConnection) {
    ASSERT_TRUE(connect_link());
    EXPECT_TRUE(link_.close());

    // After an orderly close the server's end would wait in CLOSE_WAIT and could still send.
    EXPECT_TRUE(wait_until([this] { return TCP_CLOSE == server_.client_state(); }));
    EXPECT_FALSE(server_.send({0x01}));

    log_.clear();
    EXPECT_TRUE(link_.close());
    EXPECT_TRUE(log_.contains("-1 == private_->socket_"));
    EXPECT_TRUE(observer_.events().empty());
}
