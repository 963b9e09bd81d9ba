#include <cmath>

#include "tests/test_support/driver_fixture.h"

// Each kind of gripper is handshaken, activated, set and followed to its arrival: what it reports
// of itself, the register its position command reaches and the position read back at the end.
TEST_F(DriverTest, EachKindOfGripperIsHandshakenActivatedAndFollowedToArrival) {
    const struct {
        const char* kind;
        int position_max;
        int32_t series;
        std::vector<uint8_t> version;
        bool speed;
        float position;
        int target;
    } kinds[] = {
        {"modbus pty", 1000, 3, {0x01, 0x02}, true, 12.34f, 123},
        {"custom pty", 100, 1, {1, 2, 1, 3}, false, 40.0f, 40},
        {"custom tcp", 100, 1, {1, 2, 1, 3}, false, 60.4f, 60},
    };
    for (const auto& row : kinds) {
        SCOPED_TRACE(row.kind);
        const std::string kind = row.kind;
        const int gripper = ("modbus pty" == kind)
                                ? simulator_.add_modbus_pty(quick_options(3, row.position_max))
                            : ("custom pty" == kind)
                                ? simulator_.add_custom_pty(quick_options(3, row.position_max))
                                : simulator_.add_custom_tcp(quick_options(3, row.position_max));
        observer_.clear();
        ASSERT_TRUE("custom tcp" == kind ? connect_tcp(gripper) : connect_serial(gripper));
        // A serial gripper that ignores the Modbus id request speaks the frame protocol.
        EXPECT_EQ("custom pty" == kind, log_.contains("!private_->sync_id()"));
        EXPECT_EQ(row.series, driver_->get_model_series());
        EXPECT_EQ(row.version, driver_->get_version());
        EXPECT_EQ(row.speed, driver_->support_speed());
        EXPECT_EQ(GLC::GS_INACTIVATE, driver_->get_gripper_status());
        ASSERT_TRUE(driver_->set_activate());
        EXPECT_EQ(GLC::GS_ACTIVATING, driver_->get_gripper_status());
        ASSERT_TRUE(wait_for_status(GLC::GS_ACTIVATED));
        ASSERT_TRUE(driver_->set_force(40));
        EXPECT_EQ(40, driver_->get_force());
        // Without speed support the frame protocol has no speed request.
        EXPECT_EQ(row.speed, driver_->set_speed(80));
        ASSERT_TRUE(driver_->set_position(row.position));
        EXPECT_EQ(row.target, snapshot(gripper).target);
        EXPECT_EQ(GLC::GS_MOVING, driver_->get_gripper_status());
        ASSERT_TRUE(wait_for_status(GLC::GS_ARRIVED));
        const float arrived = 100.0f * row.target / row.position_max;
        ASSERT_TRUE(wait_until([&] { return driver_->get_position() > arrived - 0.05f; }));
        EXPECT_NEAR(arrived, driver_->get_position(), 1e-4);
        const std::vector<std::string> events = observer_.events();
        const auto activated = std::find(events.begin(), events.end(), "GS_ACTIVATED");
        EXPECT_NE(events.end(), std::find(std::find(activated, events.end(), "GS_MOVING"),
                                          events.end(), "GS_ARRIVED"));
        driver_->stop_loop_update();
        driver_->close();
        driver_.reset();
        log_.clear();
    }
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

TEST_F(DriverTest, SerialGripperThatAnswersNeitherProtocolFailsTheHandshake) {
    const int gripper = simulator_.add_modbus_pty(quick_options(3, 1000));
    simulator_.set_fault(gripper, gripper_sim::Fault::silent);
    driver_.reset(new GripperUSBSerialportCommunicationControl());
    ASSERT_TRUE(driver_->open({"CO_MANUAL", simulator_.endpoint(gripper)}));
    EXPECT_FALSE(driver_->handshake());
    EXPECT_TRUE(log_.contains("!private_->sync_id()"));
    EXPECT_FALSE(driver_->set_activate());
}
