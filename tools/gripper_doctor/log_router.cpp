#include "tools/gripper_doctor/log_router.h"

#include <cstdio>
#include <cstring>

#include "gripper/gripper_common/simple_logger/simple_logger.h"

namespace gripper_doctor {
namespace {

thread_local LogRouter::Capture* current_capture = nullptr;

const char ERROR_TEXT_START[] = "strerror(";
const char ERROR_TEXT_SEPARATOR[] = " = ";

}  // namespace

void LogRouter::install() {
    register_simple_logger(&LogRouter::receive);
}

LogRouter::Capture::Capture() : previous_(current_capture) {
    current_capture = this;
}

LogRouter::Capture::~Capture() {
    current_capture = previous_;
}

void LogRouter::receive(const char*, const char*, unsigned int, const char* format, va_list args) {
    if (nullptr == current_capture ||
        0 != std::strncmp(format, ERROR_TEXT_START, sizeof(ERROR_TEXT_START) - 1)) {
        return;
    }
    char text[256];
    std::vsnprintf(text, sizeof(text), format, args);
    const char* separator = std::strstr(text, ERROR_TEXT_SEPARATOR);
    if (nullptr != separator) {
        current_capture->last_error_ = separator + sizeof(ERROR_TEXT_SEPARATOR) - 1;
    }
}

}  // namespace gripper_doctor
