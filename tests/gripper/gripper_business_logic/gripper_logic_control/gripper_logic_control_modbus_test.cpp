#include <cmath>

#include "tests/test_support/driver_fixture.h"

TEST_F(DriverTest, ModbusGripperIsHandshakenActivatedAndFollowedToArrival) {
    const int gripper = simulator_.add_modbus_pty(quick_options(3, 1000));
    ASSERT_TRUE(connect_serial(gripper));
    EXPECT_EQ(3, driver_->get_model_series());
    EXPECT_EQ((std::vector<uint8_t>{0x01, 0x02}), driver_->get_version());
    EXPECT_EQ(GLC::GS_INACTIVATE, driver_->get_gripper_status());
    EXPECT_TRUE(driver_->support_speed());

    ASSERT_TRUE(driver_->set_activate());
    EXPECT_EQ(GLC::GS_ACTIVATING, driver_->get_gripper_status());
    ASSERT_TRUE(wait_for_status(GLC::GS_ACTIVATED));

    ASSERT_TRUE(driver_->set_force(40));
    EXPECT_EQ(40, driver_->get_force());
    ASSERT_TRUE(driver_->set_speed(80));
    EXPECT_EQ(80, driver_->get_speed());

    ASSERT_TRUE(driver_->set_position(12.34f));
    EXPECT_EQ(123, snapshot(gripper).target);
    EXPECT_EQ(GLC::GS_MOVING, driver_->get_gripper_status());
    ASSERT_TRUE(wait_for_status(GLC::GS_ARRIVED));
    ASSERT_TRUE(wait_until([&] { return driver_->get_position() > 12.2f; }));
    EXPECT_NEAR(12.3f, driver_->get_position(), 1e-4);

    const std::vector<std::string> events = observer_.events();
    const auto activating = std::find(events.begin(), events.end(), "GS_ACTIVATING");
    const auto activated = std::find(activating, events.end(), "GS_ACTIVATED");
    const auto moving = std::find(activated, events.end(), "GS_MOVING");
    EXPECT_NE(events.end(), std::find(moving, events.end(), "GS_ARRIVED"));
}

TEST_F(DriverTest, ModbusGripperReportsAnObjectAndItsDrop) {
    gripper_sim::GripperOptions options = quick_options(3, 1000);
    options.object_at = 300;
    const int gripper = simulator_.add_modbus_pty(options);
    ASSERT_TRUE(connect_serial(gripper) && activate());

    // The fingers start at 0 and meet the object at 30 % on their way to 50 %.
    ASSERT_TRUE(driver_->set_position(50.0f));
    ASSERT_TRUE(wait_for_status(GLC::GS_DETECTED));
    ASSERT_TRUE(wait_until([&] { return driver_->get_position() > 29.9f; }));
    EXPECT_NEAR(30.0f, driver_->get_position(), 1e-4);

    simulator_.drop(gripper);
    ASSERT_TRUE(wait_for_status(GLC::GS_DROPPED));
    EXPECT_EQ(1, observer_.count("GS_DROPPED"));
}

TEST_F(DriverTest, ModbusCommandsAreClampedAndConvertedToTheRegisterScale) {
    const int gripper = simulator_.add_modbus_pty(quick_options(3, 1000));
    ASSERT_TRUE(connect_serial(gripper) && activate());

    const struct {
        float position;
        int target;
    } positions[] = {{120.0f, 1000}, {-5.0f, 0}, {0.05f, 1}, {99.96f, 1000}};
    for (const auto& row : positions) {
        ASSERT_TRUE(driver_->set_position(row.position)) << row.position;
        EXPECT_EQ(row.target, snapshot(gripper).target) << row.position;
    }
    // A position that is no number moves nothing.
    for (float bad : {std::nanf(""), INFINITY, -INFINITY}) {
        log_.clear();
        EXPECT_FALSE(driver_->set_position(bad)) << bad;
        EXPECT_TRUE(1 == log_.count("W !std::isfinite(position)")) << bad;
    }
    EXPECT_EQ(1000, snapshot(gripper).target);
    ASSERT_TRUE(driver_->set_speed(5));
    EXPECT_EQ(20, snapshot(gripper).speed);
    ASSERT_TRUE(driver_->set_speed(150));
    EXPECT_EQ(100, snapshot(gripper).speed);
    ASSERT_TRUE(driver_->set_force(10));
    EXPECT_EQ(20, driver_->get_force());
    ASSERT_TRUE(driver_->set_force_max());
    EXPECT_EQ(100, driver_->get_force());
}

TEST_F(DriverTest, CommandsAreRefusedOutsideTheirStatuses) {
    gripper_sim::GripperOptions options = quick_options(3, 1000);
    options.full_stroke_ms = 20000;
    const int gripper = simulator_.add_modbus_pty(options);
    ASSERT_TRUE(connect_serial(gripper));

    const long frames_before = snapshot(gripper).frames_received;
    EXPECT_FALSE(driver_->set_position(50.0f));
    EXPECT_FALSE(driver_->set_force(50));
    EXPECT_TRUE(log_.contains("1 != private_->initialize_"));
    EXPECT_EQ(frames_before, snapshot(gripper).frames_received);

    ASSERT_TRUE(activate());
    ASSERT_TRUE(driver_->set_speed(20));
    ASSERT_TRUE(driver_->set_position(90.0f));
    log_.clear();
    EXPECT_FALSE(driver_->set_activate());
    EXPECT_TRUE(log_.contains("get_gripper_status() = GS_MOVING"));
}

TEST_F(DriverTest, SerialGripperWithoutModbusIsHandshakenWithFrames) {
    gripper_sim::GripperOptions options = quick_options(3, 1000);
    options.position_max = 100;
    const int gripper = simulator_.add_custom_pty(options);
    ASSERT_TRUE(connect_serial(gripper));
    EXPECT_TRUE(log_.contains("!private_->sync_id()"));
    EXPECT_EQ(1, driver_->get_model_series());
    EXPECT_FLOAT_EQ(1.0f, driver_->position_step());

    ASSERT_TRUE(activate());
    ASSERT_TRUE(driver_->set_position(40.0f));
    EXPECT_EQ(40, snapshot(gripper).target);
    ASSERT_TRUE(wait_for_status(GLC::GS_ARRIVED));
}

TEST_F(DriverTest, SerialGripperThatAnswersNeitherProtocolFailsTheHandshake) {
    const int gripper = simulator_.add_modbus_pty(quick_options(3, 1000));
    simulator_.set_fault(gripper, gripper_sim::Fault::silent);
    driver_.reset(new GripperUSBSerialportCommunicationControl());
    ASSERT_TRUE(driver_->open({"CO_MANUAL", simulator_.endpoint(gripper)}));
    EXPECT_FALSE(driver_->handshake());
    EXPECT_TRUE(log_.contains("!private_->sync_id()"));
    EXPECT_FALSE(driver_->set_activate());
}
