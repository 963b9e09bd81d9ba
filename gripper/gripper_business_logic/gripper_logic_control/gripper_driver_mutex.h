#ifndef GRIPPER_DRIVER_MUTEX_H
#define GRIPPER_DRIVER_MUTEX_H

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

// The driver lock: recursive, and a thread waiting for it can be told to give up (the update
// thread gives a cycle up when its loop is being stopped). Waiting threads sleep until the lock
// is released or they are woken; there is no timed lock, so no clock is involved, and no
// polling.
class GripperDriverMutex {
public:
    GripperDriverMutex() = default;
    GripperDriverMutex(const GripperDriverMutex&) = delete;
    GripperDriverMutex& operator=(const GripperDriverMutex&) = delete;

    void lock();
    bool try_lock();
    void unlock();
    // Locks, unless give_up() holds first; it is asked again whenever the lock is released and
    // whenever wake_waiters() is called. True when the lock was taken.
    bool lock_unless(const std::function<bool()>& give_up);
    // Makes waiting lock_unless() calls ask their give_up() again.
    void wake_waiters();
    // The threads asleep in lock() or lock_unless() now.
    int waiters() const;

private:
    bool free_for(std::thread::id self) const;
    void take(std::thread::id self);

    mutable std::mutex state_mutex_;
    std::condition_variable released_;
    std::thread::id owner_;
    int depth_ = 0;
    int waiters_ = 0;
};

#endif
