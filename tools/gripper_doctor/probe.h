#ifndef TOOLS_GRIPPER_DOCTOR_PROBE_H
#define TOOLS_GRIPPER_DOCTOR_PROBE_H

#include <string>

#include "tools/gripper_doctor/frame_recorder.h"
#include "tools/gripper_doctor/report.h"
#include "tools/gripper_doctor/target.h"

class GripperLogicControl;

namespace gripper_doctor {

struct ProbeSettings {
    FrameRecorder::Clock::time_point deadline;
    int timeout_ms = 0;
    // Null: no trace.
    TraceOutput* trace = nullptr;
    // Prefix trace lines with the target's name (several probes run at once).
    bool label_trace = false;
    // Where the ports are listed, for the hint when a path does not exist.
    std::string sysroot = "/";
};

// One target checked the way the plug-in connects to it: the tool's checks of the port or the
// address, then the plug-in's own link opened, its handshake and read-back run, and the state
// the driver learnt read out. Nothing is moved, activated or written.
class Probe {
public:
    Probe(const Target& target, const ProbeSettings& settings);
    Probe(const Probe&) = delete;
    Probe& operator=(const Probe&) = delete;

    Report run();

private:
    void probe_serial();
    void probe_tcp();
    void talk(GripperLogicControl& link);
    void read_out(GripperLogicControl& driver, int protocol_type);
    void read_values(GripperLogicControl& driver);
    int remaining_ms() const;

    ProbeSettings settings_;
    FrameRecorder recorder_;
    Report report_;
};

}  // namespace gripper_doctor

#endif
