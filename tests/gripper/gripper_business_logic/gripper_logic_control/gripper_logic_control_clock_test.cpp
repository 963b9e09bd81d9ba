// The wall clock stepped: in this process CLOCK_REALTIME reads an hour ahead of the system's,
// as if the clock had been set back an hour after every deadline computed on it. No wait of the
// driver may depend on that clock: a stop from inside a notification, with the driver lock held,
// while the update thread waits for that lock, must still end the update loop at once.
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <thread>

#include "tests/test_support/driver_fixture.h"

namespace {

std::atomic<bool> g_clock_stepped{false};
const time_t kStep = 3600;

}  // namespace

// Every reader of the wall clock in this process, the standard library included, sees it stepped.
extern "C" int clock_gettime(clockid_t clock, struct timespec* time) {
    const int result = static_cast<int>(syscall(SYS_clock_gettime, clock, time));
    if (0 == result && CLOCK_REALTIME == clock && g_clock_stepped.load()) {
        time->tv_sec += kStep;
    }
    return result;
}

TEST_F(DriverTest, StopEndsTheLoopPromptlyWhenTheWallClockIsStepped) {
    const int gripper = simulator_.add_modbus_pty(quick_options(1, 1000, 50));
    ASSERT_TRUE(connect_serial(gripper) && activate());
    StoppingObserver stopper(driver_.get(), 65);
    driver_->add_notify_interface(&stopper);
    g_clock_stepped = true;

    std::atomic<bool> done{false};
    bool commanded = false;
    std::thread command([&] {
        commanded = driver_->set_force(65);
        done = true;
    });
    if (!wait_until([&] { return done.load(); }, std::chrono::seconds(20))) {
        // The stop waits for an update thread that waits for the lock until the stepped
        // deadline: give up instead of hanging for an hour.
        ADD_FAILURE() << "the stop did not end the loop";
        std::_Exit(1);
    }
    command.join();
    g_clock_stepped = false;
    EXPECT_TRUE(commanded && stopper.cycle_waited_);
    driver_->remove_notify_interface(&stopper);
    const long frames = snapshot(gripper).frames_received;
    // The loop has ended: a second stop only logs, and no cycle asks the gripper any more.
    log_.clear();
    driver_->stop_loop_update();
    EXPECT_TRUE(log_.contains("private_->thread_start_"));
    EXPECT_EQ(frames, snapshot(gripper).frames_received);
}
