#ifndef TOOLS_GRIPPER_DOCTOR_DIAGNOSIS_H
#define TOOLS_GRIPPER_DOCTOR_DIAGNOSIS_H

#include "tools/gripper_doctor/evidence.h"
#include "tools/gripper_doctor/finding.h"
#include "tools/gripper_doctor/target.h"

namespace gripper_doctor {

// Why the handshake or the read-back failed, in plain words, from what the frames showed. The
// strongest sign wins: a broken link, then answers from another id, bad checksums, unreadable
// bytes, refusals, stray bytes, and last silence.
class Diagnosis {
public:
    static Finding of(const Evidence& evidence, const Target& target, int timeout_ms);

private:
    static Finding broken_link(const Target& target);
    static Finding foreign(const Evidence& evidence);
    static Finding checksum(const Evidence& evidence, const Target& target);
    static Finding garbage(const Evidence& evidence);
    static Finding incomplete(const Evidence& evidence);
    static Finding silence(const Evidence& evidence, const Target& target, int timeout_ms);
    static Finding stopped(const Evidence& evidence, int timeout_ms);
};

}  // namespace gripper_doctor

#endif
