#ifndef TOOLS_GRIPPER_DOCTOR_VERDICT_H
#define TOOLS_GRIPPER_DOCTOR_VERDICT_H

#include <cstdint>
#include <string>
#include <vector>

namespace gripper_doctor {

typedef std::vector<uint8_t> Bytes;

// What an answer is, judged against the request it answers.
struct Verdict {
    enum class Kind {
        good,       // a well-formed answer from the gripper asked
        exception,  // a well-formed refusal (Modbus exception)
        checksum,   // the right shape with a wrong check (CRC, frame trailer)
        foreign,    // well-formed, but from another device id than the one asked
        garbage,    // not an answer of this protocol at all
    };

    Kind kind = Kind::garbage;
    // What it means, in words: "device id 1", "CRC 12 34 instead of 79 84".
    std::string text;
    // The device id the answer came from and the one the request was for; -1 when unknown or
    // when any device may answer.
    int sender = -1;
    int addressed = -1;
};

}  // namespace gripper_doctor

#endif
