#include <dirent.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <termios.h>

#include <numeric>

#include "tests/gripper/gripper_communication_control/gripper_usb_serialport_communication_control/serial_link_fixture.h"
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

// Two pseudo-terminals linked by socat, named by symbolic links in a temporary directory.
class SocatPair {
public:
    SocatPair() : directory_(make_directory()), pid_(-1) {
        std::vector<std::string> arguments = {"socat", "pty,raw,echo=0,link=" + end(0),
                                              "pty,raw,echo=0,link=" + end(1)};
        std::vector<char*> argv = {&arguments[0][0], &arguments[1][0], &arguments[2][0], nullptr};
        if (0 != posix_spawnp(&pid_, "socat", nullptr, nullptr, argv.data(), environ)) {
            pid_ = -1;
        }
    }
    ~SocatPair() {
        if (pid_ > 0) {
            kill(pid_, SIGTERM);
            waitpid(pid_, nullptr, 0);
        }
        unlink(end(0).c_str());
        unlink(end(1).c_str());
        rmdir(directory_.c_str());
    }
    bool ready() const {
        return pid_ > 0 && wait_until([this] {
                   return 0 == access(end(0).c_str(), F_OK) && 0 == access(end(1).c_str(), F_OK);
               });
    }
    std::string end(int index) const { return directory_ + (0 == index ? "/first" : "/second"); }

private:
    static std::string make_directory() {
        char directory[] = "/tmp/serial_link_socat_XXXXXX";
        return mkdtemp(directory);
    }

    std::string directory_;
    pid_t pid_;
};

// A terminal opened raw, as a gripper's end of the line would be.
int open_raw(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    struct termios termios;
    tcgetattr(fd, &termios);
    cfmakeraw(&termios);
    tcsetattr(fd, TCSANOW, &termios);
    return fd;
}

}  // namespace

TEST_F(SerialLinkTest, RefusedOpensLogWhyAndLeaveThePortClosed) {
    const std::string pty = device_.slave_path();
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
            EXPECT_TRUE(logged(line)) << line;
        }
        log_.clear();
        EXPECT_FALSE(link_.write(request_));
        EXPECT_TRUE(logged("E -1 == private_->fd_"));
    }
    EXPECT_TRUE(observer_.events().empty());
}

TEST_F(SerialLinkTest, FailedOpensLeaveNoDescriptorBehind) {
    const int before = open_descriptor_count();
    for (int round = 0; round < 25; ++round) {
        EXPECT_FALSE(link_.open({"CO_SCAN", device_.slave_path()}));
        EXPECT_FALSE(link_.open({"CO_MANUAL", "/dev/no_such_port"}));
        EXPECT_FALSE(link_.open({"CO_MANUAL", "/"}));
        EXPECT_FALSE(link_.open({"CO_MANUAL", "/dev/null"}));
    }
    EXPECT_EQ(before, open_descriptor_count());
}

TEST_F(SerialLinkTest, OpensAPseudoTerminalAlthoughItHasNoModemLines) {
    ASSERT_TRUE(open_link());
    EXPECT_TRUE(logged("W -1 == ::ioctl(private_->fd_, TIOCMBIS, &status)"));
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
    EXPECT_TRUE(logged("W -1 == private_->fd_"));
    EXPECT_TRUE(open_link());
}

TEST_F(SerialLinkTest, OpenSetsThePortToRaw115200Baud8N1) {
    ASSERT_TRUE(open_link());
    struct termios termios;
    // The master reports the settings of its slave.
    ASSERT_EQ(0, tcgetattr(device_.fd(), &termios));
    EXPECT_EQ(static_cast<tcflag_t>(CS8 | CREAD | CLOCAL),
              termios.c_cflag & (CSIZE | CREAD | CLOCAL | PARENB | CSTOPB | CRTSCTS));
    EXPECT_EQ(0u, termios.c_iflag | termios.c_oflag | termios.c_lflag);
    EXPECT_EQ(static_cast<speed_t>(B115200), cfgetispeed(&termios));
    EXPECT_EQ(static_cast<speed_t>(B115200), cfgetospeed(&termios));
    EXPECT_EQ(0, termios.c_cc[VMIN] | termios.c_cc[VTIME]);
}

TEST_F(SerialLinkTest, EveryByteValuePassesUnchangedBothWays) {
    std::vector<uint8_t> every_byte(256);
    std::iota(every_byte.begin(), every_byte.end(), 0);
    device_.serve(every_byte.size(),
                  [this](int, const std::vector<uint8_t>& request) { device_.send(request); });
    ASSERT_TRUE(open_link());

    ASSERT_TRUE(link_.write(every_byte));
    ASSERT_TRUE(wait_until([this] { return link_.available() >= 256; }));
    EXPECT_EQ(every_byte, link_.read(256));
}

TEST(SerialLinkSocat, ExchangesOverAPseudoTerminalPairMadeBySocat) {
    SocatPair socat;
    ASSERT_TRUE(socat.ready());
    LogCapture log;
    SerialLink link;
    ASSERT_TRUE(link.open({"CO_MANUAL", socat.end(0)}));

    PtyDevice device(open_raw(socat.end(1)));
    const std::vector<uint8_t> request =
        GripperModbusProtocol().build_position_protocol(1, false, 0);
    device.serve(request.size(), [&device](int, const std::vector<uint8_t>& received) {
        device.send(modbus_read_answer(received, 500));
    });
    EXPECT_EQ(modbus_read_answer(request, 500),
              link.write_read(false, GripperModbusProtocol::READ_LENGTH, request));
    EXPECT_EQ(1, device.requests());
}
