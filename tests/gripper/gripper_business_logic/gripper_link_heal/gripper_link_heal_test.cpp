// Automatic reconnect and the update period of pending moves, against simulated grippers over
// real pseudo-terminals (reached through a symbolic link, as by-id names are) and loopback TCP.
#include "tests/test_support/driver_fixture.h"
#include "tests/test_support/fd_stream.h"

namespace {

typedef gripper_sim::Fault Fault;

struct HealRow {
    bool tcp;
    // What happens to the devices: a vanished device comes back under the same path or port, a
    // reset TCP server keeps listening, a silent gripper answers again.
    Fault fault;
};

// Simulated grippers of the row's kind, each connected by the connection manager; serial ones
// through a symbolic link.
class LinkHealTest : public DriverTest, public ::testing::WithParamInterface<HealRow> {
protected:
    GLC* add(bool tcp, int stroke_ms = 400) {
        gripper_sim::GripperOptions options = quick_options(1, tcp ? 100 : 1000, 50);
        options.full_stroke_ms = stroke_ms;
        const int n = tcp ? simulator_.add_custom_tcp(options) : simulator_.add_modbus_pty(options);
        const std::string link = folder_.file("gripper" + std::to_string(n));
        simulator_.set_link(n, link);
        drivers_.push_back(GripperConnectionManager::instance().create(
            nullptr,
            tcp ? GripperCommunication::CC_TCP_CLIENT : GripperCommunication::CC_USB_SERIALPORT,
            tcp ? std::vector<std::string>{"CO_MANUAL", "127.0.0.1",
                                           std::to_string(simulator_.tcp_port(n))}
                : std::vector<std::string>{"CO_MANUAL", link}));
        return drivers_.back();
    }
    void TearDown() override {
        for (GLC* driver : drivers_) {
            if (nullptr != driver) {
                GripperConnectionManager::instance().destroy(driver);
                delete driver;
            }
        }
    }
    static bool connected(GLC* driver) {
        return GripperCommunication::CS_CONNECTED == driver->get_communication_status() &&
               !driver->reconnecting();
    }
    static bool activate(GLC* driver) {
        return nullptr != driver && driver->set_activate() &&
               wait_until([driver] { return GLC::GS_ACTIVATED == driver->get_gripper_status(); });
    }
    void set_faults(Fault fault) {
        for (int n : {1, 2}) {
            simulator_.set_fault(n, fault);
        }
    }

    TempDir folder_;
    std::vector<GLC*> drivers_;
};

// Driver 1 reconnects by itself, in the same object, with the state its gripper reports; driver
// 2 (box clear) is left alone. Gripper 2 was never activated and is not by its reconnect either.
// The operator's disconnect ends the tries.
TEST_P(LinkHealTest, ReconnectsOnlyWhenAskedAndKeepsTheGrippersOwnState) {
    GLC* healing = add(GetParam().tcp);
    GLC* plain = add(GetParam().tcp);
    ASSERT_TRUE(nullptr != plain && activate(healing));
    healing->set_reconnect(true);
    EXPECT_FALSE(plain->reconnect());
    set_faults(GetParam().fault);
    ASSERT_TRUE(
        wait_until([&] { return healing->reconnect_tries() >= 2; }, std::chrono::seconds(20)));
    EXPECT_EQ(GLC::GS_UNDEFINE, healing->get_gripper_status());
    EXPECT_EQ(GripperCommunication::CS_DISCONNECTED, healing->get_communication_status());
    EXPECT_FALSE(healing->set_position(50.0f));
    set_faults(Fault::none);
    ASSERT_TRUE(wait_until([&] { return connected(healing); }));
    EXPECT_EQ(1, log_.count("W link lost: reconnecting"));
    EXPECT_TRUE(log_.contains("reconnected after"));
    EXPECT_TRUE(wait_until([&] { return GLC::GS_ACTIVATED == healing->get_gripper_status(); }));
    EXPECT_TRUE(healing->set_position(20.0f));
    EXPECT_FALSE(plain->reconnecting());
    simulator_.set_fault(1, GetParam().fault);
    ASSERT_TRUE(wait_until([&] { return healing->reconnecting(); }, std::chrono::seconds(20)));
    ASSERT_TRUE(GripperConnectionManager::instance().destroy(healing));
    drivers_[0] = nullptr;
    EXPECT_FALSE(healing->reconnecting());
    delete healing;
    if (Fault::silent == GetParam().fault) {
        return;  // Its link never broke: there is nothing to reconnect.
    }
    plain->set_reconnect(true);
    ASSERT_TRUE(wait_until([&] { return connected(plain); }));
    EXPECT_EQ(GLC::GS_INACTIVATE, plain->get_gripper_status());
    EXPECT_FALSE(simulator_.snapshot(2).initialised);
}

// USB vanished, USB silent, TCP vanished, TCP reset.
INSTANTIATE_TEST_CASE_P(Links, LinkHealTest,
                        ::testing::Values(HealRow{false, Fault::vanish},
                                          HealRow{false, Fault::silent},
                                          HealRow{true, Fault::vanish},
                                          HealRow{true, Fault::reset}));

// Exchanges the gripper sees from a move sent right after activation to its arrival being seen: a
// faster choice follows it at its own period from the command on (the default's idle pace there
// is the loop test's). Unknown periods are refused, logged and leave the period as it was.
TEST_F(LinkHealTest, FasterMovePeriodFollowsEveryPendingMoveFromItsCommandOn) {
    const struct {
        int32_t period;
        long least_frames;
        long most_frames;
    } rows[] = {{20, 16, 1000}, {50, 8, 1000}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.period);
        GLC* driver = add(false, 1000);
        ASSERT_NE(nullptr, driver);
        EXPECT_TRUE(driver->set_move_period(row.period));
        EXPECT_FALSE(driver->set_move_period(30));
        EXPECT_EQ(row.period, driver->move_period());
        ASSERT_TRUE(activate(driver));
        const long before = simulator_.snapshot(drivers_.size()).frames_received;
        ASSERT_TRUE(driver->set_position(100.0f));
        ASSERT_TRUE(wait_until([&] { return GLC::GS_ARRIVED == driver->get_gripper_status(); }));
        const long frames = simulator_.snapshot(drivers_.size()).frames_received - before;
        EXPECT_GE(frames, row.least_frames);
        EXPECT_LE(frames, row.most_frames);
    }
    EXPECT_EQ(2, log_.count("W unknown move period = 30"));
}

}  // namespace
