#ifndef TESTS_SERIAL_LINK_PTY_DEVICE_H
#define TESTS_SERIAL_LINK_PTY_DEVICE_H

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <thread>
#include <vector>

// The device end of a serial line, played by the test: by default a new pseudo-terminal pair
// whose slave path the link opens while the test reads the requests from the master and writes
// the answers to it; or any other terminal descriptor handed over by the test.
class PtyDevice {
public:
    // Called on the device's thread for every complete request, counted from 0.
    typedef std::function<void(int index, const std::vector<uint8_t>& request)> Handler;

    PtyDevice() : PtyDevice(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK)) {
        char name[64] = {0};
        if (fd_ >= 0 && 0 == grantpt(fd_) && 0 == unlockpt(fd_) &&
            0 == ptsname_r(fd_, name, sizeof(name))) {
            slave_path_ = name;
        }
    }

    // Takes over fd, which is closed with the device.
    explicit PtyDevice(int fd) : fd_(fd), stop_(false) {}

    ~PtyDevice() { close_device(); }

    PtyDevice(const PtyDevice&) = delete;
    PtyDevice& operator=(const PtyDevice&) = delete;

    const std::string& slave_path() const { return slave_path_; }
    int fd() const { return fd_; }

    // Hands each request of request_length bytes to handler until the device is closed.
    void serve(size_t request_length, Handler handler) {
        thread_ = std::thread([this, request_length, handler] { run(request_length, handler); });
    }

    bool send(const std::vector<uint8_t>& bytes) {
        return static_cast<ssize_t>(bytes.size()) == ::write(fd_, bytes.data(), bytes.size());
    }

    // Sends bytes one at a time with a short pause between them, as a slow port delivers.
    void trickle(const std::vector<uint8_t>& bytes) {
        for (uint8_t byte : bytes) {
            send(std::vector<uint8_t>(1, byte));
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    }

    // Complete requests received so far; counted before the handler answers.
    int requests() const { return requests_; }

    // Every byte received so far (requests and partial requests).
    long bytes_received() const { return bytes_received_; }

    // The device vanishes: its end of the line is gone.
    void close_device() {
        stop_ = true;
        if (thread_.joinable()) {
            thread_.join();
        }
        if (fd_ >= 0) {
            ::close(fd_);
            fd_ = -1;
        }
    }

private:
    void run(size_t request_length, Handler handler) {
        std::vector<uint8_t> pending;
        while (!stop_) {
            struct pollfd readable = {fd_, POLLIN, 0};
            if (poll(&readable, 1, 10) <= 0) {
                continue;
            }
            if (0 == (readable.revents & POLLIN)) {
                // No slave open yet, or it was closed: nothing to read until it opens again.
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
                continue;
            }
            uint8_t buffer[256];
            const ssize_t size = ::read(fd_, buffer, sizeof(buffer));
            if (size > 0) {
                bytes_received_ += size;
                pending.insert(pending.end(), buffer, buffer + size);
            }
            while (request_length > 0 && pending.size() >= request_length) {
                const std::vector<uint8_t> request(pending.begin(),
                                                   pending.begin() + request_length);
                pending.erase(pending.begin(), pending.begin() + request_length);
                handler(requests_++, request);
            }
        }
    }

    int fd_;
    std::string slave_path_;
    std::atomic<bool> stop_;
    std::atomic<int> requests_{0};
    std::atomic<long> bytes_received_{0};
    std::thread thread_;
};

#endif
