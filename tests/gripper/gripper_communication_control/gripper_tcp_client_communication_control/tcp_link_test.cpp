// The TCP link against a loopback server on which the test plays the gripper.

#include <gtest/gtest.h>

#include <fcntl.h>

#include <thread>
#include <tuple>

#include "gripper/gripper_communication_control/gripper_tcp_client_communication_control/gripper_tcp_client_communication_control.h"
#include "gripper/gripper_protocol/gripper_custom_protocol/gripper_custom_protocol.h"
#include "tests/test_support/log_capture.h"
#include "tests/test_support/loopback_server.h"
#include "tests/test_support/recording_observer.h"
#include "tests/test_support/wait_until.h"

namespace {

typedef GripperLinkFailure LF;

// The TCP link with the custom frame protocol already chosen, as after a handshake.
class TcpLink : public GripperTCPClientCommunicationControl {
public:
    TcpLink() { set_protocol(new GripperCustomProtocol()); }
    void set_protocol(GripperProtocol* protocol) {
        delete gripper_protocol_;
        gripper_protocol_ = protocol;
    }
};

const char kWaitTimeOut[] =
    "W !waitForLengthAvailable(readLength, getDefaultWaitForLengthAvailableInterval())";

// The position read of gripper 1.
const Bytes kRequest = GripperCustomProtocol().build_position_protocol(1, false, 0);

// The request with value in its value field: the gripper's answer to a position read.
Bytes answer(uint8_t value) {
    Bytes frame = kRequest;
    frame[GripperCustomProtocol::OFFSET_VALUE] = value;
    return frame;
}

// A TCP link and the loopback server whose gripper the test plays.
class TcpLinkTest : public ::testing::Test {
protected:
    void SetUp() override { link_.add_notify_interface(&observer_); }

    bool open_link() { return link_.open({"CO_MANUAL", "127.0.0.1", server_.port()}); }
    bool connect_link() { return open_link() && server_.accept_client(); }

    Bytes exchange() {
        return link_.write_read(false, GripperCustomProtocol::FRAME_LENGTH, kRequest);
    }

    LogCapture log_;
    LoopbackServer server_;
    RecordingObserver observer_;
    TcpLink link_;
};

}  // namespace

TEST_F(TcpLinkTest, RefusedParametersLogWhyAndConnectNothing) {
    const std::string port = server_.port();
    const int descriptor = next_descriptor();
    // Parameters, the failure's log line and its code; all fail before any socket exists but the
    // last, whose address passes the check, which ignores trailing text, but is no address.
    const std::vector<std::tuple<std::vector<std::string>, std::string, LF::Code>> cases = {
        {{}, "E list_parameters.size() < 2", LF::LF_PARAMETERS},
        {{"CO_BOGUS", "127.0.0.1", port},
         "W MiscellaneousUtility::ConnectOperate::CO_UNDEFINE == type",
         LF::LF_PARAMETERS},
        {{"CO_SCAN", "127.0.0.1", port}, "W 2 != real_parameters.size()", LF::LF_PARAMETERS},
        {{"CO_MANUAL", "127.0.0.1"}, "W 3 != list_parameters.size()", LF::LF_PARAMETERS},
        {{"CO_MANUAL", "127.0.0.256", port},
         "W !MiscellaneousUtility::is_valid_ip(ip)",
         LF::LF_PARAMETERS},
        {{"CO_MANUAL", "127.0.0.1", "1023"},
         "W !MiscellaneousUtility::is_valid_port(port)",
         LF::LF_PARAMETERS},
        {{"CO_MANUAL", "127.0.0.1abc", port},
         "W 1 != inet_pton(AF_INET, ip.c_str(), &address.sin_addr)",
         LF::LF_PARAMETERS},
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
        EXPECT_FALSE(link_.write(kRequest));
        EXPECT_TRUE(log_.contains("-1 == private_->socket_"));
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

TEST_F(TcpLinkTest, ConnectsWithTheLinkIdentityAndCloseResetsTheConnection) {
    ASSERT_TRUE(connect_link());
    EXPECT_TRUE(log_.contains("ip.c_str() = 127.0.0.1"));
    EXPECT_TRUE(log_.contains("port.c_str() = " + server_.port()));
    EXPECT_EQ(GripperCommunication::CC_TCP_CLIENT, link_.get_communication_connection());
    EXPECT_EQ(TCP_ESTABLISHED, server_.client_state());
    EXPECT_TRUE(link_.close());
    // After an orderly close the server's end would wait in CLOSE_WAIT and could still send.
    EXPECT_TRUE(wait_until([this] { return TCP_CLOSE == server_.client_state(); }));
    EXPECT_FALSE(server_.client().write({0x01}));
    EXPECT_TRUE(observer_.events().empty());
}

TEST_F(TcpLinkTest, SilentGripperGetsOneRequestAndFourWaits) {
    ASSERT_TRUE(connect_link());
    EXPECT_TRUE(exchange().empty());
    EXPECT_EQ(kRequest, server_.client().read(kRequest.size()));
    EXPECT_FALSE(server_.client().readable(0));
    EXPECT_EQ(4, log_.count(kWaitTimeOut));
    EXPECT_EQ(GripperCommunication::CS_READ_EXCEPTION, link_.get_communication_status());

    // Only the first exhausted exchange reports the read exception.
    link_.set_communication_status(GripperCommunication::CS_CONNECTED);
    EXPECT_TRUE(exchange().empty());
    EXPECT_EQ(kRequest, server_.client().read(kRequest.size()));
    EXPECT_EQ(8, log_.count(kWaitTimeOut));
    EXPECT_EQ(GripperCommunication::CS_CONNECTED, link_.get_communication_status());
    EXPECT_EQ(1, observer_.count("CS_READ_EXCEPTION"));
}

TEST_F(TcpLinkTest, DroppedFrameInPlaceOfTheAnswerIsReportedAndTheAnswerStillRead) {
    ASSERT_TRUE(connect_link());
    link_.set_gripper_status(GripperLogicControl::GS_DETECTED);
    const Bytes dropped = {0xFF, 0xFE, 0xFD, 0xFC, 0x01, 0x15, 0x01,
                           0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0xFB};
    std::thread answering([&] {
        if (kRequest == server_.client().read(kRequest.size(), std::chrono::seconds(5))) {
            server_.client().write(dropped);
            server_.client().write(answer(40));
        }
    });
    EXPECT_EQ(answer(40), exchange());
    answering.join();
    EXPECT_EQ(GripperLogicControl::GS_DROPPED, link_.get_gripper_status());
    EXPECT_EQ(0, log_.count(kWaitTimeOut));

    // A dropped frame and no answer: the exchange gives up after its usual waits.
    link_.set_gripper_status(GripperLogicControl::GS_DETECTED);
    std::thread dropping([&] {
        if (kRequest == server_.client().read(kRequest.size(), std::chrono::seconds(5))) {
            server_.client().write(dropped);
        }
    });
    EXPECT_TRUE(exchange().empty());
    dropping.join();
    EXPECT_EQ(GripperLogicControl::GS_DROPPED, link_.get_gripper_status());
    EXPECT_EQ(4, log_.count(kWaitTimeOut));
}
