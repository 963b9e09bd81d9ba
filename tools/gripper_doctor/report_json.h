#ifndef TOOLS_GRIPPER_DOCTOR_REPORT_JSON_H
#define TOOLS_GRIPPER_DOCTOR_REPORT_JSON_H

#include <string>

#include "tools/gripper_doctor/report.h"

namespace gripper_doctor {

// A report as one JSON object on one line. The fields are always present, null when not known:
// target, link, protocol, device_id, version, model_series, limits, position, force, speed,
// initialised, problem, hint, problem_code; a scanned port adds source and usb.
class ReportJson {
public:
    static std::string line(const Report& report);
};

}  // namespace gripper_doctor

#endif
