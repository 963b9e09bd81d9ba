#include <cmath>

#include "tests/test_support/driver_fixture.h"

// Each kind of gripper is handshaken, activated, set and followed to its arrival or to the object
// it meets, which it then drops: what it reports of itself, the register its position command
// reaches, the force it keeps and the position read back at the end.
TEST_F(DriverTest, EachKindOfGripperIsHandshakenActivatedAndFollowedToArrival) {
    const struct {
        const char* kind;
        int position_max;
        int32_t series;
        std::vector<uint8_t> version;
        bool speed;
        float position;
        int target;
        int force;
        int force_kept;
        int object_at;
    } kinds[] = {
        // The fingers start at 0 and meet the object at 30 % on their way to 50 %.
        {"modbus pty", 1000, 3, {0x01, 0x02}, true, 50.0f, 500, 40, 40, 300},
        {"custom pty", 100, 1, {1, 2, 1, 3}, false, 40.0f, 40, 40, 40, -1},
        {"custom tcp", 100, 1, {1, 2, 1, 3}, false, 60.4f, 60, 10, 20, -1},
        // The angle series reaches 95 % of the stroke, with forces from 15 to 90.
        {"custom tcp", 100, 2, {1, 2, 1, 4}, false, 99.0f, 95, 95, 90, -1},
    };
    for (const auto& row : kinds) {
        SCOPED_TRACE(std::string(row.kind) + " series " + std::to_string(row.series));
        const std::string kind = row.kind;
        gripper_sim::GripperOptions options = quick_options(3, row.position_max);
        // The frame protocol's version bytes; a Modbus gripper does not use them.
        std::copy(row.version.begin(), row.version.end(), options.custom_version.begin());
        options.object_at = row.object_at;
        const int gripper = ("modbus pty" == kind)   ? simulator_.add_modbus_pty(options)
                            : ("custom pty" == kind) ? simulator_.add_custom_pty(options)
                                                     : simulator_.add_custom_tcp(options);
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
        EXPECT_EQ(2 == row.series, driver_->support_angle() && !driver_->support_unify_force());
        ASSERT_TRUE(driver_->set_force(row.force));
        EXPECT_EQ(row.force_kept, snapshot(gripper).force);
        // Without speed support the frame protocol has no speed request.
        EXPECT_EQ(row.speed, driver_->set_speed(80));
        ASSERT_TRUE(driver_->set_position(row.position));
        EXPECT_EQ(row.target, snapshot(gripper).target);
        EXPECT_EQ(GLC::GS_MOVING, driver_->get_gripper_status());
        const GLC::GripperStatus end = row.object_at < 0 ? GLC::GS_ARRIVED : GLC::GS_DETECTED;
        ASSERT_TRUE(wait_for_status(end));
        const float arrived =
            100.0f * (row.object_at < 0 ? row.target : row.object_at) / row.position_max;
        ASSERT_TRUE(wait_until([&] { return driver_->get_position() > arrived - 0.05f; }));
        EXPECT_NEAR(arrived, driver_->get_position(), 1e-4);
        const std::vector<std::string> events = observer_.events();
        const auto activated = std::find(events.begin(), events.end(), "GS_ACTIVATED");
        EXPECT_NE(events.end(), std::find(std::find(activated, events.end(), "GS_MOVING"),
                                          events.end(), GLC::gripper_status_to_string(end)));
        if (row.object_at >= 0) {
            simulator_.drop(gripper);
            ASSERT_TRUE(wait_for_status(GLC::GS_DROPPED));
            EXPECT_EQ(1, observer_.count("GS_DROPPED"));
        }
        driver_->stop_loop_update();
        driver_->close();
        driver_.reset();
        log_.clear();
    }
}

// Commands wait for the activation and an activation for the end of a move; the values a command
// carries are clamped and converted to the register scale.
TEST_F(DriverTest, ModbusCommandsAreRefusedOutsideTheirStatusesAndClamped) {
    gripper_sim::GripperOptions options = quick_options(3, 1000);
    options.full_stroke_ms = 20000;
    const int gripper = simulator_.add_modbus_pty(options);
    ASSERT_TRUE(connect_serial(gripper));
    const long frames_before = snapshot(gripper).frames_received;
    EXPECT_FALSE(driver_->set_position(50.0f) || driver_->set_force(50));
    EXPECT_TRUE(log_.contains("1 != private_->initialize_"));
    EXPECT_EQ(frames_before, snapshot(gripper).frames_received);
    ASSERT_TRUE(activate());

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
    log_.clear();
    EXPECT_FALSE(driver_->set_activate());
    EXPECT_TRUE(log_.contains("get_gripper_status() = GS_MOVING"));
}
