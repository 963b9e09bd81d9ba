// The pendant's readers of one registry slot (script queries, a blocking move, page redraws and
// worker tasks) run while the slot's gripper is disconnected and connected again 200 times; each
// disconnected driver is retired to the ObjectKeeper as the Setting page retires it. Run under
// AddressSanitizer and ThreadSanitizer too: no reader may touch a freed driver or observer.
#include <thread>

#include "gripper/gripper_common/object_keeper/object_keeper.h"
#include "gripper_main/business_logic/gripper_global/gripper_global.h"
#include "gripper_main/userinterface_logic/gripper_command_worker/gripper_command_worker.h"
#include "tests/test_support/driver_fixture.h"

namespace {

// The record's raw pointer, read and written as one word (the pages write it on the interface
// thread while the script thread reads it).
GLC* load(GripperDevice* slot) {
    return __atomic_load_n(&slot->gripper_abstract_control_, __ATOMIC_ACQUIRE);
}
void store(GripperDevice* slot, GLC* driver) {
    __atomic_store_n(&slot->gripper_abstract_control_, driver, __ATOMIC_RELEASE);
}

// Runs body over and over on a thread of its own while it lives, each pass in a section with the
// slot's driver read at its start; passes counts the passes that found a driver.
class Reader {
public:
    template <typename Body>
    Reader(GripperDevice* slot, Body body)
        : thread_([this, slot, body] {
              for (; !stop_; std::this_thread::yield()) {
                  const ObjectKeeper::Section section;
                  if (GLC* driver = load(slot)) {
                      body(driver, section);
                      ++passes;
                  }
              }
          }) {}
    ~Reader() {
        stop_ = true;
        thread_.join();
    }
    std::atomic<long> passes{0};

private:
    std::atomic<bool> stop_{false};
    std::thread thread_;
};

}  // namespace

TEST_F(DriverTest, ReadersRunWhileTheSameGripperReconnects200Times) {
    const int gripper = simulator_.add_custom_tcp(quick_options(1, 100, 20));
    const std::vector<std::string> link{"CO_MANUAL", "127.0.0.1",
                                        std::to_string(simulator_.tcp_port(gripper))};
    GripperConnectionManager& manager = GripperConnectionManager::instance();
    GripperDevice* slot = GripperGlobal::insert_device();
    // Disconnects as the Setting page does: torn down, out of the record, then retired.
    const auto retire = [&] {
        GLC* driver = load(slot);
        const bool destroyed = manager.destroy(driver);
        store(slot, nullptr);
        ObjectKeeper::instance().retire(driver);
        return destroyed;
    };
    store(slot, manager.create(nullptr, GripperCommunication::CC_TCP_CLIENT, link));
    ASSERT_TRUE(nullptr != load(slot) && load(slot)->set_activate());
    ASSERT_TRUE(
        wait_until([slot] { return GLC::GS_ACTIVATED == load(slot)->get_gripper_status(); }));

    GripperCommandWorker worker;
    std::atomic<long> tasks(0);
    {
        // Queries as script commands and page redraws make them.
        Reader queries(slot, [](GLC* driver, const ObjectKeeper::Section&) {
            driver->get_gripper_status();
            driver->get_communication_status();
            driver->cached_position();
            driver->occur_exception();
        });
        // A blocking move as the script waits for it: an observer of its own, detached without
        // the driver lock and retired at the end.
        Reader move(slot, [](GLC* driver, const ObjectKeeper::Section&) {
            RecordingObserver* observer = new RecordingObserver(false);
            driver->add_notify_interface(observer);
            if (driver->set_position(driver->cached_position() > 50.0f ? 20.0f : 80.0f)) {
                wait_until([driver] { return GLC::GS_MOVING != driver->get_gripper_status(); },
                           std::chrono::seconds(2));
            }
            driver->detach_notify_interface(observer);
            ObjectKeeper::instance().retire(observer);
        });
        // A worker task carries its poster's section.
        Reader poster(slot, [&](GLC* driver, const ObjectKeeper::Section& section) {
            const auto task = [driver, &tasks] {
                driver->get_force();
                ++tasks;
                return GripperCommandWorker::Completion();
            };
            worker.post(&worker, task, GripperCommandWorker::Key{driver, 0}, &section);
        });
        for (int cycle = 0; cycle < 200; ++cycle) {
            ASSERT_TRUE(retire()) << "cycle " << cycle;
            store(slot, manager.create(nullptr, GripperCommunication::CC_TCP_CLIENT, link));
            ASSERT_NE(nullptr, load(slot)) << "cycle " << cycle;
            // Every reader gets its turn on each driver.
            const long seen[] = {queries.passes, tasks};
            ASSERT_TRUE(wait_until([&] { return queries.passes > seen[0] && tasks > seen[1]; }))
                << "cycle " << cycle;
        }
        EXPECT_TRUE(wait_until([&] { return move.passes > 0; }));
    }
    worker.release(&worker);
    ASSERT_TRUE(retire());
    delete slot;
    // Every driver made here was destroyed, not only torn down.
    EXPECT_TRUE(wait_until([] { return 0 == GLC::live_count(); })) << GLC::live_count();
    EXPECT_TRUE(wait_until([] { return 0u == ObjectKeeper::instance().pending(); }));
}
