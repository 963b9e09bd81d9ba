#include "tools/gripper_doctor/frame_recorder.h"

#include "tools/gripper_doctor/custom_frames.h"
#include "tools/gripper_doctor/hex_text.h"
#include "tools/gripper_doctor/modbus_frames.h"

namespace gripper_doctor {
namespace {

Verdict judge_answer(const Bytes& request, const Bytes& answer) {
    return CustomFrames::is_frame(request) ? CustomFrames::answer(request, answer)
                                           : ModbusFrames::answer(request, answer);
}

}  // namespace

std::string FrameRecorder::describe(const Bytes& request) {
    return CustomFrames::is_frame(request) ? CustomFrames::request(request)
                                           : ModbusFrames::request(request);
}

FrameRecorder::FrameRecorder(const std::string& label, TraceOutput* trace,
                             Clock::time_point deadline)
    : label_(label), trace_(trace), deadline_(deadline) {}

bool FrameRecorder::refuse(const Bytes& frame) {
    if (Clock::now() < deadline_) {
        return false;
    }
    close_request();
    evidence_.timed_out = true;
    trace("time limit reached, not sent: " + hex_bytes(frame));
    return true;
}

void FrameRecorder::sent(const Bytes& frame, bool written) {
    close_request();
    request_ = frame;
    ++evidence_.requests;
    awaiting_ = written;
    evidence_.write_failed = evidence_.write_failed || !written;
    trace("-> " + hex_bytes(frame) + "   " + describe(frame) + (written ? "" : "   WRITE FAILED"));
}

bool FrameRecorder::received(const Bytes& bytes, bool discarded) {
    if (bytes.empty()) {
        return false;
    }
    if (CustomFrames::is_dropped_notice(bytes)) {
        // Not the answer: the driver takes it and goes on waiting.
        trace("<- " + hex_bytes(bytes) + "   gripper " + std::to_string(bytes[4]) +
              ": object dropped (sent unasked)");
        return false;
    }
    if (discarded || !awaiting_) {
        close_request();
        evidence_.discarded_bytes += static_cast<long>(bytes.size());
        trace("<- " + hex_bytes(bytes) + "   discarded: " + std::to_string(bytes.size()) +
              " bytes outside an answer (late, stray or incomplete)");
        return false;
    }
    awaiting_ = false;
    ++evidence_.answers;
    return judge(bytes);
}

void FrameRecorder::learnt_id(int id, int protocol_type) {
    evidence_.learnt_id = id;
    evidence_.id_protocol = protocol_type;
}

void FrameRecorder::left_unread(int bytes) {
    if (bytes <= 0) {
        return;
    }
    evidence_.discarded_bytes += bytes;
    trace("   " + std::to_string(bytes) + " bytes left unread: an answer late or incomplete");
}

void FrameRecorder::finish() {
    close_request();
}

bool FrameRecorder::judge(const Bytes& answer) {
    const Verdict verdict = judge_answer(request_, answer);
    count(verdict);
    trace("<- " + hex_bytes(answer) + "   " + verdict.text);
    if (Verdict::Kind::garbage == verdict.kind) {
        evidence_.last_garbage = answer;
    }
    if (Verdict::Kind::good != verdict.kind) {
        evidence_.unanswered = request_;
        return false;
    }
    return true;
}

void FrameRecorder::count(const Verdict& verdict) {
    switch (verdict.kind) {
        case Verdict::Kind::good:
            ++evidence_.good_answers;
            break;
        case Verdict::Kind::exception:
            ++evidence_.exceptions;
            break;
        case Verdict::Kind::checksum:
            ++evidence_.checksum_errors;
            break;
        case Verdict::Kind::foreign:
            ++evidence_.foreign_answers;
            evidence_.foreign_sender = verdict.sender;
            evidence_.foreign_addressed = verdict.addressed;
            break;
        case Verdict::Kind::garbage:
            ++evidence_.garbage_answers;
            break;
    }
}

void FrameRecorder::close_request() {
    if (!awaiting_) {
        return;
    }
    awaiting_ = false;
    evidence_.unanswered = request_;
    trace("   no answer to the request above");
}

void FrameRecorder::trace(const std::string& text) {
    if (nullptr != trace_) {
        trace_->line(label_, text);
    }
}

}  // namespace gripper_doctor
