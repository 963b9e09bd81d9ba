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
    // When the path does not exist, the hint names the ports listed under sysroot.
    static Finding check(const std::string& path, const std::string& sysroot);

    // A usage error for a path that can never be a serial port (a directory or a regular file);
    // empty otherwise.
    static std::string wrong_kind(const std::string& path);

private:
    static Finding not_found(const std::string& path, const std::string& sysroot);
    static Finding busy(const std::string& path, const std::string& holders);
    static Finding try_open(const std::string& path, const struct stat& status);
    static Finding open_failure(const std::string& path, const struct stat& status, int error);
};

}  // namespace gripper_doctor

#endif
