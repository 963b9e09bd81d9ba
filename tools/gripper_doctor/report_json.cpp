#include "tools/gripper_doctor/report_json.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "tools/gripper_doctor/hex_text.h"

namespace gripper_doctor {
namespace {

typedef nlohmann::ordered_json Json;

// Floats as the figures they stand for: 0.1, not 0.10000000149.
double rounded(float value) {
    return std::round(static_cast<double>(value) * 1000.0) / 1000.0;
}

Json protocol(const Report& report) {
    if (report.protocol < 0) {
        return nullptr;
    }
    return 1 == report.protocol ? "modbus_rtu" : "custom_frames";
}

Json limits(const Report& report) {
    if (!report.handshaken) {
        return nullptr;
    }
    const Limits& limits = report.limits;
    return Json{{"position_min", rounded(limits.position_min)},
                {"position_max", rounded(limits.position_max)},
                {"position_step", rounded(limits.position_step)},
                {"force_min", limits.force_min},
                {"force_max", limits.force_max},
                {"speed_min", limits.speed_min},
                {"speed_max", limits.speed_max}};
}

Json text_or_null(const std::string& text) {
    return text.empty() ? Json(nullptr) : Json(text);
}

void add_values(const Report& report, Json& object) {
    object["position"] = report.values_known ? Json(rounded(report.position)) : Json(nullptr);
    object["force"] = report.values_known ? Json(report.force) : Json(nullptr);
    object["speed"] = report.speed_known ? Json(report.speed) : Json(nullptr);
    object["initialised"] = report.handshaken ? Json(report.initialised) : Json(nullptr);
}

}  // namespace

std::string ReportJson::line(const Report& report) {
    const bool tcp = Target::Kind::tcp == report.target.kind;
    Json object;
    object["target"] = report.target.name;
    object["link"] = tcp ? "tcp" : "serial";
    object["protocol"] = protocol(report);
    object["device_id"] = report.device_id >= 0 ? Json(report.device_id) : Json(nullptr);
    object["version"] = text_or_null(dotted_bytes(report.version));
    object["model_series"] = report.model_series > 0 ? Json(report.model_series) : Json(nullptr);
    object["limits"] = limits(report);
    add_values(report, object);
    object["problem"] = text_or_null(report.finding.problem);
    object["hint"] = text_or_null(report.finding.hint);
    object["problem_code"] = text_or_null(report.finding.code);
    if (!report.target.source.empty()) {
        object["source"] = report.target.source;
        object["usb"] = text_or_null(report.target.usb.present() ? report.target.usb.text() : "");
    }
    return object.dump();
}

}  // namespace gripper_doctor
