#ifndef TOOLS_GRIPPER_DOCTOR_FRAME_RECORDER_H
#define TOOLS_GRIPPER_DOCTOR_FRAME_RECORDER_H

#include <chrono>
#include <string>

#include "tools/gripper_doctor/evidence.h"
#include "tools/gripper_doctor/trace_output.h"

namespace gripper_doctor {

// Watches the frames of one probe as the link writes and reads them: judges every answer
// against its request, collects the evidence and, when tracing, prints each frame in hex with
// what it means. Also holds the probe's time limit, after which no request is sent.
class FrameRecorder {
public:
    typedef std::chrono::steady_clock Clock;

    // trace may be null (no trace); label prefixes the trace lines.
    FrameRecorder(const std::string& label, TraceOutput* trace, Clock::time_point deadline);

    // True once the time limit has passed; the request is then recorded as not sent.
    bool refuse(const Bytes& frame);
    void sent(const Bytes& frame, bool written);
    // Bytes a read returned: the awaited answer, or bytes thrown away outside an answer. True
    // for an answer judged good.
    bool received(const Bytes& bytes, bool discarded);
    void learnt_id(int id, int protocol_type);
    // Bytes still waiting when the probe gave up: an answer that came late or incomplete.
    void left_unread(int bytes);
    // Ends the record: a request still waiting got no answer.
    void finish();

    const Bytes& last_request() const { return request_; }
    // What a request asks for, in words.
    static std::string describe(const Bytes& request);
    const Evidence& evidence() const { return evidence_; }

private:
    bool judge(const Bytes& answer);
    void count(const Verdict& verdict);
    void close_request();
    void trace(const std::string& text);

    const std::string label_;
    TraceOutput* const trace_;
    const Clock::time_point deadline_;
    Evidence evidence_;
    Bytes request_;
    bool awaiting_ = false;
};

}  // namespace gripper_doctor

#endif
