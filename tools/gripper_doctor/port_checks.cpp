#include "tools/gripper_doctor/port_checks.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "gripper/gripper_common/system_error/system_error.h"
#include "tools/gripper_doctor/permission_advice.h"
#include "tools/gripper_doctor/port_holders.h"
#include "tools/gripper_doctor/port_scan.h"

namespace gripper_doctor {
namespace {

Finding not_a_terminal(const std::string& path, const std::string& what) {
    return make_finding("not_a_terminal", path + " is " + what + ", not a serial port",
                        "give the gripper's serial device, such as /dev/ttyUSB0 or /dev/ttyACM0");
}

}  // namespace

Finding PortChecks::check(const std::string& path, const std::string& sysroot) {
    struct stat status;
    if (0 != ::stat(path.c_str(), &status)) {
        return not_found(path, sysroot);
    }
    const std::string kind = wrong_kind(path);
    if (!kind.empty()) {
        return not_a_terminal(path, kind);
    }
    if (!S_ISCHR(status.st_mode)) {
        return not_a_terminal(path, S_ISFIFO(status.st_mode)   ? "a pipe"
                                    : S_ISSOCK(status.st_mode) ? "a socket"
                                                               : "a block device");
    }
    if (0 != ::access(path.c_str(), R_OK | W_OK) && EACCES == errno) {
        return PermissionAdvice::explain(path, status);
    }
    const Finding opened = try_open(path, status);
    if (!opened.ok()) {
        return opened;
    }
    const std::string holders = PortHolders::describe(PortHolders::of(status.st_rdev));
    return holders.empty() ? Finding() : busy(path, holders);
}

std::string PortChecks::wrong_kind(const std::string& path) {
    struct stat status;
    if (0 != ::stat(path.c_str(), &status)) {
        return std::string();
    }
    if (S_ISDIR(status.st_mode)) {
        return "a directory";
    }
    return S_ISREG(status.st_mode) ? "a regular file" : std::string();
}

Finding PortChecks::not_found(const std::string& path, const std::string& sysroot) {
    const std::string present_ports = PortScan(sysroot).present_ports();
    const std::string hint =
        present_ports.empty()
            ? "no serial port is present: plug the adapter in and check that its driver "
              "(ftdi_sio, cdc_acm) is loaded (dmesg | tail)"
            : "ports present: " + present_ports +
                  "; run gripper-doctor without a target to probe them all";
    return make_finding("not_found", path + " does not exist", hint);
}

Finding PortChecks::busy(const std::string& path, const std::string& holders) {
    return make_finding("busy", path + " is busy: " + holders + " has it open",
                        "close that program first (on the pendant: disconnect the gripper on the "
                        "Setting page); two programs on one port take each other's answers");
}

Finding PortChecks::try_open(const std::string& path, const struct stat& status) {
    const int fd = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        return open_failure(path, status, errno);
    }
    const bool terminal = 1 == ::isatty(fd);
    ::close(fd);
    return terminal ? Finding() : not_a_terminal(path, "a device that is no terminal");
}

Finding PortChecks::open_failure(const std::string& path, const struct stat& status, int error) {
    if (EACCES == error || EPERM == error) {
        return PermissionAdvice::explain(path, status);
    }
    if (EBUSY == error) {
        return busy(path, "another program (in exclusive mode)");
    }
    if (ENXIO == error || ENODEV == error || EIO == error) {
        return make_finding("no_device", path + " exists, but no device is behind it",
                            "the adapter was unplugged or reset: plug it in again and check "
                            "dmesg | tail");
    }
    return make_finding("open_failed", path + " cannot be opened: " + system_error_text(error),
                        "check the device with: ls -l " + path);
}

}  // namespace gripper_doctor
