#include "tools/gripper_doctor/permission_advice.h"

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdio>
#include <vector>

namespace gripper_doctor {
namespace {

const mode_t GROUP_READ_WRITE = S_IRGRP | S_IWGRP;

std::string octal_mode(mode_t mode) {
    char text[8];
    std::snprintf(text, sizeof(text), "%04o", static_cast<unsigned int>(mode & 07777));
    return text;
}

}  // namespace

Finding PermissionAdvice::explain(const std::string& path, const struct stat& status) {
    const std::string user = user_name();
    const std::string group = group_name(status.st_gid);
    const std::string denied = "permission denied: user " + user + " may not open " + path;
    if (GROUP_READ_WRITE != (status.st_mode & GROUP_READ_WRITE)) {
        return make_finding("permission_denied",
                            denied + " (mode " + octal_mode(status.st_mode) +
                                ": not even its group " + group + " may read and write it)",
                            "give the group access: sudo chmod 660 " + path +
                                " (a udev rule keeps it so after re-plugging)");
    }
    if (in_group_now(status.st_gid)) {
        return make_finding("permission_denied",
                            denied + ", although it belongs to group " + group + " and " + user +
                                " is in that group",
                            "look for an access list or a security module that blocks it: "
                            "getfacl " +
                                path);
    }
    if (listed_in_group(status.st_gid, user)) {
        return make_finding("permission_denied",
                            denied + ": it belongs to group " + group + ", which " + user +
                                " joined after this session started",
                            "log out and back in (or run: newgrp " + group + ")");
    }
    return make_finding(
        "permission_denied",
        denied + ": it belongs to group " + group + ", and " + user + " is not in that group",
        "sudo usermod -aG " + group + " " + user + ", then log out and back in");
}

std::string PermissionAdvice::user_name() {
    const struct passwd* entry = ::getpwuid(::geteuid());
    return nullptr == entry ? "uid " + std::to_string(::geteuid()) : std::string(entry->pw_name);
}

std::string PermissionAdvice::group_name(gid_t group) {
    const struct group* entry = ::getgrgid(group);
    return nullptr == entry ? std::to_string(group) : std::string(entry->gr_name);
}

bool PermissionAdvice::in_group_now(gid_t group) {
    if (::getegid() == group) {
        return true;
    }
    std::vector<gid_t> groups(::getgroups(0, nullptr) + 1);
    const int count = ::getgroups(static_cast<int>(groups.size()), groups.data());
    for (int i = 0; i < count; ++i) {
        if (groups[i] == group) {
            return true;
        }
    }
    return false;
}

bool PermissionAdvice::listed_in_group(gid_t group, const std::string& user) {
    const struct group* entry = ::getgrgid(group);
    for (char** member = nullptr == entry ? nullptr : entry->gr_mem;
         nullptr != member && nullptr != *member; ++member) {
        if (user == *member) {
            return true;
        }
    }
    return false;
}

}  // namespace gripper_doctor
