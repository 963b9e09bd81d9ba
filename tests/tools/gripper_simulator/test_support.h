#ifndef TESTS_TOOLS_GRIPPER_SIMULATOR_TEST_SUPPORT_H
#define TESTS_TOOLS_GRIPPER_SIMULATOR_TEST_SUPPORT_H

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace sim_test {

using Bytes = std::vector<uint8_t>;
using std::chrono::milliseconds;

// Polls `condition` until it holds or `timeout` has passed; true when it held.
bool wait_until(const std::function<bool()>& condition, milliseconds timeout = milliseconds(5000));

// A non-blocking byte stream over a file descriptor (pty slave or socket), closed on destruction.
class FdStream {
public:
    explicit FdStream(int fd = -1) : fd_(fd) {}
    ~FdStream();
    FdStream(FdStream&& other) noexcept;
    FdStream& operator=(FdStream&& other) noexcept;

    bool valid() const { return fd_ >= 0; }
    bool write(const Bytes& bytes);
    // Reads until `count` bytes came or `timeout` passed; returns what came.
    Bytes read(size_t count, milliseconds timeout = milliseconds(3000));
    // Waits for the peer to end the stream: 0 for an orderly end, the errno of a failure
    // (ECONNRESET, EIO), -1 when it stays open past `timeout`. Discards data on the way.
    int wait_closed(milliseconds timeout = milliseconds(3000));

private:
    void close();

    int fd_;
};

// Opens a pty slave in raw mode, as a serial client does.
FdStream open_serial(const std::string& path);
// Connects to 127.0.0.1:port; invalid when refused.
FdStream connect_loopback(uint16_t port);

// A custom 14-byte frame.
Bytes custom_frame(uint8_t id, uint8_t primary, uint8_t secondary, uint8_t read_write,
                   int32_t value = 0);
// The little-endian value in bytes 9-12 of a custom frame.
int32_t custom_value(const Bytes& frame);

// An 8-byte Modbus request with its CRC (computed here, independently of the simulator).
Bytes modbus_request(uint8_t slave, uint8_t function, uint16_t reg, uint16_t field);
// True when the last two bytes are the CRC-16/MODBUS of the others.
bool modbus_crc_ok(const Bytes& frame);

// A temporary directory, removed with its contents on destruction.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::string& path() const { return path_; }
    std::string file(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

// The whole content of a text file; empty when it cannot be read.
std::string read_file(const std::string& path);

}  // namespace sim_test

#endif
