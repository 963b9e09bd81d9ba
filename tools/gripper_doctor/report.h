#ifndef TOOLS_GRIPPER_DOCTOR_REPORT_H
#define TOOLS_GRIPPER_DOCTOR_REPORT_H

#include <cstdint>
#include <vector>

#include "tools/gripper_doctor/finding.h"
#include "tools/gripper_doctor/target.h"

namespace gripper_doctor {

// The limits the plug-in applies to a gripper of the model series found.
struct Limits {
    float position_min = 0.0f;
    float position_max = 0.0f;
    float position_step = 0.0f;
    int force_min = 0;
    int force_max = 0;
    int speed_min = 0;
    int speed_max = 0;
};

// Everything one probe learnt about a target; what was not learnt stays unknown (-1, false).
struct Report {
    Target target;
    // 1 Modbus RTU, 0 the 14-byte frames, -1 not known.
    int protocol = -1;
    // Frames on a serial link: the Modbus id request went unanswered.
    bool fell_back = false;
    int device_id = -1;
    std::vector<uint8_t> version;
    int model_series = 0;
    bool handshaken = false;
    Limits limits;
    bool initialised = false;
    // Position, force and speed are known once the gripper is initialised; speed only for the
    // models whose speed the plug-in reads.
    bool values_known = false;
    float position = 0.0f;
    int force = 0;
    bool speed_known = false;
    int speed = 0;
    Finding finding;

    bool ok() const { return finding.ok(); }
};

}  // namespace gripper_doctor

#endif
