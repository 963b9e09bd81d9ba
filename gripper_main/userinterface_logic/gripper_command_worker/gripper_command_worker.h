#ifndef GRIPPER_COMMAND_WORKER_H
#define GRIPPER_COMMAND_WORKER_H

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "gripper/gripper_common/object_keeper/object_keeper.h"

// Runs the pages' gripper operations one after the other on a thread of its own, so that the
// interface thread never waits on a gripper exchange. Two run for the pages: instance() for the
// link operations (connect, disconnect, activate) and moves() for the operator's moves, so that
// a disconnect never queues behind moves sent to a silent gripper.
//
// A move posted with a key replaces a queued, not yet started task of the same owner and key
// (the newest position wins over a stale one that has not been sent), so moves to a silent
// gripper do not pile up and are not replayed when it answers again.
//
// Each task belongs to an owner (a page). A task's work runs without the worker's lock and
// returns a completion (or none), which runs right after it on the worker thread with the lock
// held. release(owner) drops the owner's queued tasks and waits until its running task and that
// task's completion have ended, so a completion may safely queue a call to its owner (a queued
// call to a deleted object is discarded). After release(owner) returns, nothing of that owner
// runs any more.
//
// A task holds an ObjectKeeper section from its post to the end of its completion: a driver or
// device record it was given when posted stays allocated until it has run. A caller that read
// such a pointer on a thread where it may be retired meanwhile (any but the interface thread,
// which retires them itself) passes the section it read it in: the task's counts from there.
class GripperCommandWorker {
public:
    typedef std::function<void()> Completion;
    typedef std::function<Completion()> Work;

    // What a queued task is about (a driver and a quantity); a null subject is no key.
    struct Key {
        const void* subject;
        int kind;
    };

    // The link operations' worker, made on first use and ended at process exit.
    static GripperCommandWorker& instance();
    // The moves' worker.
    static GripperCommandWorker& moves();
    // A worker of its own (tests); the pages use instance().
    GripperCommandWorker();
    ~GripperCommandWorker();

    GripperCommandWorker(const GripperCommandWorker&) = delete;
    GripperCommandWorker& operator=(const GripperCommandWorker&) = delete;

    void post(const void* owner, Work work, Key key = Key{nullptr, 0},
              const ObjectKeeper::Section* held = nullptr);
    // Drops the owner's queued tasks and waits for its running one to end.
    void release(const void* owner);
    // The number of tasks waiting to start.
    size_t queued() const;

private:
    struct Task {
        const void* owner;
        Work work;
        Key key;
        std::shared_ptr<ObjectKeeper::Section> section;
    };

    void run();
    bool next(Task& task);
    void finish(const Completion& completion);

    mutable std::mutex mutex_;
    std::condition_variable wake_;
    std::condition_variable finished_;
    std::deque<Task> queue_;
    const void* running_owner_;
    bool stopping_;
    std::thread thread_;
};

#endif
