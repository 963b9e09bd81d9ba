#ifndef GRIPPER_COMMON_SYSTEM_ERROR_H
#define GRIPPER_COMMON_SYSTEM_ERROR_H

#include <string>

#include "gripper/gripper_common/simple_logger/simple_logger.h"

// The text of an errno value. Thread-safe, unlike strerror.
std::string system_error_text(int error_number);

// Logs "strerror(%d) = %s" for an errno value with the caller's file and line.
#define GRIPPER_LOG_ERRNO(level, error_number) \
    GRIPPER_LOG(level, "strerror(%d) = %s", (error_number), system_error_text(error_number).c_str())

#endif
