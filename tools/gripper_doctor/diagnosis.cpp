#include "tools/gripper_doctor/diagnosis.h"

#include <unistd.h>

#include <cstdio>

#include "tools/gripper_doctor/frame_recorder.h"

namespace gripper_doctor {
namespace {

std::string seconds(int timeout_ms) {
    char text[32];
    std::snprintf(text, sizeof(text), "%g s", timeout_ms / 1000.0);
    return text;
}

std::string plural(int count, const std::string& word) {
    return std::to_string(count) + " " + word + (1 == count ? "" : "s");
}

std::string count_of(int part, int whole, const char* what) {
    return std::to_string(part) + " of " + std::to_string(whole) + " " + what;
}

// "; they read as text: "HTTP/1.1 400 B"" when the bytes are printable, else empty: another
// kind of server or a console answers.
std::string as_text(const Bytes& bytes) {
    std::string text;
    for (uint8_t byte : bytes) {
        if (byte < 0x20 || byte > 0x7E) {
            return std::string();
        }
        text += static_cast<char>(byte);
    }
    return text.empty() ? text : "; they read as text: \"" + text + "\"";
}

}  // namespace

Finding Diagnosis::of(const Evidence& evidence, const Target& target, int timeout_ms) {
    if (evidence.write_failed) {
        return broken_link(target);
    }
    if (evidence.foreign_answers > 0) {
        return foreign(evidence);
    }
    if (evidence.checksum_errors > 0) {
        return checksum(evidence, target);
    }
    if (evidence.garbage_answers > 0) {
        return garbage(evidence);
    }
    if (evidence.exceptions > 0) {
        return make_finding("refused",
                            "the device refuses the gripper's requests (" +
                                count_of(evidence.exceptions, evidence.answers, "answers") +
                                " are Modbus exceptions)",
                            "this is a Modbus device, but not a gripper with this register map");
    }
    if (evidence.discarded_bytes > 0 && 0 == evidence.good_answers) {
        return incomplete(evidence);
    }
    if (0 == evidence.good_answers) {
        return silence(evidence, target, timeout_ms);
    }
    return stopped(evidence, timeout_ms);
}

Finding Diagnosis::broken_link(const Target& target) {
    if (Target::Kind::tcp == target.kind) {
        return make_finding("connection_lost",
                            "the connection to " + target.name + " broke during the probe",
                            "the adapter closed or reset it: check its power, and that no other "
                            "program is connected to it (many serve one client at a time)");
    }
    const bool gone = 0 != ::access(target.path.c_str(), F_OK);
    return make_finding(gone ? "vanished" : "write_failed",
                        gone ? target.path + " went away during the probe"
                             : "writing to " + target.path + " failed during the probe",
                        "the adapter was unplugged or reset: plug it in again and look at "
                        "dmesg | tail for its new name");
}

Finding Diagnosis::foreign(const Evidence& evidence) {
    return make_finding(
        "foreign_id",
        "answers come from device id " + std::to_string(evidence.foreign_sender) +
            ", but the request was for id " + std::to_string(evidence.foreign_addressed) + " (" +
            count_of(evidence.foreign_answers, evidence.answers, "answers") + ")",
        "two devices may share this line, or the gripper's id setting is inconsistent: connect "
        "the gripper alone and power-cycle it");
}

Finding Diagnosis::checksum(const Evidence& evidence, const Target& target) {
    const std::string where =
        Target::Kind::tcp == target.kind ? "the adapter's serial side" : "the gripper";
    return make_finding("bad_checksum",
                        "answers arrive with bad checksums (" +
                            count_of(evidence.checksum_errors, evidence.answers, "answers") + ")",
                        "the baud rate or noise: " + where + " must run at 115200 baud 8N1; " +
                            "check the cable's shield and ground, away from motor cables");
}

Finding Diagnosis::garbage(const Evidence& evidence) {
    return make_finding("garbage",
                        "answers are unreadable bytes (" +
                            count_of(evidence.garbage_answers, evidence.answers, "answers") +
                            " are no frame of the gripper's protocols)" +
                            as_text(evidence.last_garbage),
                        "another kind of device may be on this port, or it runs at another baud "
                        "rate than 115200; check the wiring and the noise on the line");
}

Finding Diagnosis::incomplete(const Evidence& evidence) {
    return make_finding(
        "incomplete",
        "answers arrive incomplete or too late: " + std::to_string(evidence.discarded_bytes) +
            " stray bytes, no whole answer",
        "the plug-in waits 100 ms for each answer; check the baud rate (115200) "
        "and the cable, and that nothing else talks on the line");
}

Finding Diagnosis::silence(const Evidence& evidence, const Target& target, int timeout_ms) {
    const std::string within =
        evidence.timed_out ? " within the time limit of " + seconds(timeout_ms) : std::string();
    const std::string more = evidence.timed_out ? "; or raise --timeout" : std::string();
    if (Target::Kind::tcp == target.kind) {
        return make_finding(
            "no_answer",
            "connected to " + target.name + ", but nothing answers" + within + " (" +
                plural(evidence.requests, "request") + " in 14-byte frames)",
            "check the adapter's serial side (115200 baud 8N1, wiring to the gripper) and the "
            "gripper's power; the TCP link speaks 14-byte frames, not Modbus" +
                more);
    }
    const std::string both = evidence.timed_out ? "" : ", Modbus RTU and 14-byte frames";
    return make_finding("no_answer",
                        "nothing answers at 115200 8N1" + within + " (" +
                            plural(evidence.requests, "request") + both + ")",
                        "check the gripper's power and cable, and that this is its port: unplug "
                        "the adapter and see which port goes away" +
                            more);
}

Finding Diagnosis::stopped(const Evidence& evidence, int timeout_ms) {
    const std::string last = evidence.unanswered.empty()
                                 ? std::string("a request")
                                 : FrameRecorder::describe(evidence.unanswered);
    if (evidence.timed_out) {
        return make_finding("timed_out",
                            "the probe did not finish within " + seconds(timeout_ms) +
                                " (the gripper answered " +
                                plural(evidence.good_answers, "request") + ")",
                            "raise --timeout");
    }
    return make_finding(
        "stopped_answering",
        "the gripper answered " + plural(evidence.good_answers, "request") + ", then not: " + last,
        "power-cycle the gripper; if it stays so, its firmware may lack this "
        "request");
}

}  // namespace gripper_doctor
