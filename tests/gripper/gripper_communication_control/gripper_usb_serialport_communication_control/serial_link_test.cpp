// The serial link on real pseudo-terminals whose device end the test plays.

#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <thread>

#include "gripper/gripper_communication_control/gripper_usb_serialport_communication_control/gripper_usb_serialport_communication_control.h"
#include "gripper/gripper_protocol/gripper_modbus_protocol/gripper_modbus_protocol.h"
#include "tests/test_support/child_process.h"
#include "tests/test_support/fd_stream.h"
#include "tests/test_support/log_capture.h"
#include "tests/test_support/recording_observer.h"
#include "tests/test_support/wait_until.h"

namespace {

// The device end of a serial line: by default the master of a new pseudo-terminal pair whose
// slave the link opens; or any other terminal handed over by the test.
class PtyDevice {
public:
    // Called on the device's thread for every complete request, counted from 0.
    typedef std::function<void(int index, const Bytes& request)> Handler;

    PtyDevice() : stream_(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK)) {
        char name[64] = {0};
        if (0 == grantpt(fd()) && 0 == unlockpt(fd()) && 0 == ptsname_r(fd(), name, sizeof(name))) {
            slave_path_ = name;
        }
    }
    explicit PtyDevice(FdStream stream) : stream_(std::move(stream)) {}
    ~PtyDevice() { close_device(); }

    const std::string& slave_path() const { return slave_path_; }
    int fd() const { return stream_.fd(); }
    bool send(const Bytes& bytes) { return stream_.write(bytes); }
    // Complete requests received so far; counted before the handler answers.
    int requests() const { return requests_; }
    // Every byte received so far (requests and partial requests).
    long bytes_received() const { return bytes_received_; }

    // Hands each request of request_length bytes to handler until the device is closed.
    void serve(size_t request_length, Handler handler) {
        thread_ = std::thread([this, request_length, handler] {
            Bytes pending;
            while (!stop_) {
                uint8_t buffer[256];
                const ssize_t size = stream_.readable(10) ? ::read(fd(), buffer, 256) : 0;
                if (size < 0) {
                    // No slave open yet, or it was closed: nothing to read until it opens again.
                    std::this_thread::sleep_for(std::chrono::milliseconds(5));
                    continue;
                }
                bytes_received_ += size;
                pending.insert(pending.end(), buffer, buffer + size);
                while (pending.size() >= request_length) {
                    const Bytes request(pending.begin(), pending.begin() + request_length);
                    pending.erase(pending.begin(), pending.begin() + request_length);
                    handler(requests_++, request);
                }
            }
        });
    }

    // The device vanishes: its end of the line is gone.
    void close_device() {
        stop_ = true;
        if (thread_.joinable()) {
            thread_.join();
        }
        stream_.reset();
    }

private:
    FdStream stream_;
    std::string slave_path_;
    std::atomic<bool> stop_{false};
    std::atomic<int> requests_{0};
    std::atomic<long> bytes_received_{0};
    std::thread thread_;
};

// The serial link with a Modbus protocol already chosen, as after a handshake.
class SerialLink : public GripperUSBSerialportCommunicationControl {
public:
    SerialLink() { set_protocol(new GripperModbusProtocol()); }
    void set_protocol(GripperProtocol* protocol) {
        delete gripper_protocol_;
        gripper_protocol_ = protocol;
    }
    void set_retry_cap(bool on) { retry_cap_ = on; }
};

// The Modbus answer to a one-register read request, carrying 500.
Bytes answer_to(const Bytes& request) {
    Bytes answer = {request[0], 0x03, 0x02, 0x01, 0xF4};
    const uint16_t crc = modbus_crc_16(answer);
    answer.push_back(static_cast<uint8_t>(crc & 0xFF));
    answer.push_back(static_cast<uint8_t>(crc >> 8));
    return answer;
}

// The position read of gripper 1.
const Bytes kRequest = GripperModbusProtocol().build_position_protocol(1, false, 0);
const Bytes kAnswer = answer_to(kRequest);

// A serial link on a pty pair whose device the test plays.
class SerialLinkTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_FALSE(device_.slave_path().empty());
        link_.add_notify_interface(&observer_);
    }

    bool open_link() { return link_.open({"CO_MANUAL", device_.slave_path()}); }

    // Lets the device answer every request with kAnswer, or not at all.
    void serve(bool answer = true) {
        device_.serve(kRequest.size(), [this, answer](int, const Bytes& request) {
            if (answer) {
                device_.send(answer_to(request));
            }
        });
    }

    Bytes exchange() {
        return link_.write_read(false, GripperModbusProtocol::READ_LENGTH, kRequest);
    }

    LogCapture log_;
    PtyDevice device_;
    RecordingObserver observer_;
    SerialLink link_;
};

}  // namespace

TEST_F(SerialLinkTest, RefusedOpensLogWhyAndLeaveThePortClosedAndNoDescriptorBehind) {
    const std::string pty = device_.slave_path();
    const int descriptors = open_descriptor_count();
    const std::vector<std::pair<std::vector<std::string>, std::vector<std::string>>> cases = {
        {{}, {"E list_parameters.size() < 2"}},
        {{"CO_MANUAL"}, {"E list_parameters.size() < 2", "E CO_MANUAL"}},
        {{"CO_BOGUS", pty}, {"W MiscellaneousUtility::ConnectOperate::CO_UNDEFINE == type"}},
        {{"CO_SCAN", pty}, {"W 1 != real_parameters.size()"}},
        {{"CO_MANUAL", pty, "115200"}, {"W 2 != list_parameters.size()"}},
        {{"CO_MANUAL", "/dev/no_such_port"},
         {"W -1 == access(path.c_str(), F_OK)", "W path = /dev/no_such_port"}},
        {{"CO_MANUAL", "/"}, {"W -1 == private_->fd_"}},
        {{"CO_MANUAL", "/dev/null"}, {"W 0 != tcgetattr(private_->fd_, &termios)"}},
    };
    for (const auto& refused : cases) {
        SCOPED_TRACE(refused.second.back());
        log_.clear();
        EXPECT_FALSE(link_.open(refused.first));
        for (const std::string& line : refused.second) {
            EXPECT_LE(1, log_.count(line)) << line;
        }
        log_.clear();
        EXPECT_FALSE(link_.write(kRequest));
        EXPECT_LE(1, log_.count("E -1 == private_->fd_"));
    }
    EXPECT_EQ(descriptors, open_descriptor_count());
    EXPECT_TRUE(observer_.events().empty());
}

// A pty has no modem lines (ENOTTY), yet opens: raw, 115200 baud, 8N1, as the master reports.
TEST_F(SerialLinkTest, OpensAPseudoTerminalRawAt115200Baud8N1) {
    ASSERT_TRUE(open_link());
    EXPECT_LE(1, log_.count("W -1 == ::ioctl(private_->fd_, TIOCMBIS, &status)"));
    struct termios termios;
    ASSERT_EQ(0, tcgetattr(device_.fd(), &termios));
    EXPECT_EQ(static_cast<tcflag_t>(CS8 | CREAD | CLOCAL),
              termios.c_cflag & (CSIZE | CREAD | CLOCAL | PARENB | CSTOPB | CRTSCTS));
    EXPECT_EQ(0u, termios.c_iflag | termios.c_oflag | termios.c_lflag);
    EXPECT_EQ(static_cast<speed_t>(B115200), cfgetispeed(&termios));
    EXPECT_EQ(static_cast<speed_t>(B115200), cfgetospeed(&termios));
    EXPECT_EQ(0, termios.c_cc[VMIN] | termios.c_cc[VTIME]);
    EXPECT_EQ(GripperCommunication::CC_USB_SERIALPORT, link_.get_communication_connection());
    EXPECT_TRUE(link_.handshake_check());
    EXPECT_TRUE(link_.is_alive());
    EXPECT_EQ(5, link_.get_write_retry_max_count());
    EXPECT_EQ(5, link_.get_wait_retry_max_count());
    EXPECT_EQ(5, link_.get_alive_retry_max_count());
    EXPECT_EQ(100, link_.get_default_wait_for_length_available_interval());

    EXPECT_TRUE(link_.close());
    log_.clear();
    EXPECT_TRUE(link_.close());
    EXPECT_LE(1, log_.count("W -1 == private_->fd_"));
    EXPECT_TRUE(open_link());
}

TEST(SerialLinkSocat, ExchangesOverAPseudoTerminalPairMadeBySocat) {
    TempDir dir;
    ChildProcess socat("socat", {"pty,raw,echo=0,link=" + dir.file("first"),
                                 "pty,raw,echo=0,link=" + dir.file("second")});
    ASSERT_TRUE(wait_until([&] {
        return 0 == access(dir.file("first").c_str(), F_OK) &&
               0 == access(dir.file("second").c_str(), F_OK);
    }));
    LogCapture log;
    SerialLink link;
    ASSERT_TRUE(link.open({"CO_MANUAL", dir.file("first")}));
    PtyDevice device(open_raw_terminal(dir.file("second")));
    device.serve(kRequest.size(),
                 [&device](int, const Bytes& request) { device.send(answer_to(request)); });
    EXPECT_EQ(kAnswer, link.write_read(false, GripperModbusProtocol::READ_LENGTH, kRequest));
    EXPECT_EQ(1, device.requests());
}

TEST_F(SerialLinkTest, AnswerArrivingInPiecesIsAssembled) {
    // Byte by byte with a short pause between them, as a slow port delivers.
    device_.serve(kRequest.size(), [this](int, const Bytes& request) {
        for (uint8_t byte : answer_to(request)) {
            device_.send(Bytes(1, byte));
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    });
    ASSERT_TRUE(open_link());
    EXPECT_EQ(kAnswer, exchange());
    EXPECT_EQ(1, device_.requests());
    EXPECT_TRUE(observer_.events().empty());
}

TEST_F(SerialLinkTest, SilentDeviceGetsFiveWritesThenReadException) {
    serve(false);
    ASSERT_TRUE(open_link());
    EXPECT_TRUE(exchange().empty());
    // The retry cap: the fifth write is sent but its answer is not awaited.
    EXPECT_TRUE(log_.contains("count > 3"));
    EXPECT_TRUE(wait_until([this] { return 5 == device_.requests(); }));
    EXPECT_EQ(5 * static_cast<long>(kRequest.size()), device_.bytes_received());
    EXPECT_EQ(GripperCommunication::CS_READ_EXCEPTION, link_.get_communication_status());
    EXPECT_EQ(std::vector<std::string>{"CS_READ_EXCEPTION"}, observer_.events());
}

TEST_F(SerialLinkTest, WithoutRetryCapOnlyTheFirstExhaustionReportsReadException) {
    link_.set_retry_cap(false);
    serve(false);
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
    device_.serve(kRequest.size(), [this](int index, const Bytes& request) {
        Bytes answer = answer_to(request);
        answer.back() ^= (0 == index) ? 0xFF : 0x00;
        device_.send(answer);
    });
    ASSERT_TRUE(open_link());
    EXPECT_EQ(kAnswer, exchange());
    EXPECT_EQ(2, device_.requests());
    EXPECT_TRUE(
        log_.contains("!gripper_protocol_->compare_package(set, write_stream, read_byte_stream)"));
    EXPECT_TRUE(observer_.events().empty());
}

TEST_F(SerialLinkTest, StaleBytesAreDroppedBeforeTheRequestIsWritten) {
    serve();
    ASSERT_TRUE(open_link());
    ASSERT_TRUE(device_.send({0xAA, 0xBB, 0xCC}));
    ASSERT_TRUE(wait_until([this] { return 3 == link_.available(); }));
    EXPECT_EQ(kAnswer, exchange());
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
    EXPECT_FALSE(link_.write(kRequest));
    EXPECT_TRUE(log_.contains("occur_exception()"));
    EXPECT_TRUE(link_.close());
}

TEST_F(SerialLinkTest, BadCallsFailWithoutWritingAnything) {
    serve();
    EXPECT_TRUE(exchange().empty());
    EXPECT_TRUE(link_.read(7).empty());
    EXPECT_EQ(0, link_.available());
    EXPECT_TRUE(log_.contains("-1 == private_->fd_"));

    ASSERT_TRUE(open_link());
    EXPECT_TRUE(link_.read(-1).empty());
    EXPECT_TRUE(link_.read(0).empty());
    EXPECT_TRUE(link_.write(Bytes()));
    EXPECT_TRUE(link_.write_read(false, -1, kRequest).empty());
    link_.set_protocol(nullptr);
    EXPECT_TRUE(exchange().empty());
    EXPECT_TRUE(log_.contains("NULL == gripper_protocol_"));

    // The first bytes the device sees are those of a proper exchange.
    link_.set_protocol(new GripperModbusProtocol());
    EXPECT_EQ(kAnswer, exchange());
    EXPECT_EQ(static_cast<long>(kRequest.size()), device_.bytes_received());
    EXPECT_TRUE(observer_.events().empty());
}
