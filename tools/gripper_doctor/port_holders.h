#ifndef TOOLS_GRIPPER_DOCTOR_PORT_HOLDERS_H
#define TOOLS_GRIPPER_DOCTOR_PORT_HOLDERS_H

#include <sys/types.h>

#include <string>
#include <vector>

namespace gripper_doctor {

// A process that has a device open.
struct PortHolder {
    pid_t pid;
    std::string name;  // its command name from /proc
};

// The other processes that have a serial device open, as /proc shows them (only those this user
// may look at). For a pseudo-terminal the process that holds its master side is the device end
// of the line (a simulator), not a competitor, and is left out; so is this process.
class PortHolders {
public:
    static std::vector<PortHolder> of(dev_t device);

    // "sleep (pid 812)" or "pendant (pid 90), sleep (pid 812)".
    static std::string describe(const std::vector<PortHolder>& holders);

private:
    static bool holds(pid_t pid, dev_t device, int pty_index, bool& master_side);
    static int pty_index(dev_t device);
    static int master_index(pid_t pid, const std::string& fd);
};

}  // namespace gripper_doctor

#endif
