// The gripper mechanics on their own: speed, slow mode, objects in the way, re-initialisation.

#include <gtest/gtest.h>

#include "tests/test_support/wait_until.h"
#include "tools/gripper_simulator/gripper_model.h"

namespace {

using gripper_sim::GripperModel;
using gripper_sim::Motion;

// An initialised model with a full stroke of stroke_ms.
class ReadyModel : public GripperModel {
public:
    explicit ReadyModel(int stroke_ms = 300) : GripperModel(options(stroke_ms)) { initialise(); }

    bool settles_at(Motion motion, int position,
                    std::chrono::milliseconds deadline = std::chrono::seconds(10)) const {
        return wait_until([&] { return Motion::moving != this->motion(); }, deadline) &&
               motion == this->motion() && position == this->position();
    }

private:
    static gripper_sim::GripperOptions options(int stroke_ms) {
        gripper_sim::GripperOptions options;
        options.init_ms = 0;
        options.full_stroke_ms = stroke_ms;
        return options;
    }
};

// A full stroke at speed 100 takes 200 ms, at speed 20 (or in slow mode) a second; speeds below
// twenty move at twenty.
TEST(GripperModel, LowerSpeedMovesMoreSlowlyAndSlowModeOverridesSpeed) {
    ReadyModel fast(200), slow(200), crawling(200), stalled(200);
    slow.set_speed(20);
    crawling.set_slow(true);
    stalled.set_speed(0);
    for (ReadyModel* model : {&fast, &slow, &crawling, &stalled}) {
        model->set_target(1000);
    }
    ASSERT_TRUE(fast.settles_at(Motion::arrived, 1000));
    EXPECT_EQ(Motion::moving, slow.motion());
    EXPECT_LT(slow.position(), 1000);
    EXPECT_EQ(Motion::moving, crawling.motion());
    EXPECT_TRUE(slow.settles_at(Motion::arrived, 1000));
    EXPECT_TRUE(stalled.settles_at(Motion::arrived, 1000, std::chrono::milliseconds(300)));
}

// Targets are clamped to the stroke. An object placed ahead of the moving fingers stops them, one
// behind them does not; opening leaves a held object behind; initialising clears a drop and stops
// the fingers.
TEST(GripperModel, ObjectsOnTheWayStopTheFingersUntilLeftBehindOrDropped) {
    ReadyModel model;
    model.set_target(5000);
    EXPECT_EQ(1000, model.target());
    ASSERT_TRUE(wait_until([&] { return model.position() > 100; }));
    model.set_object(50);
    model.set_object(900);
    ASSERT_TRUE(model.settles_at(Motion::detected, 900));
    EXPECT_TRUE(model.snapshot().object_held);
    model.set_target(-20);
    EXPECT_EQ(0, model.target());
    EXPECT_TRUE(model.settles_at(Motion::arrived, 0));
    EXPECT_FALSE(model.snapshot().object_held);
    EXPECT_FALSE(model.drop());

    model.set_target(1000);
    ASSERT_TRUE(model.settles_at(Motion::detected, 900));
    ASSERT_TRUE(model.drop());
    EXPECT_EQ(Motion::dropped, model.motion());
    model.initialise();
    EXPECT_EQ(Motion::arrived, model.motion());
    EXPECT_EQ(900, model.target());
}

}  // namespace
