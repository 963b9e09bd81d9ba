#ifndef TOOLS_GRIPPER_DOCTOR_CUSTOM_FRAMES_H
#define TOOLS_GRIPPER_DOCTOR_CUSTOM_FRAMES_H

#include <cstdint>
#include <string>

#include "tools/gripper_doctor/verdict.h"

namespace gripper_doctor {

// Requests and answers of the 14-byte frame protocol told in words. A request is known by the
// plug-in's protocol building the same frame; an answer is decoded by that protocol too.
class CustomFrames {
public:
    // True for 14 bytes that start with the frame header.
    static bool is_frame(const Bytes& bytes);
    // True for the frame a gripper sends unasked when it loses a held object.
    static bool is_dropped_notice(const Bytes& bytes);
    static std::string request(const Bytes& frame);
    static Verdict answer(const Bytes& request, const Bytes& answer);

private:
    static std::string meaning(const Bytes& request, const Bytes& answer);
    static int32_t value(const Bytes& frame);
};

}  // namespace gripper_doctor

#endif
