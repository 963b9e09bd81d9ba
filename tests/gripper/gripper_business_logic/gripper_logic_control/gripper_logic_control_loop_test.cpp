#include <chrono>
#include <future>

#include "tests/test_support/driver_fixture.h"

namespace {

typedef std::chrono::steady_clock Clock;

// Both kinds of cycle the period test sees (one after a move, one following a move) read the
// motion feedback and the position.
const long FRAMES_PER_CYCLE = 2;

}  // namespace

TEST_F(DriverTest, SilentGripperGivesOneReadExceptionAndPollingGoesOn) {
    const int gripper = simulator_.add_modbus_pty(quick_options(1, 1000, 50));
    ASSERT_TRUE(connect_serial(gripper) && activate());

    simulator_.set_fault(gripper, gripper_sim::Fault::silent);
    ASSERT_TRUE(wait_until([&] { return observer_.seen("CS_READ_EXCEPTION"); }));
    const long frames = snapshot(gripper).frames_received;
    // Read exceptions do not stop the loop: the silent gripper keeps being asked.
    ASSERT_TRUE(wait_until([&] { return snapshot(gripper).frames_received >= frames + 10; }));
    EXPECT_EQ(1, observer_.count("CS_READ_EXCEPTION"));

    // Each failed read-back leaves the gripper taken as not initialised until one succeeds.
    simulator_.set_fault(gripper, gripper_sim::Fault::none);
    ASSERT_TRUE(wait_until([&] { return driver_->set_position(50.0f); }));
    ASSERT_TRUE(wait_for_status(GLC::GS_ARRIVED));
}

// Between cycles the loop sleeps until the next one is due, a second ahead; a stop wakes it.
TEST_F(DriverTest, StopEndsASleepingLoopPromptly) {
    const int gripper = simulator_.add_modbus_pty(quick_options(1, 1000, 50));
    ASSERT_TRUE(connect_serial(gripper) && activate());
    const long frames = snapshot(gripper).frames_received;
    ASSERT_TRUE(wait_until([&] { return snapshot(gripper).frames_received > frames; }));
    auto stopped = std::async(std::launch::async, [&] { driver_->stop_loop_update(); });
    ASSERT_EQ(std::future_status::ready, stopped.wait_for(std::chrono::milliseconds(500)));
}

// A stop during a silent gripper's exchange waits for the exchange, which times out as it always
// does (every pass waited for in full), and then ends the loop.
TEST_F(DriverTest, StopDuringASilentExchangeEndsTheLoopOnceTheExchangeTimedOut) {
    const int gripper = simulator_.add_modbus_pty(quick_options(1, 1000, 50));
    ASSERT_TRUE(connect_serial(gripper) && activate());
    // Cleared before the silence, so that a slow look at the first request loses no line.
    log_.clear();
    simulator_.set_fault(gripper, gripper_sim::Fault::silent);
    const long frames = snapshot(gripper).frames_received;
    ASSERT_TRUE(wait_until([&] { return snapshot(gripper).frames_received > frames; }));
    auto stopped = std::async(std::launch::async, [&] { driver_->stop_loop_update(); });
    ASSERT_EQ(std::future_status::ready, stopped.wait_for(std::chrono::seconds(5)));
    EXPECT_EQ(4, log_.count("W (current_time - start_time) > millis"));
    EXPECT_TRUE(log_.contains("count > 3"));
}

// Cycles come every 1000 ms, and every 100 ms while a move is followed once the gripper has been
// seen arrived. Load only lengthens a period: the periods are pinned from below each, and from
// above by their ratio, timed by the requests the gripper receives.
TEST_F(DriverTest, UpdatePeriodIsASecondAndATenthWhileAMoveIsFollowed) {
    gripper_sim::GripperOptions options = quick_options(1, 1000, 50);
    options.full_stroke_ms = 40000;
    const int gripper = simulator_.add_modbus_pty(options);
    ASSERT_TRUE(connect_serial(gripper) && activate());
    // Milliseconds per cycle over the given cycles, from the next request on.
    const auto cycle_millis = [&](int cycles) {
        const long before = snapshot(gripper).frames_received;
        wait_until([&] { return snapshot(gripper).frames_received > before; });
        const Clock::time_point start = Clock::now();
        const long until = snapshot(gripper).frames_received + cycles * FRAMES_PER_CYCLE;
        wait_until([&] { return snapshot(gripper).frames_received >= until; },
                   std::chrono::seconds(30));
        return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count() /
               cycles;
    };
    // Never seen arrived yet: the first move is followed at the idle pace.
    ASSERT_TRUE(driver_->set_position(10.0f));
    const long long first_move = cycle_millis(2);
    ASSERT_TRUE(wait_until([&] { return GLC::GS_ARRIVED == driver_->get_gripper_status(); },
                           std::chrono::seconds(20)));
    const long long idle = cycle_millis(2);
    ASSERT_TRUE(driver_->set_position(50.0f));
    const long long moving = cycle_millis(8);
    EXPECT_EQ(GLC::GS_MOVING, driver_->get_gripper_status());
    EXPECT_GE(first_move, 950);
    EXPECT_GE(idle, 950);
    EXPECT_GE(moving, 95);
    EXPECT_LT(moving * 3, idle) << "moving " << moving << " ms, idle " << idle << " ms";
}
