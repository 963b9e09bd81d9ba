#include "bench/link_round_trip/idle_cpu.h"

#include <sys/resource.h>
#include <time.h>

#include <chrono>
#include <thread>
#include <vector>

#include "bench/link_round_trip/simulator_process.h"
#include "gripper/gripper_business_logic/gripper_connection_manager/gripper_connection_manager.h"
#include "tests/test_support/wait_until.h"

namespace {

typedef GripperLogicControl GLC;

const std::chrono::seconds ACTIVATION_DEADLINE(15);

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

std::vector<GLC*> connect_all(const std::vector<std::string>& paths, QuietObserver& observer) {
    std::vector<GLC*> drivers;
    for (const std::string& path : paths) {
        GLC* driver = GripperConnectionManager::instance().create(
            &observer, GripperCommunication::CC_USB_SERIALPORT, {"CO_MANUAL", path});
        if (nullptr != driver) {
            drivers.push_back(driver);
        }
    }
    return drivers;
}

bool activate_all(const std::vector<GLC*>& drivers) {
    for (GLC* driver : drivers) {
        if (!driver->set_activate()) {
            return false;
        }
    }
    return wait_until(
        [&] {
            for (GLC* driver : drivers) {
                if (GLC::GS_ACTIVATED != driver->get_gripper_status()) {
                    return false;
                }
            }
            return true;
        },
        ACTIVATION_DEADLINE);
}

void disconnect_all(const std::vector<GLC*>& drivers) {
    for (GLC* driver : drivers) {
        GripperConnectionManager::instance().destroy(driver);
        delete driver;
    }
}

double process_cpu_millis() {
    struct timespec time;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

double process_sleeps() {
    struct rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_nvcsw);
}

// Lets the grippers idle for the window and divides the CPU time used by the wall time.
IdleCpu measure_window(const SimulatorProcess& simulator) {
    const auto start = std::chrono::steady_clock::now();
    const double plugin_start = process_cpu_millis();
    const double simulator_start = simulator.cpu_millis();
    const double sleeps_start = process_sleeps();
    std::this_thread::sleep_for(std::chrono::seconds(IDLE_WINDOW_SECONDS));
    const double plugin_end = process_cpu_millis();
    const double sleeps_end = process_sleeps();
    const double simulator_end = simulator.cpu_millis();
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;
    IdleCpu result;
    result.measured = true;
    result.plugin_ms_per_s = (plugin_end - plugin_start) / wall.count();
    result.plugin_sleeps_per_s = (sleeps_end - sleeps_start) / wall.count();
    if (simulator_start >= 0.0 && simulator_end >= 0.0) {
        result.simulator_ms_per_s = (simulator_end - simulator_start) / wall.count();
    }
    return result;
}

}  // namespace

IdleCpu measure_idle_cpu(const std::string& simulator_program, int grippers) {
    SimulatorProcess simulator(simulator_program, grippers);
    if (!simulator.running()) {
        return IdleCpu();
    }
    QuietObserver observer;
    const std::vector<GLC*> drivers = connect_all(simulator.paths(), observer);
    IdleCpu result;
    if (static_cast<int>(drivers.size()) == grippers && activate_all(drivers)) {
        result = measure_window(simulator);
    }
    disconnect_all(drivers);
    return result;
}
