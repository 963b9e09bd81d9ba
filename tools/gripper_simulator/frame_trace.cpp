#include "tools/gripper_simulator/frame_trace.h"

#include <spdlog/sinks/stdout_color_sinks.h>
#include <spdlog/spdlog.h>

#include <memory>

namespace gripper_sim {

spdlog::logger& console() {
    // Kept out of spdlog's registry so that it cannot clash with loggers of the host program.
    static const std::shared_ptr<spdlog::logger> logger = [] {
        auto made = std::make_shared<spdlog::logger>(
            "gripper-sim", std::make_shared<spdlog::sinks::stderr_color_sink_mt>());
        made->set_pattern("[%H:%M:%S.%e] %v");
        return made;
    }();
    return *logger;
}

void FrameTrace::record(int gripper, const char* direction, const Bytes& bytes) const {
    if (!enabled_) {
        return;
    }
    std::string hex;
    hex.reserve(bytes.size() * 3);
    static const char kDigits[] = "0123456789ABCDEF";
    for (uint8_t byte : bytes) {
        hex += ' ';
        hex += kDigits[byte >> 4];
        hex += kDigits[byte & 0x0F];
    }
    console().info("g{} {}{}", gripper, direction, hex);
}

}  // namespace gripper_sim
