#include "bench/link_round_trip/libmodbus_poller.h"

#include "tests/test_support/wait_until.h"

namespace {

const int INITIALISE_REGISTER = 0x0100;
const int INITIALISE_VALUE = 0x00A5;
const int TARGET_REGISTER = 0x0103;
const int INITIALISED_REGISTER = 0x0200;
const uint32_t RESPONSE_TIMEOUT_MICROS = 500000;

}  // namespace

LibmodbusPoller::LibmodbusPoller(const std::string& path, int id)
    : context_(modbus_new_rtu(path.c_str(), 115200, 'N', 8, 1)) {
    connected_ = nullptr != context_ && 0 == modbus_set_slave(context_, id) &&
                 0 == modbus_set_response_timeout(context_, 0, RESPONSE_TIMEOUT_MICROS) &&
                 0 == modbus_connect(context_);
}

LibmodbusPoller::~LibmodbusPoller() {
    stop();
    if (nullptr != context_) {
        modbus_close(context_);
        modbus_free(context_);
    }
}

bool LibmodbusPoller::prepare(int target) {
    if (!connected_ || !write(INITIALISE_REGISTER, INITIALISE_VALUE) ||
        !wait_until([this] { return 1 == read(INITIALISED_REGISTER); })) {
        return false;
    }
    return target < 0 || write(TARGET_REGISTER, target);
}

bool LibmodbusPoller::start(const std::vector<int>& registers, std::chrono::milliseconds period) {
    if (!connected_) {
        return false;
    }
    thread_ = std::thread([this, registers, period] { run(registers, period); });
    return true;
}

void LibmodbusPoller::stop() {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
    }
    stop_signal_.notify_all();
    if (thread_.joinable()) {
        thread_.join();
    }
}

void LibmodbusPoller::run(std::vector<int> registers, std::chrono::milliseconds period) {
    auto next = std::chrono::steady_clock::now();
    std::unique_lock<std::mutex> lock(mutex_);
    while (!stopping_) {
        lock.unlock();
        for (int address : registers) {
            read(address);
        }
        next += period;
        lock.lock();
        stop_signal_.wait_until(lock, next, [this] { return stopping_; });
    }
}

bool LibmodbusPoller::write(int address, int value) {
    return 1 == modbus_write_register(context_, address, static_cast<uint16_t>(value));
}

int LibmodbusPoller::read(int address) {
    uint16_t value = 0;
    return 1 == modbus_read_registers(context_, address, 1, &value) ? value : -1;
}
