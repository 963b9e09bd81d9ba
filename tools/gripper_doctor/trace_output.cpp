#include "tools/gripper_doctor/trace_output.h"

#include <chrono>
#include <ctime>

namespace gripper_doctor {

void TraceOutput::line(const std::string& label, const std::string& text) {
    const std::string stamped = "[" + now() + "] " + (label.empty() ? "" : label + " ") + text;
    std::lock_guard<std::mutex> lock(mutex_);
    std::fprintf(stream_, "%s\n", stamped.c_str());
    std::fflush(stream_);
}

std::string TraceOutput::now() {
    const auto since_epoch = std::chrono::system_clock::now().time_since_epoch();
    const auto millis =
        std::chrono::duration_cast<std::chrono::milliseconds>(since_epoch).count() % 1000;
    const std::time_t seconds =
        std::chrono::duration_cast<std::chrono::seconds>(since_epoch).count();
    struct tm local;
    localtime_r(&seconds, &local);
    char text[32];
    std::snprintf(text, sizeof(text), "%02d:%02d:%02d.%03d", local.tm_hour, local.tm_min,
                  local.tm_sec, static_cast<int>(millis));
    return text;
}

}  // namespace gripper_doctor
