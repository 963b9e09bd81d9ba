#ifndef TOOLS_GRIPPER_SIMULATOR_FRAME_TRACE_H
#define TOOLS_GRIPPER_SIMULATOR_FRAME_TRACE_H

#include <atomic>

#include "tools/gripper_simulator/types.h"

namespace spdlog {
class logger;
}

namespace gripper_sim {

// The simulator's console log on stderr, every line time-stamped: "[12:00:01.123] text".
spdlog::logger& console();

// Hex trace of the frames the grippers receive and send, switched on and off at run time:
// "[12:00:01.123] g1 rx FF 03 03 02 00 01 30 50". Thread-safe.
class FrameTrace {
public:
    void set_enabled(bool on) { enabled_ = on; }
    bool enabled() const { return enabled_; }
    // `direction` is "rx" or "tx".
    void record(int gripper, const char* direction, const Bytes& bytes) const;

private:
    std::atomic<bool> enabled_{false};
};

}  // namespace gripper_sim

#endif
