#ifndef TOOLS_GRIPPER_DOCTOR_PORT_CHECKS_H
#define TOOLS_GRIPPER_DOCTOR_PORT_CHECKS_H

#include <sys/stat.h>

#include <string>

#include "tools/gripper_doctor/finding.h"

namespace gripper_doctor {

// The checks of a serial device before anything is sent to it: it exists, it is a terminal,
// this user may open it, and no other process has it open.
class PortChecks {
public:
    // present_ports names the ports that do exist, for the hint when the path does not.
    static Finding check(const std::string& path, const std::string& present_ports);

    // A usage error for a path that can never be a serial port (a directory or a regular file);
    // empty otherwise.
    static std::string wrong_kind(const std::string& path);

private:
    static Finding not_found(const std::string& path, const std::string& present_ports);
    static Finding busy(const std::string& path, const std::string& holders);
    static Finding try_open(const std::string& path, const struct stat& status);
    static Finding open_failure(const std::string& path, const struct stat& status, int error);
};

}  // namespace gripper_doctor

#endif
