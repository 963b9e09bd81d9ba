#ifndef GRIPPER_LINK_RECOVERY_H
#define GRIPPER_LINK_RECOVERY_H

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

// The plan for bringing a failed link back, for one driver: when the link counts as failed, when
// the next reopening is due, and when the log says how the tries went. Off by default.
//
// A link has failed after UNANSWERED_LIMIT exchanges in a row without an answer (each exchange
// has already waited and retried), or when its descriptor reports a hang-up, a reset or a
// vanished device. Reopening is tried 1 s after the loss, then 2 s and 4 s after the start of
// the previous try, then every 5 s, until the gripper answers or the link is torn down.
//
// The switch, the reconnecting flag and the count of tries are read from any thread; the rest is
// used by the driver with its lock held.
class GripperLinkRecovery {
public:
    static const int UNANSWERED_LIMIT = 3;
    // Failed tries reported together in one log line, after the first three.
    static const int TRIES_PER_REPORT = 12;

    GripperLinkRecovery() = default;
    GripperLinkRecovery(const GripperLinkRecovery&) = delete;
    GripperLinkRecovery& operator=(const GripperLinkRecovery&) = delete;

    void set_enabled(bool enabled) { enabled_ = enabled; }
    bool enabled() const { return enabled_; }
    // True from the loss of the link until it answers again, while enabled.
    bool reconnecting() const { return enabled_ && active_; }
    bool active() const { return active_; }
    // Tries started since the link was lost.
    int tries() const { return tries_; }

    // The parameters the link was opened with, for opening it again.
    void set_parameters(const std::vector<std::string>& parameters) { parameters_ = parameters; }
    const std::vector<std::string>& parameters() const { return parameters_; }

    void note_exchange(bool answered);
    bool exchanges_unanswered() const { return unanswered_ >= UNANSWERED_LIMIT; }

    void begin(int32_t now);
    // Milliseconds until the next try is due; 0 when it is due now.
    int32_t wait_before_try(int32_t now) const;
    void try_started(int32_t now);
    // True when a log line should report the tries failed so far.
    bool try_failed() const;
    // The first try of the group the next report covers.
    int report_from() const;
    void end();

    // Milliseconds from the start of a try to the next one, after `tries` tries.
    static int32_t delay_after(int tries);

private:
    std::atomic<bool> enabled_{false};
    std::atomic<bool> active_{false};
    std::atomic<int> tries_{0};
    std::vector<std::string> parameters_;
    int unanswered_ = 0;
    int32_t last_start_ = 0;
};

#endif
