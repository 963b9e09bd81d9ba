#include <future>
#include <thread>

#include "tests/gripper/gripper_business_logic/gripper_logic_control/driver_fixture.h"

namespace {

// Stops the driver's loop from inside a notification, that is with the driver lock held, after
// holding the lock long enough for the update thread to be waiting for it.
class StoppingObserver : public RecordingObserver {
public:
    explicit StoppingObserver(GripperLogicControl* driver) : driver_(driver) {}
    void on_force_changed(GripperLogicControl*, int force) override {
        if (55 == force) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1300));
            driver_->stop_loop_update();
        }
    }

private:
    GripperLogicControl* driver_;
};

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
    EXPECT_TRUE(log_.contains("count > 3"));

    // Each failed read-back leaves the gripper taken as not initialised until one succeeds.
    simulator_.set_fault(gripper, gripper_sim::Fault::none);
    ASSERT_TRUE(wait_until([&] { return driver_->set_position(50.0f); }));
    ASSERT_TRUE(wait_for_status(GLC::GS_ARRIVED));
}

TEST_F(DriverTest, VanishedPortStopsPollingAndReportsIt) {
    const int gripper = simulator_.add_modbus_pty(quick_options(1, 1000, 50));
    ASSERT_TRUE(connect_serial(gripper) && activate());

    simulator_.set_fault(gripper, gripper_sim::Fault::vanish);
    ASSERT_TRUE(wait_until([&] { return observer_.seen("CS_WRITE_EXCEPTION"); }));
    EXPECT_TRUE(driver_->occur_exception());
    ASSERT_TRUE(wait_until([&] { return log_.contains("parent_->occur_exception()"); },
                           std::chrono::seconds(8)));
    EXPECT_FALSE(driver_->set_position(10.0f));

    driver_->stop_loop_update();
    EXPECT_TRUE(driver_->close());
    driver_.reset();

    simulator_.set_fault(gripper, gripper_sim::Fault::none);
    ASSERT_TRUE(connect_serial(gripper));
    EXPECT_EQ(GLC::GS_ACTIVATED, driver_->get_gripper_status());
}

TEST_F(DriverTest, StopWhileTheUpdateThreadWaitsForTheLockDoesNotDeadlock) {
    const int gripper = simulator_.add_modbus_pty(quick_options(1, 1000, 50));
    ASSERT_TRUE(connect_serial(gripper) && activate());
    StoppingObserver stopper(driver_.get());
    driver_->add_notify_interface(&stopper);

    auto stopped = std::async(std::launch::async, [&] { return driver_->set_force(55); });
    ASSERT_EQ(std::future_status::ready, stopped.wait_for(std::chrono::seconds(10)));
    EXPECT_TRUE(stopped.get());
    const long frames = snapshot(gripper).frames_received;
    driver_->remove_notify_interface(&stopper);
    // The loop has ended: a second stop only logs, and no cycle asks the gripper any more.
    log_.clear();
    driver_->stop_loop_update();
    EXPECT_TRUE(log_.contains("private_->thread_start_"));
    EXPECT_EQ(frames, snapshot(gripper).frames_received);
}

// Between cycles the loop sleeps until the next one is due, a second ahead; a stop wakes it.
TEST_F(DriverTest, StopEndsASleepingLoopPromptly) {
    const int gripper = simulator_.add_modbus_pty(quick_options(1, 1000, 50));
    ASSERT_TRUE(connect_serial(gripper) && activate());
    const long frames = snapshot(gripper).frames_received;
    ASSERT_TRUE(wait_until([&] { return snapshot(gripper).frames_received > frames; }));
    auto stopped = std::async(std::launch::async, [&] { driver_->stop_loop_update(); });
    ASSERT_EQ(std::future_status::ready, stopped.wait_for(std::chrono::milliseconds(500)));
    log_.clear();
    driver_->stop_loop_update();
    EXPECT_TRUE(log_.contains("private_->thread_start_"));
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
    const long after_stop = snapshot(gripper).frames_received;
    log_.clear();
    driver_->stop_loop_update();
    EXPECT_TRUE(log_.contains("private_->thread_start_"));
    EXPECT_EQ(after_stop, snapshot(gripper).frames_received);
}

TEST_F(DriverTest, StatusChangesAreReportedOnceAndNamesRoundTrip) {
    const int gripper = simulator_.add_modbus_pty(quick_options(1, 1000, 50));
    ASSERT_TRUE(connect_serial(gripper));
    observer_.clear();
    driver_->set_communication_status(GripperCommunication::CS_CONNECTED);
    driver_->set_communication_status(GripperCommunication::CS_CONNECTED);
    EXPECT_EQ(1, observer_.count("CS_CONNECTED"));
    driver_->add_notify_interface(&observer_);
    driver_->set_gripper_status(GLC::GS_TURNING);
    EXPECT_EQ(1, observer_.count("GS_TURNING"));
    EXPECT_FALSE(driver_->set_position(20.0f));

    EXPECT_EQ("GS_DROPPED", GLC::gripper_status_to_string(GLC::GS_DROPPED));
    EXPECT_EQ(GLC::GS_DETECTED, GLC::string_to_gripper_status("GS_DETECTED"));
    EXPECT_EQ(GLC::GS_UNDEFINE, GLC::string_to_gripper_status("gs_detected"));
    EXPECT_TRUE(log_.contains("uncontain this gs_detected"));
    EXPECT_EQ("", GLC::gripper_status_to_string(static_cast<GLC::GripperStatus>(9)));
    EXPECT_TRUE(log_.contains("uncontain this 9"));
}
