// Automatic reconnect and the update period of pending moves, against simulated grippers over
// real pseudo-terminals (reached through a symbolic link, as by-id names are) and loopback TCP.
#include <gtest/gtest.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <vector>

#include "gripper/gripper_business_logic/gripper_connection_manager/gripper_connection_manager.h"
#include "tests/test_support/log_capture.h"
#include "tests/test_support/wait_until.h"
#include "tools/gripper_simulator/simulator.h"

namespace {

typedef GripperLogicControl GLC;

gripper_sim::GripperOptions quick_options(int position_max, int stroke_ms) {
    gripper_sim::GripperOptions options;
    options.position_max = position_max;
    options.init_ms = 50;
    options.full_stroke_ms = stroke_ms;
    return options;
}

// Grippers of one kind on the simulator, each connected through the connection manager.
class Bench {
public:
    Bench(bool tcp, int count, int stroke_ms = 400) : tcp_(tcp) {
        for (int index = 0; index < count; ++index) {
            const int n = tcp ? simulator_.add_custom_tcp(quick_options(100, stroke_ms))
                              : simulator_.add_modbus_pty(quick_options(1000, stroke_ms));
            links_.push_back(link_path(n));
            simulator_.set_link(n, links_.back());
            drivers_.push_back(GripperConnectionManager::instance().create(
                nullptr,
                tcp ? GripperCommunication::CC_TCP_CLIENT : GripperCommunication::CC_USB_SERIALPORT,
                parameters(n)));
        }
    }
    ~Bench() {
        for (GLC* driver : drivers_) {
            if (nullptr != driver) {
                GripperConnectionManager::instance().destroy(driver);
                delete driver;
            }
        }
    }

    std::vector<std::string> parameters(int n) {
        if (tcp_) {
            return {"CO_MANUAL", "127.0.0.1", std::to_string(simulator_.tcp_port(n))};
        }
        return {"CO_MANUAL", links_[n - 1]};
    }
    std::string link_path(int n) const {
        return "/tmp/gripper-heal-" + std::to_string(::getpid()) + "-" + std::to_string(n);
    }
    bool connected(GLC* driver) const {
        return GripperCommunication::CS_CONNECTED == driver->get_communication_status() &&
               !driver->reconnecting();
    }
    bool activate(GLC* driver) {
        return driver->set_activate() &&
               wait_until([driver] { return GLC::GS_ACTIVATED == driver->get_gripper_status(); });
    }

    bool tcp_;
    gripper_sim::Simulator simulator_;
    std::vector<std::string> links_;
    std::vector<GLC*> drivers_;
};

struct HealRow {
    const char* name;
    bool tcp;
};

class LinkHealTest : public ::testing::TestWithParam<HealRow> {};

// Driver 1 reconnects automatically, driver 2 does not; both devices vanish and come back.
// Only driver 1 is connected again, in the same object, with the status its gripper reports
// (gripper 2 was never activated, and is not activated by the reconnect either).
TEST_P(LinkHealTest, ReconnectsOnlyWhenAskedAndKeepsTheGrippersOwnState) {
    LogCapture log;
    Bench bench(GetParam().tcp, 2);
    GLC* healing = bench.drivers_[0];
    GLC* plain = bench.drivers_[1];
    ASSERT_TRUE(nullptr != healing && nullptr != plain);
    ASSERT_TRUE(bench.activate(healing));
    healing->set_reconnect(true);
    EXPECT_FALSE(plain->reconnect());
    for (int n : {1, 2}) {
        bench.simulator_.set_fault(n, gripper_sim::Fault::vanish);
    }
    ASSERT_TRUE(wait_until([&] { return healing->reconnecting(); }));
    EXPECT_EQ(GLC::GS_UNDEFINE, healing->get_gripper_status());
    EXPECT_EQ(GripperCommunication::CS_DISCONNECTED, healing->get_communication_status());
    EXPECT_FALSE(healing->set_position(50.0f));
    ASSERT_TRUE(wait_until([&] { return plain->occur_exception() || !bench.connected(plain); }));

    // The tries go on while the device is away, and are logged in groups, not one by one.
    ASSERT_TRUE(wait_until([&] { return healing->reconnect_tries() >= 2; }));
    for (int n : {1, 2}) {
        bench.simulator_.set_fault(n, gripper_sim::Fault::none);
    }
    const long plain_frames = bench.simulator_.snapshot(2).frames_received;
    ASSERT_TRUE(wait_until([&] { return bench.connected(healing); }));
    EXPECT_EQ(1, log.count("W link lost: reconnecting"));
    EXPECT_TRUE(log.contains("reconnected after"));
    EXPECT_EQ(0, healing->reconnect_tries());
    EXPECT_TRUE(wait_until([&] { return GLC::GS_ACTIVATED == healing->get_gripper_status(); }));
    EXPECT_TRUE(healing->set_position(20.0f));

    EXPECT_FALSE(plain->reconnecting());
    EXPECT_FALSE(bench.connected(plain));
    EXPECT_EQ(plain_frames, bench.simulator_.snapshot(2).frames_received);

    // Gripper 2 reconnects once asked, and stays as inactive as it is.
    plain->set_reconnect(true);
    ASSERT_TRUE(wait_until([&] { return bench.connected(plain); }));
    EXPECT_EQ(GLC::GS_INACTIVATE, plain->get_gripper_status());
    EXPECT_FALSE(bench.simulator_.snapshot(2).initialised);
}

// A silent gripper (line open, no answer) counts as lost after a few unanswered exchanges; the
// operator's disconnect ends the tries.
TEST_P(LinkHealTest, SilentGripperIsReopenedUntilTornDown) {
    LogCapture log;
    Bench bench(GetParam().tcp, 1);
    GLC* driver = bench.drivers_[0];
    ASSERT_NE(nullptr, driver);
    driver->set_reconnect(true);
    bench.simulator_.set_fault(1, gripper_sim::Fault::silent);
    ASSERT_TRUE(wait_until([&] { return driver->reconnecting(); }, std::chrono::seconds(20)));
    ASSERT_TRUE(GripperConnectionManager::instance().destroy(driver));
    EXPECT_FALSE(driver->reconnecting());
    EXPECT_EQ(GripperCommunication::CS_DISCONNECTED, driver->get_communication_status());
    delete driver;
    bench.drivers_.clear();
}

INSTANTIATE_TEST_CASE_P(Links, LinkHealTest,
                        ::testing::Values(HealRow{"usb", false}, HealRow{"tcp", true}),
                        [](const ::testing::TestParamInfo<HealRow>& info) {
                            return std::string(info.param.name);
                        });

struct PeriodRow {
    int32_t period;
    bool accepted;
    // Exchanges the gripper sees between a move sent right after activation and its arrival
    // being seen: the specified default follows it at the idle pace, a faster choice at its own.
    int least_frames;
    int most_frames;
};

TEST(MovePeriodTest, FasterChoiceFollowsEveryPendingMoveFromItsCommandOn) {
    const PeriodRow rows[] = {
        {GLC::DEFAULT_MOVE_PERIOD, true, 1, 8},
        {20, true, 16, 1000},
        {50, true, 8, 1000},
        {30, false, 1, 8},
        {0, false, 1, 8},
    };
    for (const PeriodRow& row : rows) {
        SCOPED_TRACE(row.period);
        LogCapture log;
        Bench bench(false, 1, 1000);
        GLC* driver = bench.drivers_[0];
        ASSERT_NE(nullptr, driver);
        EXPECT_EQ(row.accepted, driver->set_move_period(row.period));
        EXPECT_EQ(row.accepted ? row.period : GLC::DEFAULT_MOVE_PERIOD, driver->move_period());
        EXPECT_EQ(row.accepted ? 0 : 1,
                  log.count("W unknown move period = " + std::to_string(row.period)));
        ASSERT_TRUE(bench.activate(driver));
        const long before = bench.simulator_.snapshot(1).frames_received;
        ASSERT_TRUE(driver->set_position(100.0f));
        ASSERT_TRUE(wait_until([&] { return GLC::GS_ARRIVED == driver->get_gripper_status(); }));
        const long frames = bench.simulator_.snapshot(1).frames_received - before;
        EXPECT_GE(frames, row.least_frames);
        EXPECT_LE(frames, row.most_frames);
    }
}

}  // namespace
