#ifndef TOOLS_GRIPPER_DOCTOR_TRACE_OUTPUT_H
#define TOOLS_GRIPPER_DOCTOR_TRACE_OUTPUT_H

#include <cstdio>
#include <mutex>
#include <string>

namespace gripper_doctor {

// Where trace lines go: whole lines under one lock (probes run in parallel), each stamped with
// the wall-clock time to the millisecond.
class TraceOutput {
public:
    explicit TraceOutput(FILE* stream) : stream_(stream) {}
    TraceOutput(const TraceOutput&) = delete;
    TraceOutput& operator=(const TraceOutput&) = delete;

    // "[12:00:01.123] label text", or without the label when it is empty.
    void line(const std::string& label, const std::string& text);

private:
    static std::string now();

    FILE* stream_;
    std::mutex mutex_;
};

}  // namespace gripper_doctor

#endif
