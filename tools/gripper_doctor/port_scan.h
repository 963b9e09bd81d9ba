#ifndef TOOLS_GRIPPER_DOCTOR_PORT_SCAN_H
#define TOOLS_GRIPPER_DOCTOR_PORT_SCAN_H

#include <string>
#include <vector>

#include "tools/gripper_doctor/finding.h"
#include "tools/gripper_doctor/target.h"
#include "tools/gripper_doctor/usb_device_list.h"

namespace gripper_doctor {

// The ports the plug-in's scan lists, in its order: the path announced in the announcement file
// ("PTY is /dev/pts/3"), then the system's serial ports. Ports of USB devices carry the device's
// ids; known adapters that have no port are kept aside, since they point at a missing driver.
class PortScan {
public:
    static const char* const ANNOUNCE_FILE;

    PortScan(const std::string& sysroot, const std::string& announce_file = ANNOUNCE_FILE);

    const std::vector<Target>& candidates() const { return candidates_; }
    // A problem when the announcement file exists but the plug-in cannot use it.
    const Finding& announcement() const { return announcement_; }
    const std::vector<UsbDevice>& adapters_without_port() const { return adapters_without_port_; }
    // "/dev/ttyS0, /dev/pts/3 (announced in /tmp/pts)", or empty.
    std::string present_ports() const;

private:
    void read_announcement(const std::string& announce_file);
    void add_system_ports(const std::string& sysroot);
    bool listed(const std::string& path) const;

    std::vector<Target> candidates_;
    Finding announcement_;
    std::vector<UsbDevice> adapters_without_port_;
};

}  // namespace gripper_doctor

#endif
