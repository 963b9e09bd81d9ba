#ifndef TOOLS_GRIPPER_SIMULATOR_ANNOUNCE_H
#define TOOLS_GRIPPER_SIMULATOR_ANNOUNCE_H

#include <string>

namespace gripper_sim {

// Writes "PTY is <slave_path>\n" to `file`, replacing it atomically; false when it cannot.
bool announce(const std::string& file, const std::string& slave_path);

}  // namespace gripper_sim

#endif
