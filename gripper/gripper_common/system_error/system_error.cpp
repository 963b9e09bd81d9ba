#include "gripper/gripper_common/system_error/system_error.h"

#include <system_error>

std::string system_error_text(int error_number) {
    return std::generic_category().message(error_number);
}
