// The pendant's readers of one registry slot (script queries, a blocking move, page redraws and
// worker tasks) run while the slot's gripper is disconnected and connected again 200 times; each
// disconnected driver is retired to the ObjectKeeper as the Setting page retires it. Run under
// AddressSanitizer and ThreadSanitizer too: no reader may touch a freed driver or observer.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "gripper/gripper_business_logic/gripper_connection_manager/gripper_connection_manager.h"
#include "gripper/gripper_common/object_keeper/object_keeper.h"
#include "gripper_main/business_logic/gripper_global/gripper_global.h"
#include "gripper_main/userinterface_logic/gripper_command_worker/gripper_command_worker.h"
#include "tests/test_support/recording_observer.h"
#include "tests/test_support/wait_until.h"
#include "tools/gripper_simulator/simulator.h"

namespace {

typedef GripperLogicControl GLC;
const int CYCLES = 200;

// The record's raw pointer, read and written as one word (the pages write it on the interface
// thread while the script thread reads it).
GLC* load(GripperDevice* slot) {
    return __atomic_load_n(&slot->gripper_abstract_control_, __ATOMIC_ACQUIRE);
}
void store(GripperDevice* slot, GLC* driver) {
    __atomic_store_n(&slot->gripper_abstract_control_, driver, __ATOMIC_RELEASE);
}

// Runs body over and over on a thread of its own, each pass in a section, with the slot's driver
// read at its start; passes counts them.
class Reader {
public:
    Reader(GripperDevice* slot, const std::atomic<bool>& stop, void (*body)(GLC*, long))
        : thread_([this, slot, &stop, body] {
              while (!stop) {
                  const ObjectKeeper::Section section;
                  GLC* driver = load(slot);
                  if (nullptr != driver) {
                      body(driver, passes);
                  }
                  ++passes;
                  std::this_thread::yield();
              }
          }) {}
    ~Reader() { thread_.join(); }
    std::atomic<long> passes{0};

private:
    std::thread thread_;
};

void query(GLC* driver, long) {
    driver->get_gripper_status();
    driver->get_communication_status();
    driver->get_position_max();
}

void redraw(GLC* driver, long) {
    driver->cached_position();
    driver->cached_force();
    driver->occur_exception();
}

// A blocking move as the script waits for it: an observer of its own, detached without the
// driver lock and retired at the end.
void blocking_move(GLC* driver, long pass) {
    RecordingObserver* observer = new RecordingObserver(false);
    driver->add_notify_interface(observer);
    if (driver->set_position(pass % 2 ? 20.0f : 80.0f)) {
        wait_until([driver] { return GLC::GS_MOVING != driver->get_gripper_status(); },
                   std::chrono::seconds(2));
    }
    driver->detach_notify_interface(observer);
    ObjectKeeper::instance().retire(observer);
}

}  // namespace

TEST(KeeperStressTest, ReadersRunWhileTheSameGripperReconnects200Times) {
    gripper_sim::Simulator simulator;
    gripper_sim::GripperOptions options;
    options.position_max = 100;
    options.init_ms = 20;
    options.full_stroke_ms = 100;
    const int gripper = simulator.add_custom_tcp(options);
    const std::vector<std::string> link{"CO_MANUAL", "127.0.0.1",
                                        std::to_string(simulator.tcp_port(gripper))};
    GripperConnectionManager& manager = GripperConnectionManager::instance();
    GripperDevice* slot = GripperGlobal::insert_device();
    store(slot, manager.create(nullptr, GripperCommunication::CC_TCP_CLIENT, link));
    ASSERT_NE(nullptr, load(slot));
    ASSERT_TRUE(load(slot)->set_activate());
    ASSERT_TRUE(
        wait_until([slot] { return GLC::GS_ACTIVATED == load(slot)->get_gripper_status(); }));

    std::atomic<bool> stop(false);
    GripperCommandWorker worker;
    std::atomic<long> tasks(0);
    {
        Reader queries(slot, stop, query);
        Reader redraws(slot, stop, redraw);
        Reader move(slot, stop, blocking_move);
        std::thread poster([&] {
            while (!stop) {
                const ObjectKeeper::Section section;
                GLC* driver = load(slot);
                if (nullptr != driver) {
                    worker.post(
                        &worker,
                        [driver, &tasks] {
                            driver->get_force();
                            ++tasks;
                            return GripperCommandWorker::Completion();
                        },
                        GripperCommandWorker::Key{driver, 0}, &section);
                }
                std::this_thread::yield();
            }
        });
        for (int cycle = 0; cycle < CYCLES; ++cycle) {
            GLC* driver = load(slot);
            ASSERT_TRUE(manager.destroy(driver)) << "cycle " << cycle;
            store(slot, nullptr);
            ObjectKeeper::instance().retire(driver);
            store(slot, manager.create(nullptr, GripperCommunication::CC_TCP_CLIENT, link));
            ASSERT_NE(nullptr, load(slot)) << "cycle " << cycle;
            // Every reader gets its turn on each driver.
            const long seen[] = {queries.passes, redraws.passes, tasks};
            ASSERT_TRUE(wait_until([&] {
                return queries.passes > seen[0] && redraws.passes > seen[1] && tasks > seen[2];
            })) << "cycle "
                << cycle;
        }
        stop = true;
        poster.join();
        EXPECT_GT(move.passes, 0);
    }
    worker.release(&worker);
    GLC* last = load(slot);
    ASSERT_TRUE(manager.destroy(last));
    store(slot, nullptr);
    ObjectKeeper::instance().retire(last);
    delete slot;
    // Every driver made here was destroyed, not only torn down.
    EXPECT_TRUE(wait_until([] { return 0 == GLC::live_count(); })) << GLC::live_count();
    EXPECT_TRUE(wait_until([] { return 0u == ObjectKeeper::instance().pending(); }));
}
