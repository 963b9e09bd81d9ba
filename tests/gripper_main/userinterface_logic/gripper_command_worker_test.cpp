#include "gripper_main/userinterface_logic/gripper_command_worker/gripper_command_worker.h"

#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "gripper_main/business_logic/gripper_global/gripper_device.h"
#include "tests/test_support/wait_until.h"

namespace {

typedef GripperCommandWorker::Completion Completion;

// What the tasks did, in order, from any thread.
class Journal {
public:
    void add(const std::string& entry) {
        std::lock_guard<std::mutex> lock(mutex_);
        entries_.push_back(entry);
    }
    std::vector<std::string> entries() const {
        std::lock_guard<std::mutex> lock(mutex_);
        return entries_;
    }

private:
    mutable std::mutex mutex_;
    std::vector<std::string> entries_;
};

// A task that waits until it is let go, so that later tasks stay queued behind it.
class Gate {
public:
    GripperCommandWorker::Work task(Journal& journal, const std::string& name) {
        return [this, &journal, name] {
            journal.add(name);
            entered_ = true;
            while (!open_) {
                std::this_thread::yield();
            }
            return Completion();
        };
    }
    bool entered() const { return entered_; }
    void open() { open_ = true; }

private:
    std::atomic<bool> entered_{false};
    std::atomic<bool> open_{false};
};

GripperCommandWorker::Work note(Journal& journal, const std::string& name) {
    return [&journal, name] {
        journal.add(name);
        return Completion([&journal, name] { journal.add(name + " done"); });
    };
}

}  // namespace

TEST(GripperCommandWorkerTest, ReleaseDropsTheOwnersQueuedTasksAndWaitsForItsRunningOne) {
    GripperCommandWorker worker;
    Journal journal;
    Gate gate;
    const int pages[2] = {0, 0};
    const int& page = pages[0];
    const int& other_page = pages[1];
    worker.post(&page, gate.task(journal, "running"));
    worker.post(&page, note(journal, "queued"));
    worker.post(&other_page, note(journal, "other"));
    ASSERT_TRUE(wait_until([&] { return gate.entered(); }));
    std::atomic<bool> released(false);
    std::thread closing([&] {
        worker.release(&page);
        released = true;
    });
    ASSERT_TRUE(wait_until([&] { return 1u == worker.queued(); }));
    EXPECT_FALSE(released.load());
    EXPECT_EQ(std::vector<std::string>{"running"}, journal.entries());
    gate.open();
    closing.join();
    ASSERT_TRUE(wait_until([&] { return 3u == journal.entries().size(); }));
    EXPECT_EQ((std::vector<std::string>{"running", "other", "other done"}), journal.entries());
    worker.release(&page);
}

// Tasks run in order on the worker's own thread, each completion right after its work.
TEST(GripperCommandWorkerTest, AKeyedTaskReplacesTheQueuedOneOfTheSameOwnerAndKey) {
    GripperCommandWorker worker;
    Journal journal;
    Gate gate;
    const int page = 0;
    const int other_page = 0;
    const int driver = 0;
    const GripperCommandWorker::Key position{&driver, 1};
    const GripperCommandWorker::Key force{&driver, 2};
    std::thread::id task_thread;
    worker.post(&page, [&] {
        task_thread = std::this_thread::get_id();
        return Completion();
    });
    worker.post(&page, gate.task(journal, "running"), position);
    ASSERT_TRUE(wait_until([&] { return gate.entered(); }));
    worker.post(&page, note(journal, "position 40"), position);
    worker.post(&page, note(journal, "force 80"), force);
    worker.post(&other_page, note(journal, "other position"), position);
    worker.post(&page, note(journal, "position 45"), position);
    worker.post(&page, note(journal, "unkeyed"));
    worker.post(&page, note(journal, "unkeyed again"));
    gate.open();
    ASSERT_TRUE(wait_until([&] { return 11u == journal.entries().size(); }));
    EXPECT_EQ((std::vector<std::string>{"running", "position 45", "position 45 done", "force 80",
                                        "force 80 done", "other position", "other position done",
                                        "unkeyed", "unkeyed done", "unkeyed again",
                                        "unkeyed again done"}),
              journal.entries());
    EXPECT_NE(std::this_thread::get_id(), task_thread);
}

// A queued task holds what it was given from its post on: a record retired before the task ran
// is freed only after it has.
TEST(GripperCommandWorkerTest, ARecordRetiredWhileATaskIsQueuedOutlivesTheTask) {
    GripperCommandWorker worker;
    Journal journal;
    Gate gate;
    int owner = 0;
    worker.post(&owner, gate.task(journal, "running"));
    ASSERT_TRUE(wait_until([&] { return gate.entered(); }));
    GripperDevice* device = new GripperDevice();
    worker.post(&owner, [&journal, device] {
        journal.add(0 == device->connection_type_ ? "record read" : "record changed");
        return Completion();
    });
    ObjectKeeper::instance().retire(device);
    EXPECT_EQ(1u, ObjectKeeper::instance().pending());
    gate.open();
    ASSERT_TRUE(wait_until([] { return 0u == ObjectKeeper::instance().pending(); }));
    EXPECT_EQ((std::vector<std::string>{"running", "record read"}), journal.entries());
}
