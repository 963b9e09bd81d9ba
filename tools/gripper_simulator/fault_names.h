#ifndef TOOLS_GRIPPER_SIMULATOR_FAULT_NAMES_H
#define TOOLS_GRIPPER_SIMULATOR_FAULT_NAMES_H

#include <string>

#include "tools/gripper_simulator/types.h"

namespace gripper_sim {

// The fault's name as the command line and the control channel spell it ("bad_crc").
std::string fault_name(Fault fault);

// Parses a fault name; false for an unknown one.
bool parse_fault(const std::string& name, Fault& fault);

// Every fault name, separated by blanks.
std::string fault_names();

}  // namespace gripper_sim

#endif
