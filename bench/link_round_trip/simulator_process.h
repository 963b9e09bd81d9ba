#ifndef BENCH_LINK_ROUND_TRIP_SIMULATOR_PROCESS_H
#define BENCH_LINK_ROUND_TRIP_SIMULATOR_PROCESS_H

#include <sys/types.h>

#include <string>
#include <vector>

// How the simulated grippers' line behaves.
struct SimulatedLine {
    // 0: answers at once, as over a bare pseudo-terminal; else paced at this baud rate, 8N1.
    int baud = 0;
    // With baud: bytes handed over in windows of this length, as a USB serial adapter does;
    // 0: byte by byte.
    int window_us = 0;
    // Duration of a full stroke at full speed: long enough keeps a commanded gripper moving.
    int stroke_ms = 1000;
};

// A gripper-sim process serving Modbus grippers with ids 1 .. count on pseudo-terminals. It runs
// apart from this process so that its CPU time is not counted as the plug-in's, and, where the
// system allows it, at a real-time priority: like a device, it answers on time whatever load
// the host carries. Each gripper announces its pty in a file of a temporary folder (leaving the
// shared default file alone); a control socket there answers questions about the grippers.
class SimulatorProcess {
public:
    SimulatorProcess(const std::string& program, int count,
                     const SimulatedLine& line = SimulatedLine());
    // Stops the process with SIGTERM, reaps it and removes its files.
    ~SimulatorProcess();
    SimulatorProcess(const SimulatorProcess&) = delete;
    SimulatorProcess& operator=(const SimulatorProcess&) = delete;

    // True once the process runs and every gripper announced its pty.
    bool running() const { return !paths_.empty(); }
    // True when it runs at a real-time priority.
    bool realtime() const { return realtime_; }
    // "/dev/pts/N" of each gripper, by id.
    const std::vector<std::string>& paths() const { return paths_; }
    // CPU time the process has used so far, in milliseconds; negative when it cannot be read.
    double cpu_millis() const;
    // Requests gripper `id` has received so far; -1 when it cannot be asked.
    long frames_received(int id) const;

private:
    std::vector<std::string> arguments(const std::string& program, int count,
                                       const SimulatedLine& line) const;
    std::string announce_file(int id) const;
    std::string control_socket() const;
    bool spawn(const std::vector<std::string>& arguments, bool realtime);
    bool read_paths(int count);
    std::string ask(const std::string& command) const;

    std::string directory_;
    pid_t pid_ = -1;
    bool realtime_ = false;
    int count_;
    std::vector<std::string> paths_;
};

#endif
