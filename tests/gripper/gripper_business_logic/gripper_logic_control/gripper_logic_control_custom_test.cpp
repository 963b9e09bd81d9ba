#include "tests/test_support/driver_fixture.h"

TEST_F(DriverTest, TcpGripperAnnouncesTheDropOfADetectedObjectByItself) {
    gripper_sim::GripperOptions options = quick_options(2, 100);
    options.object_at = 30;
    const int gripper = simulator_.add_custom_tcp(options);
    ASSERT_TRUE(connect_tcp(gripper) && activate());
    ASSERT_TRUE(driver_->set_position(60.0f));
    ASSERT_TRUE(wait_for_status(GLC::GS_DETECTED));
    // The object is lost between two cycles: once the cycle that saw it has read the position.
    ASSERT_TRUE(wait_until([&] { return driver_->get_position() > 29.9f; }));

    simulator_.drop(gripper);
    ASSERT_TRUE(wait_for_status(GLC::GS_DROPPED));
    // The next cycles acknowledge the drop; the status stays until a new command.
    const long frames = snapshot(gripper).frames_received;
    ASSERT_TRUE(wait_until([&] { return snapshot(gripper).frames_received >= frames + 4; }));
    EXPECT_EQ(GLC::GS_DROPPED, driver_->get_gripper_status());
    EXPECT_FALSE(log_.contains("!stop_current_dropped_feedback()"));
    ASSERT_TRUE(driver_->set_position(80.0f));
    ASSERT_TRUE(wait_for_status(GLC::GS_ARRIVED));
}

TEST_F(DriverTest, TcpGripperWithTheSeries2VersionGetsItsLimits) {
    gripper_sim::GripperOptions options = quick_options(2, 100);
    options.custom_version = {{1, 2, 1, 4}};
    const int gripper = simulator_.add_custom_tcp(options);
    ASSERT_TRUE(connect_tcp(gripper));
    EXPECT_EQ(2, driver_->get_model_series());
    EXPECT_FLOAT_EQ(95.0f, driver_->get_position_max());
    EXPECT_FALSE(driver_->support_unify_force());
    EXPECT_TRUE(driver_->support_angle());
    EXPECT_EQ(15, driver_->get_force_min());
    EXPECT_EQ(90, driver_->get_force_max());

    ASSERT_TRUE(activate());
    ASSERT_TRUE(driver_->set_position(99.0f));
    EXPECT_EQ(95, snapshot(gripper).target);
    ASSERT_TRUE(driver_->set_force(95));
    EXPECT_EQ(90, snapshot(gripper).force);
    ASSERT_TRUE(driver_->set_force(10));
    EXPECT_EQ(15, snapshot(gripper).force);
}
