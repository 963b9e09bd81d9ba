// Automatic reconnect and the update period of pending moves, against simulated grippers over
// real pseudo-terminals (reached through a symbolic link, as by-id names are) and loopback TCP.
#include <gtest/gtest.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "gripper/gripper_business_logic/gripper_connection_manager/gripper_connection_manager.h"
#include "tests/test_support/log_capture.h"
#include "tests/test_support/wait_until.h"
#include "tools/gripper_simulator/simulator.h"

namespace {

typedef GripperLogicControl GLC;
typedef gripper_sim::Fault Fault;

// Simulated grippers of one kind, each connected through the connection manager.
struct Grippers {
    Grippers(bool tcp, int count, int stroke_ms = 400) {
        gripper_sim::GripperOptions options;
        options.init_ms = 50;
        options.full_stroke_ms = stroke_ms;
        options.position_max = tcp ? 100 : 1000;
        for (int n = 1; n <= count; ++n) {
            const std::string link =
                "/tmp/gripper-heal-" + std::to_string(::getpid()) + "-" + std::to_string(n);
            tcp ? simulator.add_custom_tcp(options) : simulator.add_modbus_pty(options);
            simulator.set_link(n, link);
            drivers.push_back(GripperConnectionManager::instance().create(
                nullptr,
                tcp ? GripperCommunication::CC_TCP_CLIENT : GripperCommunication::CC_USB_SERIALPORT,
                tcp ? std::vector<std::string>{"CO_MANUAL", "127.0.0.1",
                                               std::to_string(simulator.tcp_port(n))}
                    : std::vector<std::string>{"CO_MANUAL", link}));
        }
    }
    ~Grippers() {
        for (GLC* driver : drivers) {
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
        return driver->set_activate() &&
               wait_until([driver] { return GLC::GS_ACTIVATED == driver->get_gripper_status(); });
    }

    gripper_sim::Simulator simulator;
    std::vector<GLC*> drivers;
};

struct HealRow {
    const char* name;
    bool tcp;
    // What happens to the devices: a vanished device comes back under the same path or port, a
    // reset TCP server keeps listening, a silent gripper answers again.
    Fault fault;
};

class LinkHealTest : public ::testing::TestWithParam<HealRow> {};

// Driver 1 reconnects by itself, in the same object, with the state its gripper reports; driver
// 2 (box clear) is left alone. Gripper 2 was never activated and is not by its reconnect either.
// The operator's disconnect ends the tries.
TEST_P(LinkHealTest, ReconnectsOnlyWhenAskedAndKeepsTheGrippersOwnState) {
    LogCapture log;
    Grippers grippers(GetParam().tcp, 2);
    GLC* healing = grippers.drivers[0];
    GLC* plain = grippers.drivers[1];
    ASSERT_TRUE(nullptr != healing && nullptr != plain);
    ASSERT_TRUE(Grippers::activate(healing));
    healing->set_reconnect(true);
    EXPECT_FALSE(plain->reconnect());
    for (int n : {1, 2}) {
        grippers.simulator.set_fault(n, GetParam().fault);
    }
    ASSERT_TRUE(
        wait_until([&] { return healing->reconnect_tries() >= 2; }, std::chrono::seconds(20)));
    EXPECT_EQ(GLC::GS_UNDEFINE, healing->get_gripper_status());
    EXPECT_EQ(GripperCommunication::CS_DISCONNECTED, healing->get_communication_status());
    EXPECT_FALSE(healing->set_position(50.0f));
    for (int n : {1, 2}) {
        grippers.simulator.set_fault(n, Fault::none);
    }
    ASSERT_TRUE(wait_until([&] { return Grippers::connected(healing); }));
    EXPECT_EQ(1, log.count("W link lost: reconnecting"));
    EXPECT_TRUE(log.contains("reconnected after"));
    EXPECT_TRUE(wait_until([&] { return GLC::GS_ACTIVATED == healing->get_gripper_status(); }));
    EXPECT_TRUE(healing->set_position(20.0f));
    EXPECT_FALSE(plain->reconnecting());
    grippers.simulator.set_fault(1, GetParam().fault);
    ASSERT_TRUE(wait_until([&] { return healing->reconnecting(); }, std::chrono::seconds(20)));
    ASSERT_TRUE(GripperConnectionManager::instance().destroy(healing));
    grippers.drivers[0] = nullptr;
    EXPECT_FALSE(healing->reconnecting());
    delete healing;
    if (Fault::silent == GetParam().fault) {
        return;  // Its link never broke: there is nothing to reconnect.
    }
    plain->set_reconnect(true);
    ASSERT_TRUE(wait_until([&] { return Grippers::connected(plain); }));
    EXPECT_EQ(GLC::GS_INACTIVATE, plain->get_gripper_status());
    EXPECT_FALSE(grippers.simulator.snapshot(2).initialised);
}

INSTANTIATE_TEST_CASE_P(Links, LinkHealTest,
                        ::testing::Values(HealRow{"usb_vanished", false, Fault::vanish},
                                          HealRow{"usb_silent", false, Fault::silent},
                                          HealRow{"tcp_vanished", true, Fault::vanish},
                                          HealRow{"tcp_reset", true, Fault::reset}),
                        [](const ::testing::TestParamInfo<HealRow>& info) {
                            return std::string(info.param.name);
                        });

// Exchanges the gripper sees from a move sent right after activation to its arrival being seen:
// the specified default follows it at the idle pace, a faster choice at its own from the command
// on. Unknown periods are refused and leave the default.
TEST(MovePeriodTest, FasterChoiceFollowsEveryPendingMoveFromItsCommandOn) {
    const struct {
        int32_t period;
        bool accepted;
        long least_frames;
        long most_frames;
    } rows[] = {{GLC::DEFAULT_MOVE_PERIOD, true, 1, 8},
                {20, true, 16, 1000},
                {50, true, 8, 1000},
                {30, false, 1, 8}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.period);
        LogCapture log;
        Grippers grippers(false, 1, 1000);
        GLC* driver = grippers.drivers[0];
        ASSERT_NE(nullptr, driver);
        EXPECT_EQ(row.accepted, driver->set_move_period(row.period));
        EXPECT_EQ(row.accepted ? row.period : GLC::DEFAULT_MOVE_PERIOD, driver->move_period());
        EXPECT_EQ(row.accepted ? 0 : 1, log.count("W unknown move period = 30"));
        ASSERT_TRUE(Grippers::activate(driver));
        const long before = grippers.simulator.snapshot(1).frames_received;
        ASSERT_TRUE(driver->set_position(100.0f));
        ASSERT_TRUE(wait_until([&] { return GLC::GS_ARRIVED == driver->get_gripper_status(); }));
        const long frames = grippers.simulator.snapshot(1).frames_received - before;
        EXPECT_GE(frames, row.least_frames);
        EXPECT_LE(frames, row.most_frames);
    }
}

}  // namespace
