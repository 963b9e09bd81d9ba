#include <chrono>
#include <thread>

#include "tests/gripper/gripper_communication_control/gripper_tcp_client_communication_control/tcp_link_fixture.h"
#include "tests/test_support/wait_until.h"

namespace {

const char WAIT_TIME_OUT[] =
    "W !waitForLengthAvailable(readLength, getDefaultWaitForLengthAvailableInterval())";

}  // namespace

TEST_F(TcpLinkTest, AnswerArrivingInPiecesIsAssembled) {
    ASSERT_TRUE(connect_link());
    std::thread gripper([this] {
        const std::vector<uint8_t> frame = answer(50);
        if (request_ == server_.receive(request_.size())) {
            server_.send(std::vector<uint8_t>(frame.begin(), frame.begin() + 5));
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            server_.send(std::vector<uint8_t>(frame.begin() + 5, frame.end()));
        }
    });
    EXPECT_EQ(answer(50), exchange());
    gripper.join();
    EXPECT_TRUE(observer_.events().empty());
}

TEST_F(TcpLinkTest, SilentGripperGetsOneRequestAndFourWaits) {
    ASSERT_TRUE(connect_link());

    EXPECT_TRUE(exchange().empty());
    EXPECT_EQ(request_, server_.receive(request_.size()));
    EXPECT_EQ(0, server_.pending());
    EXPECT_EQ(4, count_lines(log_, WAIT_TIME_OUT));
    EXPECT_EQ(GripperCommunication::CS_READ_EXCEPTION, link_.get_communication_status());

    // Only the first exhausted exchange reports the read exception.
    link_.set_communication_status(GripperCommunication::CS_CONNECTED);
    EXPECT_TRUE(exchange().empty());
    EXPECT_EQ(request_, server_.receive(request_.size()));
    EXPECT_EQ(8, count_lines(log_, WAIT_TIME_OUT));
    EXPECT_EQ(GripperCommunication::CS_CONNECTED, link_.get_communication_status());
    EXPECT_EQ(1, observer_.count("CS_READ_EXCEPTION"));
}

TEST_F(TcpLinkTest, StaleBytesAreDroppedBeforeTheRequestIsWritten) {
    ASSERT_TRUE(connect_link());
    ASSERT_TRUE(server_.send({0xAA, 0xBB, 0xCC}));
    ASSERT_TRUE(wait_until([this] { return 3 == link_.available(); }));
    std::thread gripper([this] {
        if (request_ == server_.receive(request_.size())) {
            server_.send(answer(70));
        }
    });
    EXPECT_EQ(answer(70), exchange());
    gripper.join();
    EXPECT_TRUE(log_.contains("available() > 0"));
    EXPECT_TRUE(log_.contains("0xAA 0xBB 0xCC"));
}

TEST_F(TcpLinkTest, ResetByTheGripperGivesWriteExceptionWithoutKillingTheProcess) {
    ASSERT_TRUE(connect_link());
    server_.reset_client();

    // The first send may still leave before the reset is seen; the next one fails.
    EXPECT_TRUE(wait_until([this] {
        link_.write_read(false, GripperCustomProtocol::FRAME_LENGTH, request_);
        return GripperCommunication::CS_WRITE_EXCEPTION == link_.get_communication_status();
    }));
    EXPECT_EQ(1, observer_.count("CS_WRITE_EXCEPTION"));

    // Writing again to the dead connection is a broken pipe: reported, no SIGPIPE.
    link_.set_communication_status(GripperCommunication::CS_CONNECTED);
    EXPECT_FALSE(link_.write(request_));
    EXPECT_TRUE(log_.contains("Broken pipe"));
    EXPECT_EQ(GripperCommunication::CS_WRITE_EXCEPTION, link_.get_communication_status());
    EXPECT_TRUE(link_.close());
}

TEST_F(TcpLinkTest, BadCallsFailWithoutWritingAnything) {
    EXPECT_TRUE(exchange().empty());
    EXPECT_TRUE(link_.read(14).empty());
    EXPECT_EQ(0, link_.available());
    EXPECT_FALSE(link_.write(request_));
    EXPECT_TRUE(log_.contains("-1 == private_->socket_"));

    ASSERT_TRUE(connect_link());
    EXPECT_TRUE(link_.read(-1).empty());
    EXPECT_TRUE(link_.read(0).empty());
    EXPECT_TRUE(link_.write_read(false, -1, request_).empty());
    link_.set_protocol(nullptr);
    EXPECT_TRUE(exchange().empty());
    EXPECT_TRUE(log_.contains("NULL == gripper_protocol_"));
    EXPECT_EQ(0, server_.pending());
    EXPECT_TRUE(observer_.events().empty());
}
