#ifndef BENCH_LINK_ROUND_TRIP_IDLE_CPU_H
#define BENCH_LINK_ROUND_TRIP_IDLE_CPU_H

#include <string>

// CPU use while connected grippers sit idle, per second of wall time.
struct IdleCpu {
    bool measured = false;
    // This process: the drivers, their links and update threads.
    double plugin_ms_per_s = 0.0;
    // This process's voluntary context switches: how often its threads went to sleep.
    double plugin_sleeps_per_s = 0.0;
    // The simulator process, which is not part of the figure above; negative when unknown.
    double simulator_ms_per_s = -1.0;
};

const int IDLE_WINDOW_SECONDS = 5;

// Connects `grippers` Modbus grippers of a separate simulator process through the connection
// manager, activates them, and measures the CPU time of this process over the idle window.
IdleCpu measure_idle_cpu(const std::string& simulator_program, int grippers);

#endif
