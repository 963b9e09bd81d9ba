#ifndef TOOLS_GRIPPER_SIMULATOR_LINE_CHANNEL_H
#define TOOLS_GRIPPER_SIMULATOR_LINE_CHANNEL_H

#include <functional>
#include <string>

namespace gripper_sim {

using LineHandler = std::function<std::string(const std::string& line)>;

// Reads command lines from `in_fd` and writes one reply line per command to `out_fd`, until
// the input ends or fails, or `stop_fd` becomes readable. Blank lines get no reply.
void serve_lines(int in_fd, int out_fd, int stop_fd, const LineHandler& handle);

}  // namespace gripper_sim

#endif
