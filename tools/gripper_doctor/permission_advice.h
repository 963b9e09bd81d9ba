#ifndef TOOLS_GRIPPER_DOCTOR_PERMISSION_ADVICE_H
#define TOOLS_GRIPPER_DOCTOR_PERMISSION_ADVICE_H

#include <sys/stat.h>

#include <string>

#include "tools/gripper_doctor/finding.h"

namespace gripper_doctor {

// Why this user may not open a device, and what to do: join the owning group (or log in again
// after joining it), or change the device's mode when its group has no access either.
class PermissionAdvice {
public:
    static Finding explain(const std::string& path, const struct stat& status);

private:
    static std::string user_name();
    static std::string group_name(gid_t group);
    static bool in_group_now(gid_t group);
    static bool listed_in_group(gid_t group, const std::string& user);
};

}  // namespace gripper_doctor

#endif
