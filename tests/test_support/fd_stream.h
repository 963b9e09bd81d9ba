#ifndef TESTS_TEST_SUPPORT_FD_STREAM_H
#define TESTS_TEST_SUPPORT_FD_STREAM_H

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <vector>

typedef std::vector<uint8_t> Bytes;

// Bytes written as hex pairs separated by blanks, as traces show them: "FF 03 03 02".
inline Bytes hex(const std::string& text) {
    Bytes bytes;
    std::istringstream in(text);
    for (unsigned value = 0; in >> std::hex >> value;) {
        bytes.push_back(static_cast<uint8_t>(value));
    }
    return bytes;
}

// A byte stream over a descriptor (terminal, socket or pipe) that the test owns; closed with it.
class FdStream {
public:
    explicit FdStream(int fd = -1) : fd_(fd) {}
    ~FdStream() { reset(); }
    FdStream(FdStream&& other) noexcept { *this = std::move(other); }
    FdStream& operator=(FdStream&& other) noexcept {
        std::swap(fd_, other.fd_);
        std::swap(ended_, other.ended_);
        return *this;
    }

    bool valid() const { return fd_ >= 0; }
    int fd() const { return fd_; }
    void reset(int fd = -1) {
        if (fd_ >= 0) {
            ::close(fd_);
        }
        fd_ = fd;
    }

    // All bytes or false; a socket whose peer is gone gives false, never SIGPIPE.
    bool write(const Bytes& bytes) {
        ssize_t size = ::send(fd_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (size < 0 && ENOTSOCK == errno) {
            size = ::write(fd_, bytes.data(), bytes.size());
        }
        return static_cast<ssize_t>(bytes.size()) == size;
    }

    // True when a read would not block: data, the end of the stream or an error.
    bool readable(int millis) const {
        struct pollfd ready = {fd_, POLLIN, 0};
        return 1 == ::poll(&ready, 1, millis);
    }

    // Reads until count bytes came, the stream ended or timeout passed; returns what came.
    Bytes read(size_t count, std::chrono::milliseconds timeout = std::chrono::seconds(3)) {
        Bytes bytes;
        const auto deadline = std::chrono::steady_clock::now() + timeout;
        while (valid() && bytes.size() < count && std::chrono::steady_clock::now() < deadline) {
            uint8_t chunk[256];
            const size_t wanted = std::min(sizeof(chunk), count - bytes.size());
            const ssize_t size = readable(5) ? ::read(fd_, chunk, wanted) : -2;
            if (size > 0) {
                bytes.insert(bytes.end(), chunk, chunk + size);
            } else if (0 == size || (-1 == size && EAGAIN != errno && EINTR != errno)) {
                ended_ = (0 == size) ? 0 : errno;
                break;
            }
        }
        return bytes;
    }

    // Waits for the peer to end the stream, discarding data: 0 for an orderly end, the errno of
    // a failure (ECONNRESET, EIO), -1 when it stays open past timeout.
    int wait_closed(std::chrono::milliseconds timeout = std::chrono::seconds(3)) {
        read(SIZE_MAX, timeout);
        return ended_;
    }

private:
    int fd_ = -1;
    int ended_ = -1;
};

// A terminal opened raw at 115200 baud, as a serial client or a gripper's end of the line is.
inline FdStream open_raw_terminal(const std::string& path) {
    FdStream stream(::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    struct termios settings = {};
    if (stream.valid() && 0 == ::tcgetattr(stream.fd(), &settings)) {
        ::cfmakeraw(&settings);
        ::cfsetspeed(&settings, B115200);
        ::tcsetattr(stream.fd(), TCSANOW, &settings);
        ::tcflush(stream.fd(), TCIOFLUSH);
    }
    return stream;
}

inline struct sockaddr_in loopback_address(uint16_t port) {
    struct sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

// A connection to 127.0.0.1:port; invalid when refused.
inline FdStream connect_loopback(uint16_t port) {
    FdStream stream(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const struct sockaddr_in address = loopback_address(port);
    if (0 != ::connect(stream.fd(), reinterpret_cast<const sockaddr*>(&address), sizeof(address))) {
        stream.reset();
    }
    return stream;
}

// The descriptor the next open gets: the lowest free one, so any descriptor left open raises it.
inline int next_descriptor() {
    return FdStream(::open("/dev/null", O_RDONLY)).fd();
}

// A temporary directory, removed on destruction with the files named by file().
class TempDir {
public:
    ~TempDir() {
        for (const std::string& file : files_) {
            ::unlink(file.c_str());
        }
        ::rmdir(path_.c_str());
    }
    std::string file(const std::string& name) { return *files_.insert(path_ + "/" + name).first; }

private:
    char pattern_[32] = "/tmp/gripper_test_XXXXXX";
    const std::string path_ = nullptr != ::mkdtemp(pattern_) ? pattern_ : "";
    std::set<std::string> files_;
};

// The whole content of a text file; empty when it cannot be read.
inline std::string read_file(const std::string& path) {
    std::ifstream in(path);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

#endif
