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
typedef std::vector<std::string> Names;

// A worker and what its tasks did, in order, from any thread.
class GripperCommandWorkerTest : public ::testing::Test {
protected:
    void add(const std::string& entry) {
        std::lock_guard<std::mutex> lock(mutex_);
        journal_.push_back(entry);
    }
    Names journal() {
        std::lock_guard<std::mutex> lock(mutex_);
        return journal_;
    }
    // A task that waits until the gate opens, so that later tasks stay queued behind it.
    GripperCommandWorker::Work gate(const std::string& name) {
        return [this, name] {
            add(name);
            task_thread_ = std::this_thread::get_id();
            entered_ = true;
            while (!open_) {
                std::this_thread::yield();
            }
            return Completion();
        };
    }
    GripperCommandWorker::Work note(const std::string& name) {
        return [this, name] {
            add(name);
            return Completion([this, name] { add(name + " done"); });
        };
    }

    std::mutex mutex_;
    Names journal_;
    std::atomic<bool> entered_{false};
    std::atomic<bool> open_{false};
    std::thread::id task_thread_;
    GripperCommandWorker worker_;  // last: its thread ends before the journal goes
};

}  // namespace

TEST_F(GripperCommandWorkerTest, ReleaseDropsTheOwnersQueuedTasksAndWaitsForItsRunningOne) {
    const int pages[2] = {0, 0};
    worker_.post(&pages[0], gate("running"));
    worker_.post(&pages[0], note("queued"));
    worker_.post(&pages[1], note("other"));
    ASSERT_TRUE(wait_until([&] { return entered_.load(); }));
    std::atomic<bool> released(false);
    std::thread closing([&] {
        worker_.release(&pages[0]);
        released = true;
    });
    ASSERT_TRUE(wait_until([&] { return 1u == worker_.queued(); }));
    EXPECT_FALSE(released.load());
    EXPECT_EQ(Names{"running"}, journal());
    open_ = true;
    closing.join();
    ASSERT_TRUE(wait_until([&] { return 3u == journal().size(); }));
    EXPECT_EQ((Names{"running", "other", "other done"}), journal());
    worker_.release(&pages[0]);
}

// Tasks run in order on the worker's own thread, each completion right after its work.
TEST_F(GripperCommandWorkerTest, AKeyedTaskReplacesTheQueuedOneOfTheSameOwnerAndKey) {
    const int pages[2] = {0, 0};
    const int driver = 0;
    const GripperCommandWorker::Key position{&driver, 1};
    worker_.post(&pages[0], gate("running"), position);
    ASSERT_TRUE(wait_until([&] { return entered_.load(); }));
    worker_.post(&pages[0], note("position 40"), position);
    worker_.post(&pages[0], note("force 80"), GripperCommandWorker::Key{&driver, 2});
    worker_.post(&pages[1], note("other position"), position);
    worker_.post(&pages[0], note("position 45"), position);
    worker_.post(&pages[0], note("unkeyed"));
    worker_.post(&pages[0], note("unkeyed again"));
    open_ = true;
    ASSERT_TRUE(wait_until([&] { return 11u == journal().size(); }));
    EXPECT_EQ((Names{"running", "position 45", "position 45 done", "force 80", "force 80 done",
                     "other position", "other position done", "unkeyed", "unkeyed done",
                     "unkeyed again", "unkeyed again done"}),
              journal());
    EXPECT_NE(std::this_thread::get_id(), task_thread_);
}

// A queued task holds what it was given from its post on: a record retired before the task ran
// is freed only after it has.
TEST_F(GripperCommandWorkerTest, ARecordRetiredWhileATaskIsQueuedOutlivesTheTask) {
    int owner = 0;
    worker_.post(&owner, gate("running"));
    ASSERT_TRUE(wait_until([&] { return entered_.load(); }));
    GripperDevice* device = new GripperDevice();
    worker_.post(&owner, [this, device] {
        add(0 == device->connection_type_ ? "record read" : "record changed");
        return Completion();
    });
    ObjectKeeper::instance().retire(device);
    EXPECT_EQ(1u, ObjectKeeper::instance().pending());
    open_ = true;
    ASSERT_TRUE(wait_until([] { return 0u == ObjectKeeper::instance().pending(); }));
    EXPECT_EQ((Names{"running", "record read"}), journal());
}
