#ifndef TOOLS_GRIPPER_DOCTOR_SERIAL_PORT_LIST_H
#define TOOLS_GRIPPER_DOCTOR_SERIAL_PORT_LIST_H

#include <string>
#include <vector>

namespace gripper_doctor {

// A serial port of the system, as "/sys/class/tty/" shows it.
struct SerialPort {
    std::string path;        // "/dev/ttyUSB0"
    std::string sysfs_path;  // its sysfs directory, links resolved
};

// The serial ports the system lists: ttys backed by a device, leaving out the built-in UART
// slots that have no UART behind them, in name order.
class SerialPortList {
public:
    explicit SerialPortList(const std::string& sysroot);

    const std::vector<SerialPort>& ports() const { return ports_; }

private:
    static bool uart_present(const std::string& path);

    std::vector<SerialPort> ports_;
};

}  // namespace gripper_doctor

#endif
