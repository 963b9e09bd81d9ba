#include "gripper/gripper_business_logic/gripper_logic_control/gripper_link_recovery.h"

namespace {

const int32_t DELAYS[] = {1000, 2000, 4000};
const int32_t LONGEST_DELAY = 5000;
const int RAMP_TRIES = 3;

}  // namespace

const int GripperLinkRecovery::UNANSWERED_LIMIT;
const int GripperLinkRecovery::TRIES_PER_REPORT;

void GripperLinkRecovery::note_exchange(bool answered) {
    unanswered_ = answered ? 0 : unanswered_ + 1;
}

void GripperLinkRecovery::begin(int32_t now) {
    tries_ = 0;
    unanswered_ = 0;
    last_start_ = now;
    active_ = true;
}

int32_t GripperLinkRecovery::wait_before_try(int32_t now) const {
    const int32_t elapsed =
        static_cast<int32_t>(static_cast<uint32_t>(now) - static_cast<uint32_t>(last_start_));
    const int32_t wait = delay_after(tries_) - elapsed;
    return wait > 0 ? wait : 0;
}

void GripperLinkRecovery::try_started(int32_t now) {
    ++tries_;
    unanswered_ = 0;
    last_start_ = now;
}

bool GripperLinkRecovery::try_failed() const {
    const int tries = tries_;
    return RAMP_TRIES == tries ||
           (tries > RAMP_TRIES && 0 == (tries - RAMP_TRIES) % TRIES_PER_REPORT);
}

int GripperLinkRecovery::report_from() const {
    const int tries = tries_;
    return tries <= RAMP_TRIES ? 1 : tries - TRIES_PER_REPORT + 1;
}

void GripperLinkRecovery::end() {
    active_ = false;
    tries_ = 0;
    unanswered_ = 0;
}

int32_t GripperLinkRecovery::delay_after(int tries) {
    return tries < RAMP_TRIES ? DELAYS[tries] : LONGEST_DELAY;
}
