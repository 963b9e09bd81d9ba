#ifndef TOOLS_GRIPPER_DOCTOR_LOG_ROUTER_H
#define TOOLS_GRIPPER_DOCTOR_LOG_ROUTER_H

#include <cstdarg>
#include <string>

namespace gripper_doctor {

// The back end of the core's log while the tool runs. The core logs the system's error text of
// a failed call ("strerror(13) = Permission denied"); the capture open on the calling thread
// keeps the last one, so that a failure the checks did not foresee can still be named. Probes
// run on threads of their own, so each sees only its own lines.
class LogRouter {
public:
    static void install();

    // Collects on the thread that creates it, until it is destroyed.
    class Capture {
    public:
        Capture();
        ~Capture();
        Capture(const Capture&) = delete;
        Capture& operator=(const Capture&) = delete;

        // Empty when no call failed with an error text.
        const std::string& last_error() const { return last_error_; }

    private:
        friend class LogRouter;
        Capture* previous_;
        std::string last_error_;
    };

private:
    static void receive(const char* level, const char* file, unsigned int line, const char* format,
                        va_list args);
};

}  // namespace gripper_doctor

#endif
