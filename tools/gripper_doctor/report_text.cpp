#include "tools/gripper_doctor/report_text.h"

#include <algorithm>
#include <cstdio>

#include "tools/gripper_doctor/hex_text.h"

namespace gripper_doctor {
namespace {

const size_t NAME_WIDTH = 14;

std::string number(float value) {
    char text[32];
    std::snprintf(text, sizeof(text), "%.1f", value);
    return text;
}

}  // namespace

std::string ReportText::full(const Report& report) {
    std::string text = report.target.name + "\n" + field("link", link(report));
    if (report.protocol >= 0) {
        text += field("protocol", protocol(report));
    }
    if (report.device_id >= 0) {
        text += field("device id", std::to_string(report.device_id));
    }
    if (!report.version.empty()) {
        text += field("firmware",
                      dotted_bytes(report.version) + " (bytes " + hex_bytes(report.version) + ")");
    }
    if (report.model_series > 0) {
        text += field("model series", std::to_string(report.model_series));
    }
    if (report.handshaken) {
        text += field("limits", limits(report.limits)) + values(report);
    }
    if (report.ok()) {
        return text + field("result", "OK: the gripper answers; the plug-in can connect to it");
    }
    return text + field("problem", report.finding.problem) + field("hint", report.finding.hint);
}

std::string ReportText::line(const Report& report, size_t width) {
    std::string name = report.target.name;
    name.resize(std::max(width, name.size()), ' ');
    if (report.ok()) {
        return name + "  " + summary(report);
    }
    return name + "  problem: " + report.finding.problem + "; hint: " + report.finding.hint;
}

std::string ReportText::link(const Report& report) {
    if (Target::Kind::tcp == report.target.kind) {
        return "TCP client to " + report.target.name;
    }
    const UsbIdentity& identity = report.target.usb;
    return "serial port, 115200 baud 8N1" + (identity.present() ? ", " + usb(identity) : "");
}

std::string ReportText::protocol(const Report& report) {
    if (1 == report.protocol) {
        return "Modbus RTU";
    }
    return report.fell_back ? "14-byte frames (the Modbus id request went unanswered)"
                            : "14-byte frames";
}

std::string ReportText::usb(const UsbIdentity& usb) {
    return "USB " + usb.text() + (usb.known_adapter ? " (a known gripper adapter)" : "");
}

std::string ReportText::summary(const Report& report) {
    std::string text = (1 == report.protocol ? "Modbus RTU" : "14-byte frame") +
                       std::string(" gripper") +
                       (report.device_id < 0 ? "" : ", id " + std::to_string(report.device_id)) +
                       ", model series " + std::to_string(report.model_series) + ", firmware " +
                       dotted_bytes(report.version);
    text += report.initialised ? ", initialised, position " + number(report.position) + " %"
                               : ", not initialised";
    return text + (report.target.usb.present() ? ", " + usb(report.target.usb) : "");
}

std::string ReportText::limits(const Limits& limits) {
    char step[16];
    std::snprintf(step, sizeof(step), "%g", limits.position_step);
    return "position " + number(limits.position_min) + " to " + number(limits.position_max) +
           " % in steps of " + step + ", force " + std::to_string(limits.force_min) + " to " +
           std::to_string(limits.force_max) + " %, speed " + std::to_string(limits.speed_min) +
           " to " + std::to_string(limits.speed_max) + " %";
}

std::string ReportText::values(const Report& report) {
    if (!report.initialised) {
        return field("initialised", "no: activate it before moving it") +
               field("position", "not known until the gripper is initialised") +
               field("force", "not known until the gripper is initialised") +
               field("speed", "not known until the gripper is initialised");
    }
    return field("initialised", "yes") + field("position", number(report.position) + " %") +
           field("force", std::to_string(report.force) + " %") +
           field("speed", report.speed_known ? std::to_string(report.speed) + " %"
                                             : "not read by the plug-in for this model");
}

std::string ReportText::field(const std::string& name, const std::string& value) {
    std::string padded = "  " + name;
    padded.resize(NAME_WIDTH + 2, ' ');
    return padded + value + "\n";
}

}  // namespace gripper_doctor
