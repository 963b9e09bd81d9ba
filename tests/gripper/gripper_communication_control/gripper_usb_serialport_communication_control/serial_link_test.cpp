// The serial link on real pseudo-terminals whose device end the test plays.

#include <gtest/gtest.h>

#include "gripper/gripper_communication_control/gripper_usb_serialport_communication_control/gripper_usb_serialport_communication_control.h"
#include "gripper/gripper_protocol/gripper_modbus_protocol/gripper_modbus_protocol.h"
#include "tests/test_support/log_capture.h"
#include "tests/test_support/pty_device.h"
#include "tests/test_support/recording_observer.h"

namespace {

typedef GripperLinkFailure LF;

// The position read of gripper 1 and the answer carrying 500.
const Bytes kRequest = GripperModbusProtocol().build_position_protocol(1, false, 0);
const Bytes kAnswer = {0x01, 0x03, 0x02, 0x01, 0xF4, 0xB8, 0x53};

class SerialLinkTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_FALSE(device_.slave_path().empty());
        link_.add_notify_interface(&observer_);
    }

    bool open_link() { return link_.open({"CO_MANUAL", device_.slave_path()}); }

    LogCapture log_;
    PtyDevice device_{kRequest};
    RecordingObserver observer_;
    GripperUSBSerialportCommunicationControl link_;
};

}  // namespace

TEST_F(SerialLinkTest, RefusedOpensLogWhyKeepTheFailureAndLeaveNoDescriptorBehind) {
    const std::string pty = device_.slave_path();
    const int descriptor = next_descriptor();
    // The parameters, the failure's log line, its code and errno.
    const struct {
        std::vector<std::string> parameters;
        const char* line;
        LF::Code code;
        int error_number;
    } cases[] = {
        {{}, "E list_parameters.size() < 2", LF::LF_PARAMETERS, 0},
        {{"CO_BOGUS", pty},
         "W MiscellaneousUtility::ConnectOperate::CO_UNDEFINE == type",
         LF::LF_PARAMETERS,
         0},
        {{"CO_SCAN", pty}, "W 1 != real_parameters.size()", LF::LF_PARAMETERS, 0},
        {{"CO_MANUAL", pty, "1"}, "W 2 != list_parameters.size()", LF::LF_PARAMETERS, 0},
        {{"CO_MANUAL", "/dev/none"},
         "W -1 == access(path.c_str(), F_OK)",
         LF::LF_NO_DEVICE,
         ENOENT},
        {{"CO_MANUAL", "/"}, "W -1 == private_->fd_", LF::LF_OPEN, EISDIR},
        {{"CO_MANUAL", "/dev/null"},
         "W 0 != tcgetattr(private_->fd_, &termios)",
         LF::LF_OPEN,
         ENOTTY},
    };
    for (const auto& refused : cases) {
        SCOPED_TRACE(refused.line);
        log_.clear();
        EXPECT_FALSE(link_.open(refused.parameters));
        EXPECT_LE(1, log_.count(refused.line));
        const GripperLinkFailure failure = link_.last_failure();
        EXPECT_EQ(refused.code, failure.code);
        EXPECT_EQ(refused.error_number, failure.error_number);
        EXPECT_EQ(refused.line + 2, failure.sentence);
    }
    EXPECT_EQ(descriptor, next_descriptor());
    EXPECT_TRUE(observer_.events().empty());
}

// A pty has no modem lines (ENOTTY), yet opens: raw, 115200 baud, 8N1, as the master reports.
TEST_F(SerialLinkTest, OpensAPseudoTerminalRawAt115200Baud8N1) {
    ASSERT_TRUE(open_link());
    EXPECT_LE(1, log_.count("W -1 == ::ioctl(private_->fd_, TIOCMBIS, &status)"));
    EXPECT_EQ(LF::LF_NONE, link_.last_failure().code);
    struct termios termios;
    ASSERT_EQ(0, tcgetattr(device_.fd(), &termios));
    EXPECT_EQ(static_cast<tcflag_t>(CS8 | CREAD | CLOCAL),
              termios.c_cflag & (CSIZE | CREAD | CLOCAL | PARENB | CSTOPB | CRTSCTS));
    EXPECT_EQ(0u, termios.c_iflag | termios.c_oflag | termios.c_lflag);
    EXPECT_EQ(static_cast<speed_t>(B115200), cfgetispeed(&termios));
    EXPECT_EQ(static_cast<speed_t>(B115200), cfgetospeed(&termios));
    EXPECT_EQ(0, termios.c_cc[VMIN] | termios.c_cc[VTIME]);
}

// The wait gives up only once its time has passed, and ends as soon as the answer is whole.
TEST_F(SerialLinkTest, WaitForAnAnswerEndsOnlyWhenItIsWholeOrItsTimeIsUp) {
    ASSERT_TRUE(open_link());
    const auto waits_its_time = [this](int millis) {
        const auto start = std::chrono::steady_clock::now();
        const bool whole =
            link_.wait_for_length_available(GripperModbusProtocol::READ_LENGTH, millis);
        return !whole &&
               std::chrono::steady_clock::now() - start >= std::chrono::milliseconds(millis - 1);
    };
    log_.clear();
    EXPECT_TRUE(waits_its_time(100));
    EXPECT_EQ(1, log_.count("W (current_time - start_time) > millis"));
    EXPECT_TRUE(log_.contains("millis = 100"));

    ASSERT_TRUE(device_.send(kAnswer));
    EXPECT_TRUE(link_.wait_for_length_available(GripperModbusProtocol::READ_LENGTH, 1000));
    EXPECT_EQ(kAnswer, link_.read(GripperModbusProtocol::READ_LENGTH));
}
