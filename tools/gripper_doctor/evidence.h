#ifndef TOOLS_GRIPPER_DOCTOR_EVIDENCE_H
#define TOOLS_GRIPPER_DOCTOR_EVIDENCE_H

#include "tools/gripper_doctor/verdict.h"

namespace gripper_doctor {

// What the bytes of one probe showed: how many requests went out, what came back and how it
// was judged. The diagnosis reads it when the handshake fails.
struct Evidence {
    int requests = 0;
    int answers = 0;
    int good_answers = 0;
    int exceptions = 0;
    int checksum_errors = 0;
    int garbage_answers = 0;
    int foreign_answers = 0;
    // The last answer from another device id: who answered and who was asked.
    int foreign_sender = -1;
    int foreign_addressed = -1;
    // Bytes thrown away outside an answer: late, stray or incomplete answers.
    long discarded_bytes = 0;
    bool write_failed = false;
    // The probe's time limit stopped a request from being sent.
    bool timed_out = false;
    // The id the handshake learnt from an id answer it accepted, and the protocol type of that
    // answer (1 Modbus, 0 frames); -1 while none.
    int learnt_id = -1;
    int id_protocol = -1;
    // The last request that got no good answer, if any, and the last unreadable answer.
    Bytes unanswered;
    Bytes last_garbage;
};

}  // namespace gripper_doctor

#endif
