#include "tests/tools/gripper_simulator/test_support.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

namespace sim_test {

using Clock = std::chrono::steady_clock;

bool wait_until(const std::function<bool()>& condition, milliseconds timeout) {
    const auto deadline = Clock::now() + timeout;
    while (!condition()) {
        if (Clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(milliseconds(2));
    }
    return true;
}

FdStream::~FdStream() {
    close();
}

FdStream::FdStream(FdStream&& other) noexcept : fd_(other.fd_) {
    other.fd_ = -1;
}

FdStream& FdStream::operator=(FdStream&& other) noexcept {
    if (this != &other) {
        close();
        fd_ = other.fd_;
        other.fd_ = -1;
    }
    return *this;
}

bool FdStream::write(const Bytes& bytes) {
    return fd_ >= 0 &&
           ::write(fd_, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
}

Bytes FdStream::read(size_t count, milliseconds timeout) {
    Bytes bytes;
    const auto deadline = Clock::now() + timeout;
    while (fd_ >= 0 && bytes.size() < count && Clock::now() < deadline) {
        pollfd fd{fd_, POLLIN, 0};
        if (::poll(&fd, 1, 5) <= 0) {
            continue;
        }
        uint8_t chunk[64];
        const ssize_t size = ::read(fd_, chunk, std::min(sizeof(chunk), count - bytes.size()));
        if (size == 0 || (size < 0 && errno != EAGAIN && errno != EINTR)) {
            break;
        }
        if (size > 0) {
            bytes.insert(bytes.end(), chunk, chunk + size);
        }
    }
    return bytes;
}

int FdStream::wait_closed(milliseconds timeout) {
    const auto deadline = Clock::now() + timeout;
    while (fd_ >= 0 && Clock::now() < deadline) {
        pollfd fd{fd_, POLLIN, 0};
        if (::poll(&fd, 1, 5) <= 0) {
            continue;
        }
        uint8_t chunk[64];
        const ssize_t size = ::read(fd_, chunk, sizeof(chunk));
        if (size == 0) {
            return 0;
        }
        if (size < 0 && errno != EAGAIN && errno != EINTR) {
            return errno;
        }
    }
    return -1;
}

void FdStream::close() {
    if (fd_ >= 0) {
        ::close(fd_);
        fd_ = -1;
    }
}

FdStream open_serial(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    termios settings{};
    if (fd >= 0 && ::tcgetattr(fd, &settings) == 0) {
        ::cfmakeraw(&settings);
        ::cfsetspeed(&settings, B115200);
        ::tcsetattr(fd, TCSANOW, &settings);
        ::tcflush(fd, TCIOFLUSH);
    }
    return FdStream(fd);
}

FdStream connect_loopback(uint16_t port) {
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (fd < 0 || ::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0) {
        if (fd >= 0) {
            ::close(fd);
        }
        return FdStream();
    }
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) | O_NONBLOCK);
    return FdStream(fd);
}

Bytes custom_frame(uint8_t id, uint8_t primary, uint8_t secondary, uint8_t read_write,
                   int32_t value) {
    const auto bits = static_cast<uint32_t>(value);
    return Bytes{0xFF,
                 0xFE,
                 0xFD,
                 0xFC,
                 id,
                 primary,
                 secondary,
                 read_write,
                 0,
                 static_cast<uint8_t>(bits),
                 static_cast<uint8_t>(bits >> 8),
                 static_cast<uint8_t>(bits >> 16),
                 static_cast<uint8_t>(bits >> 24),
                 0xFB};
}

int32_t custom_value(const Bytes& frame) {
    if (frame.size() < 13) {
        return -1;
    }
    return static_cast<int32_t>(frame[9] | frame[10] << 8 | frame[11] << 16 |
                                static_cast<uint32_t>(frame[12]) << 24);
}

namespace {

// Table-driven CRC-16/MODBUS, deliberately unlike the simulator's bitwise loop.
uint16_t crc16(const uint8_t* data, size_t size) {
    static const auto table = [] {
        std::vector<uint16_t> entries(256);
        for (unsigned n = 0; n < 256; ++n) {
            unsigned value = n;
            for (int bit = 0; bit < 8; ++bit) {
                value = (value >> 1) ^ ((value & 1u) ? 0xA001u : 0u);
            }
            entries[n] = static_cast<uint16_t>(value);
        }
        return entries;
    }();
    uint16_t crc = 0xFFFF;
    for (size_t i = 0; i < size; ++i) {
        crc = static_cast<uint16_t>((crc >> 8) ^ table[(crc ^ data[i]) & 0xFF]);
    }
    return crc;
}

}  // namespace

Bytes modbus_request(uint8_t slave, uint8_t function, uint16_t reg, uint16_t field) {
    Bytes frame{slave,
                function,
                static_cast<uint8_t>(reg >> 8),
                static_cast<uint8_t>(reg),
                static_cast<uint8_t>(field >> 8),
                static_cast<uint8_t>(field)};
    const uint16_t crc = crc16(frame.data(), frame.size());
    frame.push_back(static_cast<uint8_t>(crc));
    frame.push_back(static_cast<uint8_t>(crc >> 8));
    return frame;
}

bool modbus_crc_ok(const Bytes& frame) {
    if (frame.size() < 3) {
        return false;
    }
    const uint16_t crc = crc16(frame.data(), frame.size() - 2);
    return frame[frame.size() - 2] == (crc & 0xFF) && frame[frame.size() - 1] == (crc >> 8);
}

TempDir::TempDir() {
    char pattern[] = "/tmp/gripper_sim_test_XXXXXX";
    const char* made = ::mkdtemp(pattern);
    path_ = made ? made : "";
}

TempDir::~TempDir() {
    std::error_code ignored;
    if (!path_.empty()) {
        std::filesystem::remove_all(path_, ignored);
    }
}

std::string read_file(const std::string& path) {
    std::ifstream in(path);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

}  // namespace sim_test
