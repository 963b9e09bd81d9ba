#ifndef TOOLS_GRIPPER_DOCTOR_REPORT_TEXT_H
#define TOOLS_GRIPPER_DOCTOR_REPORT_TEXT_H

#include <string>

#include "tools/gripper_doctor/report.h"

namespace gripper_doctor {

// A report told for a person: in full for a named target, in one line for a scanned port.
class ReportText {
public:
    // One "  name  value" line per thing learnt, then the result or the problem with its hint.
    static std::string full(const Report& report);
    // "<target padded to width>  <what answers there, or the problem and its hint>".
    static std::string line(const Report& report, size_t width);
    // "serial port, 115200 baud 8N1, USB 0403:6001 (a known gripper adapter)".
    static std::string link(const Report& report);
    static std::string protocol(const Report& report);
    // "USB 0403:6001 (a known gripper adapter)".
    static std::string usb(const UsbIdentity& usb);

private:
    static std::string summary(const Report& report);
    static std::string limits(const Limits& limits);
    static std::string values(const Report& report);
    static std::string field(const std::string& name, const std::string& value);
};

}  // namespace gripper_doctor

#endif
