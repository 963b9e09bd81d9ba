#ifndef TOOLS_GRIPPER_SIMULATOR_SIMULATOR_H
#define TOOLS_GRIPPER_SIMULATOR_SIMULATOR_H

#include <cstdint>
#include <memory>
#include <string>

#include "tools/gripper_simulator/announce.h"
#include "tools/gripper_simulator/types.h"

namespace gripper_sim {

// Simulated grippers in this process, each served by a thread of its own on a pseudo-terminal
// (Modbus RTU or custom frames) or on a loopback TCP port (custom frames). Grippers are numbered
// from 1 in the order they were added. Every operation is thread-safe; operations on a number
// that names no gripper do nothing (queries give empty or zero results).
class Simulator {
public:
    Simulator();
    // Stops every responder thread and closes every port.
    ~Simulator();
    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;

    // Each returns the new gripper's number, or 0 when its port cannot be opened.
    int add_modbus_pty(const GripperOptions& options);
    // Custom frames on a pty; Modbus requests on it go unanswered, as on a custom-only gripper.
    int add_custom_pty(const GripperOptions& options);
    // Custom frames on 127.0.0.1:port; port 0 picks a free one.
    int add_custom_tcp(const GripperOptions& options, uint16_t port = 0);

    // "/dev/pts/N" (slave side) or "127.0.0.1:PORT".
    std::string endpoint(int n) const;
    uint16_t tcp_port(int n) const;
    // Fault::none clears; after vanish (or reset on a pty) it opens a new pty, so endpoint(n)
    // changes. Returns once the fault is in effect.
    void set_fault(int n, Fault fault);
    // -1 removes the object.
    void set_object(int n, int position);
    // Loses the held object: Modbus motion state 3; custom frames: the unsolicited dropped frame
    // is sent before this returns. Nothing happens when no object is held.
    void drop(int n);
    // Loses the held object when gripper n receives its next request, before it answers: with
    // custom frames the dropped frame arrives while the client waits for its answer. Nothing
    // happens when no object is held then. Returns once armed.
    void drop_during_next_exchange(int n);
    // Hex frame trace with time stamps on stderr.
    void set_trace(bool on);
    GripperSnapshot snapshot(int n) const;
    // Runs one line of the control channel's protocol; returns "ok", "error: ..." or data.
    std::string command(const std::string& line);

    // Number of grippers.
    int count() const;
    Fault fault(int n) const;
    bool trace() const;
    // One line: "1 modbus pty /dev/pts/3 id=1 fault=none".
    std::string describe(int n) const;
    // Writes "PTY is <path>" to `file` now and after every reopening of gripper n's pty; an
    // empty name stops it. Ignored for TCP grippers.
    void set_announce_file(int n, const std::string& file);
    // Keeps a symbolic link at `path` to gripper n's pty while it is there: removed when the pty
    // vanishes, made again to the new pty when it comes back, as a /dev/serial/by-id name follows
    // a re-plugged adapter; removed at exit. An empty path stops it. Ignored for TCP grippers.
    void set_link(int n, const std::string& path);
    // True once the control command "quit" has been run.
    bool quit_requested() const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace gripper_sim

#endif
