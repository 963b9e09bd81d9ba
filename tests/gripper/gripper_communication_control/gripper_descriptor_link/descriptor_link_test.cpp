// What both links do alike, each against the far end of its line played by the test: the master
// of a pseudo-terminal pair for the serial link, a loopback server for the TCP link.

#include <gtest/gtest.h>

#include <fcntl.h>

#include <memory>
#include <thread>

#include "gripper/gripper_common/miscellaneous_utility/miscellaneous_utility.h"
#include "gripper/gripper_communication_control/gripper_tcp_client_communication_control/gripper_tcp_client_communication_control.h"
#include "gripper/gripper_communication_control/gripper_usb_serialport_communication_control/gripper_usb_serialport_communication_control.h"
#include "gripper/gripper_protocol/gripper_custom_protocol/gripper_custom_protocol.h"
#include "gripper/gripper_protocol/gripper_modbus_protocol/gripper_modbus_protocol.h"
#include "tests/test_support/log_capture.h"
#include "tests/test_support/loopback_server.h"
#include "tests/test_support/recording_observer.h"
#include "tests/test_support/wait_until.h"

namespace {

// A link with its protocol already chosen, as after a handshake.
template <typename Link, typename Protocol>
class ReadyLink : public Link {
public:
    ReadyLink() { this->gripper_protocol_ = new Protocol(); }
};

// One transport: a request with its answer, and where the two links differ.
struct Transport {
    const char* name;
    bool serial;
    Bytes request;
    Bytes answer;
    // Writes of the request to a silent peer: the serial link writes on each of its passes.
    int silent_writes;
    // Read exceptions reported by two exhausted exchanges: the serial link's capped pass reports
    // each time, the TCP link only the first exhaustion.
    int read_exceptions;
    const char* stale_line;
    const char* closed_line;
    // Logged when the line is written to again after the device went.
    const char* dead_write;
};

const Transport TRANSPORTS[] = {
    {"serial", true, GripperModbusProtocol().build_position_protocol(1, false, 0),
     Bytes{0x01, 0x03, 0x02, 0x01, 0xF4, 0xB8, 0x53}, 5, 2, "W length > 0", "E -1 == private_->fd_",
     "Input/output error"},
    {"tcp", false, GripperCustomProtocol().build_position_protocol(1, false, 0),
     GripperCustomProtocol().build_position_protocol(1, true, 50), 1, 1, "W available() > 0",
     "W -1 == private_->socket_", "Broken pipe"},
};

std::string hex(const Bytes& bytes) {
    return MiscellaneousUtility::convert_hex_binary(bytes);
}

// Records the traffic a link reports: "w", "r" or "stale" and the bytes; refuses writes once told.
class Traffic : public GripperCommunication::TrafficObserver {
public:
    bool refuse_write(const Bytes&) override { return refusing_; }
    void on_written(const Bytes& bytes, bool ok) override {
        seen_.push_back(ok ? "w " + hex(bytes) : "w!");
    }
    void on_read(const Bytes& bytes, bool stale) override {
        seen_.push_back((stale ? "stale " : "r ") + hex(bytes));
    }
    std::vector<std::string> seen_;
    bool refusing_ = false;
};

// The far end of the line: the master of a pseudo-terminal pair, or a loopback server's client.
class DescriptorLinkTest : public ::testing::TestWithParam<Transport> {
protected:
    void SetUp() override {
        char name[64] = {0};
        ASSERT_TRUE(0 == grantpt(master_.fd()) && 0 == unlockpt(master_.fd()) &&
                    0 == ptsname_r(master_.fd(), name, sizeof(name)));
        parameters_ = GetParam().serial
                          ? std::vector<std::string>{"CO_MANUAL", name}
                          : std::vector<std::string>{"CO_MANUAL", "127.0.0.1", server_.port()};
        link_->add_notify_interface(&observer_);
    }

    bool connect() {
        return link_->open(parameters_) && (GetParam().serial || server_.accept_client());
    }
    FdStream& peer() { return GetParam().serial ? master_ : server_.client(); }
    // The device goes: the pseudo-terminal's master is closed, the connection reset.
    void vanish() { GetParam().serial ? master_.reset() : server_.reset_client(); }

    Bytes exchange() {
        return link_->write_read(false, static_cast<int>(GetParam().answer.size()),
                                 GetParam().request);
    }

    // Answers the next request, once it came whole, in two pieces 20 ms apart.
    std::thread answer_next() {
        return std::thread([this] {
            const Bytes& answer = GetParam().answer;
            if (GetParam().request == peer().read(GetParam().request.size())) {
                peer().write(Bytes(answer.begin(), answer.begin() + 3));
                std::this_thread::sleep_for(std::chrono::milliseconds(20));
                peer().write(Bytes(answer.begin() + 3, answer.end()));
            }
        });
    }

    LogCapture log_;
    FdStream master_{posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK)};
    LoopbackServer server_;
    std::vector<std::string> parameters_;
    std::unique_ptr<GripperLogicControl> link_{
        GetParam().serial
            ? static_cast<GripperLogicControl*>(
                  new ReadyLink<GripperUSBSerialportCommunicationControl, GripperModbusProtocol>())
            : new ReadyLink<GripperTCPClientCommunicationControl, GripperCustomProtocol>()};
    RecordingObserver observer_;
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(BothLinks, DescriptorLinkTest, ::testing::ValuesIn(TRANSPORTS),
                         [](const ::testing::TestParamInfo<Transport>& info) {
                             return std::string(info.param.name);
                         });

// Calls on a closed link and bad calls fail without writing anything. The descriptor is
// close-on-exec, so that a program the process starts does not keep it, and an open link is not
// opened again; closing twice only logs.
TEST_P(DescriptorLinkTest, OpensOnceClosesOnceAndAnswersArrivingInPiecesAreAssembled) {
    EXPECT_TRUE(exchange().empty());
    EXPECT_TRUE(link_->read(7).empty());
    EXPECT_EQ(0, link_->available());
    EXPECT_FALSE(link_->write(GetParam().request));
    EXPECT_LE(1, log_.count(GetParam().closed_line));
    const int descriptor = next_descriptor();
    ASSERT_TRUE(connect());
    EXPECT_EQ(FD_CLOEXEC, fcntl(descriptor, F_GETFD) & FD_CLOEXEC);
    EXPECT_TRUE(link_->read(-1).empty() && link_->read(0).empty());
    EXPECT_TRUE(link_->write(Bytes()));
    EXPECT_TRUE(link_->write_read(false, -1, GetParam().request).empty());
    EXPECT_FALSE(peer().readable(0));
    const int next = next_descriptor();
    EXPECT_FALSE(link_->open(parameters_));
    EXPECT_EQ(next, next_descriptor());
    std::thread answering = answer_next();
    EXPECT_EQ(GetParam().answer, exchange());
    answering.join();
    EXPECT_TRUE(link_->close());
    log_.clear();
    EXPECT_TRUE(link_->close());
    EXPECT_EQ(1, log_.count(std::string("W ") + (GetParam().closed_line + 2)));
    EXPECT_TRUE(observer_.events().empty());
}

// An exchange with a silent peer writes on each pass and waits four times for the answer.
TEST_P(DescriptorLinkTest, SilentPeerGetsItsWritesThenOneReadException) {
    ASSERT_TRUE(connect());
    for (int exchanges = 1; exchanges <= 2; ++exchanges) {
        EXPECT_TRUE(exchange().empty());
        const Bytes written =
            peer().read(GetParam().request.size() * 6, std::chrono::milliseconds(100));
        EXPECT_EQ(GetParam().request.size() * GetParam().silent_writes, written.size());
        EXPECT_EQ(4 * exchanges, log_.count("W (current_time - start_time) > millis"));
        EXPECT_EQ(GripperLinkFailure::LF_TIMEOUT, link_->last_failure().code);
        link_->set_communication_status(GripperCommunication::CS_CONNECTED);
    }
    EXPECT_EQ(GetParam().read_exceptions, observer_.count("CS_READ_EXCEPTION"));
}

// Bytes waiting before a request are dropped first. The traffic observer sees each transfer, the
// dropped bytes marked, and a write it refuses fails as on a broken link.
TEST_P(DescriptorLinkTest, StaleBytesAreDroppedAndTheTrafficShown) {
    ASSERT_TRUE(connect());
    Traffic traffic;
    link_->set_traffic_observer(&traffic);
    ASSERT_TRUE(peer().write({0xAA, 0xBB, 0xCC}));
    ASSERT_TRUE(wait_until([this] { return 3 == link_->available(); }));
    std::thread answering = answer_next();
    EXPECT_EQ(GetParam().answer, exchange());
    answering.join();
    EXPECT_EQ(1, log_.count(GetParam().stale_line));
    EXPECT_TRUE(log_.contains("0xAA 0xBB 0xCC"));
    EXPECT_EQ((std::vector<std::string>{"stale 0xAA 0xBB 0xCC ", "w " + hex(GetParam().request),
                                        "r " + hex(GetParam().answer)}),
              traffic.seen_);
    traffic.refusing_ = true;
    EXPECT_TRUE(exchange().empty());
    EXPECT_FALSE(peer().readable(50));
    EXPECT_EQ(GripperCommunication::CS_WRITE_EXCEPTION, link_->get_communication_status());
    link_->set_traffic_observer(nullptr);
}

// The first write after the device went may still leave; one fails, and from then on every
// transfer is refused. No SIGPIPE kills the process.
TEST_P(DescriptorLinkTest, VanishedPeerGivesOneWriteExceptionAndEveryTransferIsRefused) {
    ASSERT_TRUE(connect());
    vanish();
    EXPECT_TRUE(wait_until([this] {
        exchange();
        return GripperCommunication::CS_WRITE_EXCEPTION == link_->get_communication_status();
    }));
    EXPECT_EQ(std::vector<std::string>{"CS_WRITE_EXCEPTION"}, observer_.events());
    EXPECT_EQ(GripperLinkFailure::LF_WRITE, link_->last_failure().code);
    EXPECT_NE(0, link_->last_failure().error_number);
    log_.clear();
    EXPECT_TRUE(exchange().empty());
    EXPECT_EQ(0, link_->available());
    EXPECT_TRUE(link_->read(7).empty());
    EXPECT_FALSE(link_->write(GetParam().request));
    EXPECT_TRUE(log_.contains("occur_exception()"));
    link_->set_communication_status(GripperCommunication::CS_CONNECTED);
    EXPECT_FALSE(link_->write(GetParam().request));
    EXPECT_TRUE(log_.contains(GetParam().dead_write));
}
