#include "gripper/gripper_business_logic/gripper_logic_control/gripper_driver_mutex.h"

void GripperDriverMutex::lock() {
    const std::thread::id self = std::this_thread::get_id();
    std::unique_lock<std::mutex> state(state_mutex_);
    ++waiters_;
    released_.wait(state, [this, self] { return free_for(self); });
    --waiters_;
    take(self);
}

bool GripperDriverMutex::try_lock() {
    const std::thread::id self = std::this_thread::get_id();
    std::lock_guard<std::mutex> state(state_mutex_);
    if (!free_for(self)) {
        return false;
    }
    take(self);
    return true;
}

void GripperDriverMutex::unlock() {
    {
        std::lock_guard<std::mutex> state(state_mutex_);
        if (0 != --depth_) {
            return;
        }
        owner_ = std::thread::id();
    }
    released_.notify_all();
}

bool GripperDriverMutex::lock_unless(const std::function<bool()>& give_up) {
    const std::thread::id self = std::this_thread::get_id();
    std::unique_lock<std::mutex> state(state_mutex_);
    ++waiters_;
    released_.wait(state, [this, self, &give_up] { return free_for(self) || give_up(); });
    --waiters_;
    if (!free_for(self)) {
        return false;
    }
    take(self);
    return true;
}

void GripperDriverMutex::wake_waiters() {
    // Taking the state lock orders the caller's change with a waiter about to sleep.
    { std::lock_guard<std::mutex> state(state_mutex_); }
    released_.notify_all();
}

int GripperDriverMutex::waiters() const {
    std::lock_guard<std::mutex> state(state_mutex_);
    return waiters_;
}

bool GripperDriverMutex::free_for(std::thread::id self) const {
    return 0 == depth_ || owner_ == self;
}

void GripperDriverMutex::take(std::thread::id self) {
    owner_ = self;
    ++depth_;
}
