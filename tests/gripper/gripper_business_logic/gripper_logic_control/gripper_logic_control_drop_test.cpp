// A frame-protocol gripper loses its object, round after round: every drop is reported and
// acknowledged, the status stays until a new command, and an exchange still gets its own answer.
#include <algorithm>

#include "tests/test_support/driver_fixture.h"

namespace {

const int OBJECT_AT = 30;

class DropDuringExchangeTest : public DriverTest {
protected:
    bool grip(int gripper) {
        simulator_.set_object(gripper, OBJECT_AT);
        return driver_->set_position(60.0f) && wait_for_status(GLC::GS_DETECTED);
    }

    bool release() { return driver_->set_position(0.0f) && wait_for_status(GLC::GS_ARRIVED); }

    // Round by round, a command's exchange meets the drop, an update cycle's does, or the gripper
    // announces it between two cycles, once the cycle that saw the object has read the position.
    void drop_in_rounds(int gripper, int rounds) {
        const size_t first_event = observer_.size();
        for (int round = 0; round < rounds; ++round) {
            ASSERT_TRUE(grip(gripper)) << "round " << round;
            const long acknowledgements = snapshot(gripper).drop_acknowledgements;
            if (2 == round % 3) {
                ASSERT_TRUE(wait_until([&] { return driver_->get_position() > 29.9f; }));
                simulator_.drop(gripper);
            } else {
                simulator_.drop_during_next_exchange(gripper);
            }
            if (0 == round % 3) {
                ASSERT_TRUE(driver_->set_force(40 + round)) << "round " << round;
                EXPECT_EQ(40 + round, driver_->get_force()) << "round " << round;
            }
            ASSERT_TRUE(wait_for_status(GLC::GS_DROPPED)) << "round " << round;
            ASSERT_TRUE(wait_until([&] {
                return snapshot(gripper).drop_acknowledgements > acknowledgements;
            })) << "round "
                << round;
            EXPECT_EQ(GLC::GS_DROPPED, driver_->get_gripper_status()) << "round " << round;
            ASSERT_TRUE(release()) << "round " << round;
        }
        const std::vector<std::string> events = observer_.events(first_event);
        EXPECT_EQ(rounds, std::count(events.begin(), events.end(), "GS_DROPPED"));
        EXPECT_EQ(0, std::count(events.begin(), events.end(), "CS_READ_EXCEPTION"));
        EXPECT_FALSE(log_.contains("!stop_current_dropped_feedback()"));
    }
};

}  // namespace

TEST_F(DropDuringExchangeTest, TcpGripperDropIsNeverTakenForAnAnswer) {
    const int gripper = simulator_.add_custom_tcp(quick_options(2, 100, 50));
    ASSERT_TRUE(connect_tcp(gripper) && activate() && release());
    drop_in_rounds(gripper, 8);
}

TEST_F(DropDuringExchangeTest, SerialGripperDropIsNeverTakenForAnAnswer) {
    const int gripper = simulator_.add_custom_pty(quick_options(2, 100, 50));
    ASSERT_TRUE(connect_serial(gripper) && activate() && release());
    drop_in_rounds(gripper, 6);
}
