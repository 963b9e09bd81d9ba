#ifndef BENCH_LINK_ROUND_TRIP_SIMULATOR_PROCESS_H
#define BENCH_LINK_ROUND_TRIP_SIMULATOR_PROCESS_H

#include <sys/types.h>

#include <string>
#include <vector>

// A gripper-sim process serving Modbus grippers with ids 1 .. count on pseudo-terminals. It runs
// apart from this process so that its CPU time is not counted as the plug-in's. Each gripper
// announces its pty in a file of a temporary folder (leaving the shared default file alone).
class SimulatorProcess {
public:
    SimulatorProcess(const std::string& program, int count);
    // Stops the process with SIGTERM, reaps it and removes the announce files.
    ~SimulatorProcess();
    SimulatorProcess(const SimulatorProcess&) = delete;
    SimulatorProcess& operator=(const SimulatorProcess&) = delete;

    // True once the process runs and every gripper announced its pty.
    bool running() const { return !paths_.empty(); }
    // "/dev/pts/N" of each gripper, by id.
    const std::vector<std::string>& paths() const { return paths_; }
    // CPU time the process has used so far, in milliseconds; negative when it cannot be read.
    double cpu_millis() const;

private:
    std::vector<std::string> arguments(const std::string& program, int count) const;
    std::string announce_file(int id) const;
    bool spawn(const std::vector<std::string>& arguments);
    bool read_paths(int count);

    std::string directory_;
    pid_t pid_ = -1;
    int count_;
    std::vector<std::string> paths_;
};

#endif
