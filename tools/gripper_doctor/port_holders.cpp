#include "tools/gripper_doctor/port_holders.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cctype>
#include <cstdlib>
#include <fstream>

#include "tools/gripper_doctor/sysfs.h"

namespace gripper_doctor {
namespace {

// Unix98 pseudo-terminal slaves use the majors 136 to 143; the master multiplexer is 5:2.
const unsigned int PTY_SLAVE_MAJOR_FIRST = 136;
const unsigned int PTY_SLAVE_MAJOR_LAST = 143;
const unsigned int PTY_MINORS = 256;
const dev_t PTY_MASTER = makedev(5, 2);
// A busy port names at most this many processes.
const size_t NAMED_HOLDERS = 4;

bool is_pid(const std::string& name) {
    return !name.empty() && std::isdigit(static_cast<unsigned char>(name[0]));
}

std::string proc_path(pid_t pid, const std::string& rest) {
    return "/proc/" + std::to_string(pid) + "/" + rest;
}

}  // namespace

std::vector<PortHolder> PortHolders::of(dev_t device) {
    std::vector<PortHolder> holders;
    const int index = pty_index(device);
    for (const std::string& name : sysfs::list("/proc")) {
        const pid_t pid = is_pid(name) ? static_cast<pid_t>(std::atoi(name.c_str())) : 0;
        bool master_side = false;
        if (0 == pid || ::getpid() == pid || !holds(pid, device, index, master_side) ||
            master_side) {
            continue;
        }
        holders.push_back(PortHolder{pid, sysfs::first_line(proc_path(pid, "comm"))});
    }
    return holders;
}

std::string PortHolders::describe(const std::vector<PortHolder>& holders) {
    std::string text;
    for (size_t i = 0; i < holders.size() && i < NAMED_HOLDERS; ++i) {
        text += (text.empty() ? "" : ", ") + holders[i].name + " (pid " +
                std::to_string(holders[i].pid) + ")";
    }
    if (holders.size() > NAMED_HOLDERS) {
        text += " and " + std::to_string(holders.size() - NAMED_HOLDERS) + " more";
    }
    return text;
}

bool PortHolders::holds(pid_t pid, dev_t device, int pty_index, bool& master_side) {
    bool found = false;
    for (const std::string& fd : sysfs::list(proc_path(pid, "fd"))) {
        struct stat status;
        if (0 != ::stat(proc_path(pid, "fd/" + fd).c_str(), &status) || !S_ISCHR(status.st_mode)) {
            continue;
        }
        found = found || device == status.st_rdev;
        if (pty_index >= 0 && PTY_MASTER == status.st_rdev && pty_index == master_index(pid, fd)) {
            master_side = true;
        }
    }
    return found;
}

int PortHolders::pty_index(dev_t device) {
    const unsigned int major_number = major(device);
    if (major_number < PTY_SLAVE_MAJOR_FIRST || major_number > PTY_SLAVE_MAJOR_LAST) {
        return -1;
    }
    return static_cast<int>((major_number - PTY_SLAVE_MAJOR_FIRST) * PTY_MINORS + minor(device));
}

int PortHolders::master_index(pid_t pid, const std::string& fd) {
    std::ifstream info(proc_path(pid, "fdinfo/" + fd));
    std::string line;
    while (std::getline(info, line)) {
        if (0 == line.rfind("tty-index:", 0)) {
            return std::atoi(line.c_str() + 10);
        }
    }
    return -1;
}

}  // namespace gripper_doctor
