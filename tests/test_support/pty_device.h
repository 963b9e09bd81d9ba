#ifndef TESTS_TEST_SUPPORT_PTY_DEVICE_H
#define TESTS_TEST_SUPPORT_PTY_DEVICE_H

#include <algorithm>
#include <atomic>
#include <functional>
#include <string>
#include <thread>

#include "tests/test_support/fd_stream.h"

// The device end of a serial line: by default the master of a new pseudo-terminal pair whose
// slave a link opens; or any other terminal handed over. It counts the requests it receives,
// each one the given frame.
class PtyDevice {
public:
    explicit PtyDevice(const Bytes& request)
        : request_(request), stream_(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK)) {
        char name[64] = {0};
        if (0 == grantpt(fd()) && 0 == unlockpt(fd()) && 0 == ptsname_r(fd(), name, sizeof(name))) {
            slave_path_ = name;
        }
    }
    PtyDevice(const Bytes& request, FdStream stream)
        : request_(request), stream_(std::move(stream)) {}
    ~PtyDevice() { close_device(); }

    const std::string& slave_path() const { return slave_path_; }
    int fd() const { return stream_.fd(); }
    bool send(const Bytes& bytes) { return stream_.write(bytes); }
    int requests() const { return requests_; }
    long bytes_received() const { return bytes_received_; }

    // Until the device is closed, calls handler on the device's thread with the number of each
    // request received, counted from 0; any other bytes go unanswered.
    void serve(std::function<void(int)> handler) {
        thread_ = std::thread([this, handler] {
            Bytes pending;
            while (!stop_) {
                const Bytes bytes = stream_.read(256, std::chrono::milliseconds(10));
                if (bytes.empty()) {
                    // No slave open yet, or it was closed: nothing to read until it opens again.
                    std::this_thread::sleep_for(std::chrono::milliseconds(5));
                }
                bytes_received_ += bytes.size();
                pending.insert(pending.end(), bytes.begin(), bytes.end());
                while (pending.size() >= request_.size()) {
                    const bool request =
                        std::equal(request_.begin(), request_.end(), pending.begin());
                    pending.erase(pending.begin(), pending.begin() + request_.size());
                    if (request) {
                        handler(requests_++);
                    }
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
    const Bytes request_;
    FdStream stream_;
    std::string slave_path_;
    std::atomic<bool> stop_{false};
    std::atomic<int> requests_{0};
    std::atomic<long> bytes_received_{0};
    std::thread thread_;
};

#endif
