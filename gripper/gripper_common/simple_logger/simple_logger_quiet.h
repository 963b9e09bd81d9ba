#ifndef GRIPPER_COMMON_SIMPLE_LOGGER_QUIET_H
#define GRIPPER_COMMON_SIMPLE_LOGGER_QUIET_H

// While an object of this class lives, the log calls of its thread are dropped: for work whose
// failures are reported once for a whole group of tries instead of line by line.
class SimpleLoggerQuiet {
public:
    SimpleLoggerQuiet();
    ~SimpleLoggerQuiet();
    SimpleLoggerQuiet(const SimpleLoggerQuiet&) = delete;
    SimpleLoggerQuiet& operator=(const SimpleLoggerQuiet&) = delete;

    // True on a thread that holds such an object.
    static bool active();
};

#endif
