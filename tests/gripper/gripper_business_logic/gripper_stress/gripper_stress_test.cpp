// Four grippers (three Modbus on pseudo-terminals, one custom over TCP), each connected through the
// connection manager and held in its own registry slot, driven at once from several threads while
// their update threads run and one of them is connected and disconnected over and over.
#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <thread>

#include "gripper/gripper_business_logic/gripper_connection_manager/gripper_connection_manager.h"
#include "gripper_main/business_logic/gripper_global/gripper_global.h"
#include "tests/test_support/recording_observer.h"
#include "tests/test_support/wait_until.h"
#include "tools/gripper_simulator/simulator.h"

namespace {

typedef GripperLogicControl GLC;

// Both kinds of work last several seconds, so that many update cycles run in between.
// ThreadSanitizer slows everything down several times: fewer rounds keep the run short.
#if defined(__SANITIZE_THREAD__)
const int COMMAND_ROUNDS = 30000;
const int RECONNECT_CYCLES = 150;
const int DESTROY_ROUNDS = 100;
#else
const int COMMAND_ROUNDS = 100000;
const int RECONNECT_CYCLES = 400;
const int DESTROY_ROUNDS = 300;
#endif

const int GRIPPER_COUNT = 4;
const int WORKER_COUNT = 4;
// Slots 0, 1 and 3 stay connected; slot 2 is connected and disconnected by its own thread.
const int STABLE[] = {0, 1, 3};
const int CYCLING = 2;
const std::chrono::seconds DEADLINE(30);

class GripperStressTest : public ::testing::Test {
protected:
    void SetUp() override {
        GripperConnectionManager::instance().add_notify_interface(&manager_events_);
        ASSERT_TRUE(GripperGlobal::instance().vector_device().empty());
        for (int index = 0; index < GRIPPER_COUNT; ++index) {
            gripper_sim::GripperOptions options;
            options.id = index + 1;
            options.position_max = tcp(index) ? 100 : 1000;
            options.full_stroke_ms = 400;
            const int n = tcp(index) ? simulator_.add_custom_tcp(options)
                                     : simulator_.add_modbus_pty(options);
            links_.push_back({"CO_MANUAL", tcp(index) ? "127.0.0.1" : simulator_.endpoint(n)});
            if (tcp(index)) {
                links_.back().push_back(std::to_string(simulator_.tcp_port(n)));
            }
            slots_.push_back(GripperGlobal::insert_device());
            ASSERT_TRUE(GripperGlobal::instance().add_device(slots_.back()));
        }
    }

    void TearDown() override {
        for (size_t index = 0; index < slots_.size(); ++index) {
            disconnect(index);
            GripperGlobal::instance().remove_device(slots_[index]);
            delete slots_[index];
        }
        GripperConnectionManager::instance().remove_notify_interface(&manager_events_);
    }

    static bool tcp(int index) { return 3 == index; }

    // The driver of a slot, looked up through the registry as the script commands do.
    GLC* driver(int index) {
        return GripperGlobal::instance().get_device(index)->gripper_abstract_control_;
    }

    bool connect(int index) {
        slots_[index]->gripper_abstract_control_ = GripperConnectionManager::instance().create(
            &observers_[index],
            tcp(index) ? GripperCommunication::CC_TCP_CLIENT
                       : GripperCommunication::CC_USB_SERIALPORT,
            links_[index]);
        return nullptr != slots_[index]->gripper_abstract_control_;
    }

    // Destroys the slot's driver through the manager and deletes it; true when none was there.
    bool disconnect(int index) {
        GLC* control = slots_[index]->gripper_abstract_control_;
        slots_[index]->gripper_abstract_control_ = nullptr;
        const bool destroyed =
            nullptr == control || GripperConnectionManager::instance().destroy(control);
        delete control;
        return destroyed;
    }

    // One command or one round of reads, chosen by the round number; true when it succeeded.
    static bool command(GLC* control, int round) {
        switch (round % 4) {
            case 0:
                return control->set_position(static_cast<float>(round % 101));
            case 1:
                return control->set_force(20 + round % 81);
            case 2:
                return !control->support_speed() || control->set_speed(20 + round % 81);
            default:  // the values a page would show are in range and the gripper usable
                const float position = control->get_position();
                return position >= 0.0f && position <= 100.0f && control->get_force() <= 100 &&
                       control->takes_commands() &&
                       GripperCommunication::CS_CONNECTED == control->get_communication_status();
        }
    }

    gripper_sim::Simulator simulator_;
    RecordingObserver manager_events_;
    RecordingObserver observers_[GRIPPER_COUNT];
    std::vector<std::vector<std::string>> links_;
    std::vector<GripperDevice*> slots_;
    std::atomic<long> failed_commands_{0};
    std::atomic<long> failed_cycles_{0};
};

}  // namespace

TEST_F(GripperStressTest, FourGrippersCommandedFromSeveralThreadsWhileOneReconnects) {
    for (int index = 0; index < GRIPPER_COUNT; ++index) {
        ASSERT_TRUE(connect(index) && driver(index)->set_activate() && wait_until([&] {
                        return GLC::GS_ACTIVATED == driver(index)->get_gripper_status();
                    }))
            << "slot " << index;
    }
    std::vector<std::thread> threads;
    for (int worker = 0; worker < WORKER_COUNT; ++worker) {
        threads.emplace_back([this, worker] {
            for (int round = 0; round < COMMAND_ROUNDS; ++round) {
                failed_commands_ +=
                    command(driver(STABLE[(worker + round) % 3]), worker + round) ? 0 : 1;
                // Callers do other work between commands; none holds the processor for good.
                std::this_thread::yield();
            }
        });
    }
    // Disconnects and connects the cycling gripper again, moving it after every connection.
    threads.emplace_back([this] {
        for (int round = 0; round < RECONNECT_CYCLES; ++round) {
            const bool cycled = disconnect(CYCLING) && connect(CYCLING) &&
                                driver(CYCLING)->set_position(round % 2 ? 70.0f : 30.0f);
            failed_cycles_ += cycled ? 0 : 1;
        }
    });
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(0, failed_commands_.load());
    EXPECT_EQ(0, failed_cycles_.load());

    // Every gripper, the reconnected one too, still follows a move to its final position.
    for (int index = 0; index < GRIPPER_COUNT; ++index) {
        const float position = 20.0f + 20.0f * index;
        ASSERT_TRUE(driver(index)->set_position(position)) << "slot " << index;
        EXPECT_TRUE(wait_until(
            [&] {
                return GLC::GS_ARRIVED == driver(index)->get_gripper_status() &&
                       std::fabs(driver(index)->get_position() - position) < 0.05f;
            },
            DEADLINE))
            << "slot " << index;
        const int connections = (CYCLING == index) ? RECONNECT_CYCLES + 1 : 1;
        EXPECT_EQ(connections, observers_[index].count("CS_CONNECTED")) << "slot " << index;
        EXPECT_EQ(connections - 1, observers_[index].count("CS_DISCONNECTED")) << "slot " << index;
        EXPECT_FALSE(observers_[index].seen("CS_READ_EXCEPTION") ||
                     observers_[index].seen("CS_WRITE_EXCEPTION"))
            << "slot " << index;
        EXPECT_TRUE(disconnect(index)) << "slot " << index;
    }
    EXPECT_EQ(GRIPPER_COUNT + RECONNECT_CYCLES, manager_events_.count("create"));
    EXPECT_EQ(GRIPPER_COUNT + RECONNECT_CYCLES, manager_events_.count("destroy"));
    EXPECT_TRUE(manager_events_.alternate());
}

// Position commands run from another thread while the driver is destroyed: each one is either
// done before the tear-down or refused after it, so a destroyed driver shows GS_UNDEFINE and
// CS_DISCONNECTED and refuses every command.
TEST_F(GripperStressTest, CommandsRacingTheDestroyOfTheirDriverAreOrderedWithIt) {
    ASSERT_TRUE(connect(CYCLING) && driver(CYCLING)->set_activate());
    ASSERT_TRUE(
        wait_until([this] { return GLC::GS_ACTIVATED == driver(CYCLING)->get_gripper_status(); }));
    for (int round = 0; round < DESTROY_ROUNDS; ++round) {
        ASSERT_TRUE(nullptr != driver(CYCLING) || connect(CYCLING)) << "round " << round;
        GLC* control = driver(CYCLING);
        std::atomic<long> commands{0};
        std::atomic<bool> stop{false};
        std::thread commander([&] {
            for (long n = 0; !stop; ++n) {
                control->set_position(n % 2 ? 40.0f : 60.0f);
                ++commands;
            }
        });
        ASSERT_TRUE(wait_until([&] { return commands > round % 3; })) << "round " << round;
        EXPECT_TRUE(GripperConnectionManager::instance().destroy(control)) << "round " << round;
        const long after_destroy = commands;
        ASSERT_TRUE(wait_until([&] { return commands > after_destroy + 1; })) << "round " << round;
        stop = true;
        commander.join();
        EXPECT_TRUE(GLC::GS_UNDEFINE == control->get_gripper_status() &&
                    GripperCommunication::CS_DISCONNECTED == control->get_communication_status() &&
                    !control->set_position(50.0f) && !control->set_force(50) &&
                    !control->set_activate())
            << "round " << round;
        slots_[CYCLING]->gripper_abstract_control_ = nullptr;
        delete control;
    }
}
