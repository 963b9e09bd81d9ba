// How an exchange waits for its answer: with the driver lock held, asleep while nothing can
// arrive. It sleeps until the first byte comes, then for the time the missing bytes take on the
// wire, and, if they have not all come by then, until more arrive.
#include <poll.h>
#include <time.h>

#include <algorithm>

#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control.h"
#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control_private.h"
#include "gripper/gripper_common/miscellaneous_utility/miscellaneous_utility.h"
#include "gripper/gripper_common/simple_logger/simple_logger.h"

namespace {

// One character at 115200 baud, 8N1: ten bits.
const long CHARACTER_NANOS = 86806;
// A link without a descriptor to sleep on is looked at again after this pause.
const long NAP_NANOS = 100000;
const long NANOS_PER_MILLI = 1000000;

int32_t elapsed_millis(int32_t now, int32_t since) {
    return static_cast<int32_t>(static_cast<uint32_t>(now) - static_cast<uint32_t>(since));
}

void nap(long nanos) {
    struct timespec duration = {nanos / 1000000000L, nanos % 1000000000L};
    nanosleep(&duration, nullptr);
}

// The sleeps of one wait between its looks at the number of bytes waiting.
class AnswerWait {
public:
    AnswerWait(GripperByteArrival& arrival, GripperCommunication& link)
        : arrival_(arrival), link_(link) {}

    // Sleeps until the answer begins to arrive, at most millis. Right after its request no
    // answer is there yet, so looking first would only cost a call.
    void begin(int32_t millis) {
        if (arrival_.watching()) {
            polled_ = arrival_.wait_for_first(millis);
        }
    }

    // Sleeps at most millis, until more of the answer may be there.
    void sleep(int present, int missing, int32_t millis) {
        const long limit = static_cast<long>(millis) * NANOS_PER_MILLI;
        if (!arrival_.watching()) {
            nap(std::min(NAP_NANOS, limit));
        } else if (0 == present && !polled_) {
            polled_ = arrival_.wait_for_first(millis);
        } else if (0 == present) {
            // Woken without a byte: the peer hung up or closed; nothing comes any more.
            nap(limit);
        } else if (0 == pause_nanos_) {
            // The rest is on its way: sleep for the time it takes on the wire.
            pause_nanos_ = missing * CHARACTER_NANOS;
            arrival_.sleep(std::min(pause_nanos_, limit));
        } else {
            wait_for_late_bytes(present, millis, limit);
        }
    }

private:
    // Bytes still missing after their time on the wire come late, or the line hands bytes over
    // in chunks, as a USB adapter does: sleep until more arrive.
    void wait_for_late_bytes(int present, int32_t millis, long limit) {
        arrival_.forget_arrivals();
        if (link_.available() != present) {
            return;
        }
        if (!arrival_.wait_for_more(millis)) {
            pause_nanos_ *= 2;
            arrival_.sleep(std::min(pause_nanos_, limit));
        }
    }

    GripperByteArrival& arrival_;
    GripperCommunication& link_;
    bool polled_ = false;
    long pause_nanos_ = 0;
};

}  // namespace

bool GripperLogicControl::wait_for_length_available(int length, int millis) {
    const int32_t start_time = MiscellaneousUtility::current_time_millis();
    std::lock_guard<GripperDriverMutex> lock(private_->mutex_);
    AnswerWait wait(private_->byte_arrival_, *private_->communication_);
    wait.begin(millis + 1);
    for (;;) {
        const int available_length = private_->communication_->available();
        if (-1 == available_length) {
            GRIPPER_LOG("W", "-1 == available_length");
            return false;
        }
        if (available_length >= length) {
            return true;
        }
        const int32_t current_time = MiscellaneousUtility::current_time_millis();
        const int32_t elapsed = elapsed_millis(current_time, start_time);
        if (elapsed > millis) {
            GRIPPER_LOG("W", "(current_time - start_time) > millis");
            GRIPPER_LOG("W", "current_time = %d", static_cast<int>(current_time));
            GRIPPER_LOG("W", "start_time = %d", static_cast<int>(start_time));
            GRIPPER_LOG("W", "millis = %d", millis);
            return false;
        }
        // Past the limit by a little, so that the last look comes after it.
        wait.sleep(std::max(available_length, 0), length - available_length, millis - elapsed + 1);
    }
}

void GripperLogicControl::set_readable_descriptor(int descriptor) {
    std::lock_guard<GripperDriverMutex> lock(private_->mutex_);
    private_->byte_arrival_.watch(descriptor);
}
