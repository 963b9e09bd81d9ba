#include "tools/gripper_doctor/serial_port_list.h"

#include <fcntl.h>
#include <linux/serial.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "tools/gripper_doctor/sysfs.h"

namespace gripper_doctor {

SerialPortList::SerialPortList(const std::string& sysroot) {
    const std::string root = sysfs::join(sysroot, "sys/class/tty");
    for (const std::string& name : sysfs::list(root)) {
        const std::string directory = sysfs::join(root, name);
        if (sysfs::canonical(sysfs::join(directory, "device")).empty()) {
            continue;
        }
        SerialPort port;
        port.path = sysfs::join(sysfs::join(sysroot, "dev"), name);
        port.sysfs_path = sysfs::canonical(directory);
        // Built-in UART slots (ttyS) are listed whether or not a UART is fitted.
        if (0 == name.rfind("ttyS", 0) && !uart_present(port.path)) {
            continue;
        }
        ports_.push_back(port);
    }
}

bool SerialPortList::uart_present(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        return false;
    }
    struct serial_struct serial = {};
    const bool present = 0 == ::ioctl(fd, TIOCGSERIAL, &serial) && PORT_UNKNOWN != serial.type;
    ::close(fd);
    return present;
}

}  // namespace gripper_doctor
