#include "gripper/gripper_common/simple_logger/simple_logger_quiet.h"

namespace {
thread_local int t_quiet_depth = 0;
}

SimpleLoggerQuiet::SimpleLoggerQuiet() {
    ++t_quiet_depth;
}

SimpleLoggerQuiet::~SimpleLoggerQuiet() {
    --t_quiet_depth;
}

bool SimpleLoggerQuiet::active() {
    return t_quiet_depth > 0;
}
