#ifndef TOOLS_GRIPPER_DOCTOR_TARGET_H
#define TOOLS_GRIPPER_DOCTOR_TARGET_H

#include <cstdint>
#include <string>

namespace gripper_doctor {

// The USB device a serial port belongs to, as sysfs shows it.
struct UsbIdentity {
    std::string vendor;   // four hex digits, "0403"
    std::string product;  // four hex digits, "6001"
    bool known_adapter = false;

    bool present() const { return !vendor.empty(); }
    std::string text() const { return vendor + ":" + product; }
};

// One thing to probe: a serial device or a TCP server.
struct Target {
    enum class Kind { serial, tcp };

    Kind kind = Kind::serial;
    // As the user or the scan named it: "/dev/ttyUSB0", "192.168.1.29:8888".
    std::string name;
    std::string path;
    std::string host;
    uint16_t port = 0;
    // Where a scan found it, for example "announced in /tmp/pts"; empty for a named target.
    std::string source;
    UsbIdentity usb;

    static Target serial_port(const std::string& path);
};

// Reads TARGET as the command line gives it: HOST:PORT (IPv4 address, port 1-65535), a path, or
// a bare name that means /dev/NAME. False with a message for text that is neither.
bool parse_target(const std::string& text, Target& target, std::string& error);

}  // namespace gripper_doctor

#endif
