#ifndef GRIPPER_LINK_FAILURE_H
#define GRIPPER_LINK_FAILURE_H

#include <cstdint>
#include <string>

// The last thing that went wrong on a link, kept as a value beside the log line that reports it:
// what failed, the errno it failed with (0 when none) and the text of that log line.
struct GripperLinkFailure {
    enum Code : int32_t {
        LF_NONE = 0,
        // The open parameters or the address they name are not usable.
        LF_PARAMETERS = 1,
        // No device at the path named.
        LF_NO_DEVICE = 2,
        // The port or socket could not be opened or set up.
        LF_OPEN = 3,
        LF_CONNECT = 4,
        LF_WRITE = 5,
        LF_READ = 6,
        // No answer, or not all of it, within the passes of an exchange.
        LF_TIMEOUT = 7,
        // An answer came that does not answer the request.
        LF_ANSWER = 8,
    };

    Code code = LF_NONE;
    int error_number = 0;
    std::string sentence;
};

#endif
