#include "tests/gripper/gripper_communication_control/gripper_usb_serialport_communication_control/serial_link_fixture.h"
#include "tests/test_support/wait_until.h"

namespace {

const uint16_t POSITION = 0x01F4;

}  // namespace

TEST_F(SerialLinkTest, AnswerArrivingInPiecesIsAssembled) {
    device_.serve(request_.size(), [this](int, const std::vector<uint8_t>& request) {
        device_.trickle(modbus_read_answer(request, POSITION));
    });
    ASSERT_TRUE(open_link());

    EXPECT_EQ(modbus_read_answer(request_, POSITION), exchange());
    EXPECT_EQ(1, device_.requests());
    EXPECT_TRUE(observer_.events().empty());
}

TEST_F(SerialLinkTest, SilentDeviceGetsFiveWritesThenReadException) {
    device_.serve(request_.size(), [](int, const std::vector<uint8_t>&) {});
    ASSERT_TRUE(open_link());

    EXPECT_TRUE(exchange().empty());
    // The retry cap: the fifth write is sent but its answer is not awaited.
    EXPECT_TRUE(log_.contains("count > 3"));
    EXPECT_TRUE(wait_until([this] { return 5 == device_.requests(); }));
    EXPECT_EQ(5 * static_cast<long>(request_.size()), device_.bytes_received());
    EXPECT_EQ(GripperCommunication::CS_READ_EXCEPTION, link_.get_communication_status());
    EXPECT_EQ(std::vector<std::string>{"CS_READ_EXCEPTION"}, observer_.events());
}

TEST_F(SerialLinkTest, WithoutRetryCapOnlyTheFirstExhaustionReportsReadException) {
    link_.set_retry_cap(false);
    device_.serve(request_.size(), [](int, const std::vector<uint8_t>&) {});
    ASSERT_TRUE(open_link());

    EXPECT_TRUE(exchange().empty());
    EXPECT_TRUE(wait_until([this] { return 5 == device_.requests(); }));
    EXPECT_EQ(GripperCommunication::CS_READ_EXCEPTION, link_.get_communication_status());
    EXPECT_FALSE(log_.contains("count > 3"));

    link_.set_communication_status(GripperCommunication::CS_CONNECTED);
    EXPECT_TRUE(exchange().empty());
    EXPECT_TRUE(wait_until([this] { return 10 == device_.requests(); }));
    EXPECT_EQ(GripperCommunication::CS_CONNECTED, link_.get_communication_status());
    EXPECT_EQ(1, observer_.count("CS_READ_EXCEPTION"));
}

TEST_F(SerialLinkTest, RejectedAnswerIsDiscardedAndTheNextPassAccepted) {
    device_.serve(request_.size(), [this](int index, const std::vector<uint8_t>& request) {
        std::vector<uint8_t> answer = modbus_read_answer(request, POSITION);
        if (0 == index) {
            answer.back() ^= 0xFF;
        }
        device_.send(answer);
    });
    ASSERT_TRUE(open_link());

    EXPECT_EQ(modbus_read_answer(request_, POSITION), exchange());
    EXPECT_EQ(2, device_.requests());
    EXPECT_TRUE(
        log_.contains("!gripper_protocol_->compare_package(set, write_stream, read_byte_stream)"));
    EXPECT_TRUE(observer_.events().empty());
}

TEST_F(SerialLinkTest, StaleBytesAreDroppedBeforeTheRequestIsWritten) {
    device_.serve(request_.size(), [this](int, const std::vector<uint8_t>& request) {
        device_.send(modbus_read_answer(request, POSITION));
    });
    ASSERT_TRUE(open_link());
    ASSERT_TRUE(device_.send({0xAA, 0xBB, 0xCC}));
    ASSERT_TRUE(wait_until([this] { return 3 == link_.available(); }));

    EXPECT_EQ(modbus_read_answer(request_, POSITION), exchange());
    EXPECT_TRUE(log_.contains("length > 0"));
    EXPECT_TRUE(log_.contains("0xAA 0xBB 0xCC"));
    EXPECT_EQ(1, device_.requests());
}

TEST_F(SerialLinkTest, VanishedDeviceGivesWriteExceptionAndNothingElse) {
    ASSERT_TRUE(open_link());
    device_.close_device();

    EXPECT_TRUE(exchange().empty());
    EXPECT_EQ(GripperCommunication::CS_WRITE_EXCEPTION, link_.get_communication_status());
    EXPECT_EQ(std::vector<std::string>{"CS_WRITE_EXCEPTION"}, observer_.events());

    log_.clear();
    EXPECT_TRUE(exchange().empty());
    EXPECT_EQ(0, link_.available());
    EXPECT_TRUE(link_.read(7).empty());
    EXPECT_FALSE(link_.write(request_));
    EXPECT_TRUE(log_.contains("occur_exception()"));
    EXPECT_TRUE(link_.close());
}

TEST_F(SerialLinkTest, BadCallsFailWithoutWritingAnything) {
    device_.serve(request_.size(), [this](int, const std::vector<uint8_t>& request) {
        device_.send(modbus_read_answer(request, POSITION));
    });
    EXPECT_TRUE(exchange().empty());
    EXPECT_TRUE(link_.read(7).empty());
    EXPECT_EQ(0, link_.available());
    EXPECT_TRUE(log_.contains("-1 == private_->fd_"));

    ASSERT_TRUE(open_link());
    EXPECT_TRUE(link_.read(-1).empty());
    EXPECT_TRUE(link_.read(0).empty());
    EXPECT_TRUE(link_.write(std::vector<uint8_t>()));
    EXPECT_TRUE(link_.write_read(false, -1, request_).empty());
    link_.forget_protocol();
    EXPECT_TRUE(exchange().empty());
    EXPECT_TRUE(log_.contains("NULL == gripper_protocol_"));

    // The first bytes the device sees are those of a proper exchange.
    link_.set_protocol(new GripperModbusProtocol());
    EXPECT_EQ(modbus_read_answer(request_, POSITION), exchange());
    EXPECT_EQ(static_cast<long>(request_.size()), device_.bytes_received());
    EXPECT_TRUE(observer_.events().empty());
}
