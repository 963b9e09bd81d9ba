#include "tools/gripper_doctor/port_scan.h"

#include <unistd.h>

#include <set>

#include "tools/gripper_doctor/serial_port_list.h"
#include "tools/gripper_doctor/sysfs.h"

namespace gripper_doctor {

const char* const PortScan::ANNOUNCE_FILE = "/tmp/pts";

PortScan::PortScan(const std::string& sysroot, const std::string& announce_file) {
    read_announcement(announce_file);
    add_system_ports(sysroot);
}

void PortScan::read_announcement(const std::string& announce_file) {
    if (0 != ::access(announce_file.c_str(), F_OK)) {
        return;
    }
    const std::string line = sysfs::first_line(announce_file);
    const size_t is = line.find("is ");
    const std::string path = std::string::npos == is ? std::string() : line.substr(is + 3);
    if (path.empty()) {
        announcement_ = make_finding(
            "announcement_unusable",
            announce_file +
                " holds no \"PTY is <path>\" line, so the plug-in's scan stops there "
                "and lists no port at all",
            "delete " + announce_file + " (a simulator writes it) or restart the simulator");
        return;
    }
    Target target = Target::serial_port(path);
    target.source = "announced in " + announce_file;
    candidates_.push_back(target);
}

void PortScan::add_system_ports(const std::string& sysroot) {
    const UsbDeviceList usb(sysroot);
    const SerialPortList serial_ports(sysroot);
    std::set<std::string> owners;
    for (const SerialPort& port : serial_ports.ports()) {
        Target target = Target::serial_port(port.path);
        target.source = "serial port";
        if (const UsbDevice* owner = usb.owner_of(port.sysfs_path)) {
            target.usb = owner->identity;
            owners.insert(owner->path);
        }
        if (!listed(target.path)) {
            candidates_.push_back(target);
        }
    }
    for (const UsbDevice& device : usb.devices()) {
        if (device.identity.known_adapter && 0 == owners.count(device.path)) {
            adapters_without_port_.push_back(device);
        }
    }
}

bool PortScan::listed(const std::string& path) const {
    for (const Target& target : candidates_) {
        if (path == target.path) {
            return true;
        }
    }
    return false;
}

std::string PortScan::present_ports() const {
    std::string text;
    for (const Target& target : candidates_) {
        if (0 != ::access(target.path.c_str(), F_OK)) {
            continue;
        }
        text += (text.empty() ? "" : ", ") + target.path;
        if ("serial port" != target.source) {
            text += " (" + target.source + ")";
        }
    }
    return text;
}

}  // namespace gripper_doctor
