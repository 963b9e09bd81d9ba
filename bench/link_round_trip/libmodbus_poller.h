#ifndef BENCH_LINK_ROUND_TRIP_LIBMODBUS_POLLER_H
#define BENCH_LINK_ROUND_TRIP_LIBMODBUS_POLLER_H

#include <modbus/modbus.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

// libmodbus reading registers of one gripper at a fixed rate from a thread of its own, the way
// our update loop reads them: every period, each register once, then asleep until the next.
class LibmodbusPoller {
public:
    LibmodbusPoller(const std::string& path, int id);
    ~LibmodbusPoller();
    LibmodbusPoller(const LibmodbusPoller&) = delete;
    LibmodbusPoller& operator=(const LibmodbusPoller&) = delete;

    // Activates the gripper and waits until it is initialised; with a target, moves it there.
    bool prepare(int target);
    // Starts the reads; false when the gripper could not be reached.
    bool start(const std::vector<int>& registers, std::chrono::milliseconds period);
    void stop();

private:
    void run(std::vector<int> registers, std::chrono::milliseconds period);
    bool write(int address, int value);
    int read(int address);

    modbus_t* context_;
    bool connected_;
    std::mutex mutex_;
    std::condition_variable stop_signal_;
    bool stopping_ = false;
    std::thread thread_;
};

#endif
