#ifndef BENCH_LINK_ROUND_TRIP_POLLING_COST_H
#define BENCH_LINK_ROUND_TRIP_POLLING_COST_H

#include "bench/link_round_trip/simulator_process.h"

// What keeping connected grippers up to date costs this process, per second of wall time.
struct PollingCost {
    bool measured = false;
    double cpu_ms_per_s = 0.0;
    // Voluntary context switches: how often the process's threads went to sleep.
    double wakeups_per_s = 0.0;
    // Requests the grippers received.
    double exchanges_per_s = 0.0;
};

// Activated grippers read back once a second, or a gripper in a slow move followed every 100 ms.
enum class Polling { idle, moving };

// The cost is measured over several windows: the CPU figure is the median of the windows, so
// that one hiccup of a shared or virtual machine does not make it; the counts are taken over
// all of them.
const int POLLING_WINDOWS = 5;
const int POLLING_WINDOW_SECONDS = 3;

// Our drivers on the grippers with ids first .. first + count - 1, connected through the
// connection manager with their update loops running.
PollingCost measure_driver_polling(const SimulatorProcess& simulator, int first, int count,
                                   Polling polling);

// libmodbus making the same reads at the same rate, one thread per gripper.
PollingCost measure_libmodbus_polling(const SimulatorProcess& simulator, int first, int count,
                                      Polling polling);

#endif
