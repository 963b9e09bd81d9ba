// The gripper mechanics on their own: speed, slow mode, objects in the way, re-initialisation.

#include <gtest/gtest.h>

#include "tests/tools/gripper_simulator/test_support.h"
#include "tools/gripper_simulator/gripper_model.h"

namespace {

using namespace sim_test;
using gripper_sim::GripperModel;
using gripper_sim::GripperOptions;
using gripper_sim::Motion;

GripperOptions quick_options() {
    GripperOptions options;
    options.init_ms = 0;
    options.full_stroke_ms = 300;
    return options;
}

// An initialised model.
class ReadyModel : public GripperModel {
public:
    explicit ReadyModel(const GripperOptions& options = quick_options()) : GripperModel(options) {
        initialise();
    }
};

bool settles_at(const GripperModel& model, Motion motion, int position) {
    return wait_until([&] { return model.motion() != Motion::moving; }) &&
           model.motion() == motion && model.position() == position;
}

TEST(GripperModel, LowerSpeedMovesMoreSlowlyAndSlowModeOverridesSpeed) {
    GripperOptions options = quick_options();
    options.full_stroke_ms = 200;
    ReadyModel fast(options);
    ReadyModel slow(options);
    ReadyModel crawling(options);
    slow.set_speed(20);
    crawling.set_slow(true);
    fast.set_target(1000);
    slow.set_target(1000);
    crawling.set_target(1000);
    ASSERT_TRUE(settles_at(fast, Motion::arrived, 1000));
    EXPECT_EQ(slow.motion(), Motion::moving);
    EXPECT_LT(slow.position(), 1000);
    EXPECT_EQ(crawling.motion(), Motion::moving);
    EXPECT_TRUE(settles_at(slow, Motion::arrived, 1000));
}

TEST(GripperModel, SpeedsBelowTwentyMoveAtTwenty) {
    GripperOptions options = quick_options();
    options.full_stroke_ms = 100;
    ReadyModel stalled(options);
    stalled.set_speed(0);
    stalled.set_target(1000);
    EXPECT_TRUE(settles_at(stalled, Motion::arrived, 1000));
}

TEST(GripperModel, TargetsAreClampedToTheStroke) {
    ReadyModel model;
    model.set_target(5000);
    EXPECT_EQ(model.target(), 1000);
    model.set_target(-20);
    EXPECT_EQ(model.target(), 0);
}

TEST(GripperModel, FingersLeaveAHeldObjectWhenOpening) {
    GripperOptions options = quick_options();
    options.object_at = 300;
    ReadyModel model(options);
    model.set_target(1000);
    ASSERT_TRUE(settles_at(model, Motion::detected, 300));
    EXPECT_TRUE(model.snapshot().object_held);
    model.set_target(0);
    EXPECT_TRUE(settles_at(model, Motion::arrived, 0));
    EXPECT_FALSE(model.snapshot().object_held);
    EXPECT_FALSE(model.drop());
}

TEST(GripperModel, ObjectsPlacedOnTheWayStopTheFingersAndOnesBehindDoNot) {
    ReadyModel model;
    model.set_target(1000);
    ASSERT_TRUE(wait_until([&] { return model.position() > 100; }));
    model.set_object(50);
    model.set_object(900);
    EXPECT_TRUE(settles_at(model, Motion::detected, 900));
    model.set_object(-1);
    EXPECT_TRUE(settles_at(model, Motion::arrived, 1000));
}

TEST(GripperModel, InitialisationStopsTheFingersAndClearsADrop) {
    GripperOptions options = quick_options();
    options.object_at = 200;
    ReadyModel model(options);
    model.set_target(1000);
    ASSERT_TRUE(settles_at(model, Motion::detected, 200));
    ASSERT_TRUE(model.drop());
    EXPECT_EQ(model.motion(), Motion::dropped);
    model.initialise();
    EXPECT_EQ(model.motion(), Motion::arrived);
    EXPECT_EQ(model.target(), 200);
}

}  // namespace
