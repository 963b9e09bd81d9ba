#include "bench/link_round_trip/polling_cost.h"

#include <sys/resource.h>
#include <time.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include "bench/link_round_trip/libmodbus_poller.h"
#include "gripper/gripper_business_logic/gripper_connection_manager/gripper_connection_manager.h"
#include "tests/test_support/wait_until.h"

namespace {

typedef GripperLogicControl GLC;

const std::chrono::seconds SET_UP_DEADLINE(15);
// Full stroke in register units: a target there keeps a slow gripper moving.
const int FULL_STROKE = 1000;
// The registers our update loop reads: initialisation, position, force and speed once a second
// while idle; motion state and position every 100 ms while following a move.
const std::vector<int> IDLE_REGISTERS = {0x0200, 0x0202, 0x0101, 0x0104};
const std::vector<int> MOVING_REGISTERS = {0x0201, 0x0202};
const std::chrono::milliseconds IDLE_PERIOD(1000);
const std::chrono::milliseconds MOVING_PERIOD(100);

// An observer that ignores everything: the manager wants one for every driver.
class QuietObserver : public GLC::NotifyInterface {
public:
    void on_communication_status_changed(GLC*, GLC::CommunicationStatus) override {}
    void on_gripper_move_status_changed(GLC*, GLC::GripperStatus) override {}
    void on_gripper_turn_status_changed(GLC*, GLC::GripperStatus) override {}
    void on_position_changed(GLC*, float) override {}
    void on_force_changed(GLC*, int) override {}
    void on_speed_changed(GLC*, int) override {}
    void on_angle_changed(GLC*, int) override {}
};

double process_cpu_millis() {
    struct timespec time;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

double process_wakeups() {
    struct rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_nvcsw);
}

long frames(const SimulatorProcess& simulator, int first, int count) {
    long total = 0;
    for (int id = first; id < first + count; ++id) {
        total += simulator.frames_received(id);
    }
    return total;
}

// Lets the grippers be polled for one window and divides what it cost by its wall time.
PollingCost measure_one_window(const SimulatorProcess& simulator, int first, int count) {
    const long frames_start = frames(simulator, first, count);
    const auto start = std::chrono::steady_clock::now();
    const double cpu_start = process_cpu_millis();
    const double wakeups_start = process_wakeups();
    std::this_thread::sleep_for(std::chrono::seconds(POLLING_WINDOW_SECONDS));
    const double cpu_end = process_cpu_millis();
    const double wakeups_end = process_wakeups();
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;
    const long frames_end = frames(simulator, first, count);
    PollingCost cost;
    cost.measured = frames_start >= 0 && frames_end >= 0;
    cost.cpu_ms_per_s = (cpu_end - cpu_start) / wall.count();
    // The window's own sleep is no wake-up of the grippers' work.
    cost.wakeups_per_s = (wakeups_end - wakeups_start - 1) / wall.count();
    cost.exchanges_per_s = static_cast<double>(frames_end - frames_start) / wall.count();
    return cost;
}

double median_of(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

PollingCost measure_windows(const SimulatorProcess& simulator, int first, int count) {
    std::vector<double> cpu;
    PollingCost cost;
    cost.measured = true;
    for (int window = 0; window < POLLING_WINDOWS; ++window) {
        const PollingCost one = measure_one_window(simulator, first, count);
        cost.measured = cost.measured && one.measured;
        cpu.push_back(one.cpu_ms_per_s);
        cost.wakeups_per_s += one.wakeups_per_s / POLLING_WINDOWS;
        cost.exchanges_per_s += one.exchanges_per_s / POLLING_WINDOWS;
    }
    cost.cpu_ms_per_s = median_of(cpu);
    return cost;
}

bool all_reach(const std::vector<GLC*>& drivers, GLC::GripperStatus status) {
    return wait_until(
        [&] {
            for (GLC* driver : drivers) {
                if (status != driver->get_gripper_status()) {
                    return false;
                }
            }
            return true;
        },
        SET_UP_DEADLINE);
}

// Once a driver has seen its gripper arrive, it follows the next move every 100 ms: move to
// where the fingers are, wait for a cycle in GS_ARRIVED, then start a slow full stroke.
bool start_moving(const SimulatorProcess& simulator, int first, const std::vector<GLC*>& drivers) {
    for (GLC* driver : drivers) {
        if (!driver->set_position(0.0f)) {
            return false;
        }
    }
    const int count = static_cast<int>(drivers.size());
    if (!all_reach(drivers, GLC::GS_ARRIVED)) {
        return false;
    }
    const long arrived = frames(simulator, first, count);
    if (!wait_until([&] { return frames(simulator, first, count) >= arrived + 2 * count; },
                    SET_UP_DEADLINE)) {
        return false;
    }
    for (GLC* driver : drivers) {
        if (!driver->set_position(driver->get_position_max())) {
            return false;
        }
    }
    return true;
}

}  // namespace

PollingCost measure_driver_polling(const SimulatorProcess& simulator, int first, int count,
                                   Polling polling) {
    QuietObserver observer;
    GripperConnectionManager& manager = GripperConnectionManager::instance();
    std::vector<GLC*> drivers;
    bool ready = true;
    for (int id = first; id < first + count && ready; ++id) {
        GLC* driver = manager.create(&observer, GripperCommunication::CC_USB_SERIALPORT,
                                     {"CO_MANUAL", simulator.paths()[id - 1]});
        ready = nullptr != driver && driver->set_activate();
        if (nullptr != driver) {
            drivers.push_back(driver);
        }
    }
    ready = ready && all_reach(drivers, GLC::GS_ACTIVATED) &&
            (Polling::idle == polling || start_moving(simulator, first, drivers));
    const PollingCost cost = ready ? measure_windows(simulator, first, count) : PollingCost();
    for (GLC* driver : drivers) {
        manager.destroy(driver);
        delete driver;
    }
    return cost;
}

PollingCost measure_libmodbus_polling(const SimulatorProcess& simulator, int first, int count,
                                      Polling polling) {
    const bool idle = Polling::idle == polling;
    std::vector<std::unique_ptr<LibmodbusPoller>> pollers;
    bool ready = true;
    for (int id = first; id < first + count && ready; ++id) {
        pollers.emplace_back(new LibmodbusPoller(simulator.paths()[id - 1], id));
        ready = pollers.back()->prepare(idle ? -1 : FULL_STROKE) &&
                pollers.back()->start(idle ? IDLE_REGISTERS : MOVING_REGISTERS,
                                      idle ? IDLE_PERIOD : MOVING_PERIOD);
    }
    return ready ? measure_windows(simulator, first, count) : PollingCost();
}
