#include <atomic>
#include <future>
#include <thread>

#include "tests/test_support/driver_fixture.h"

namespace {

// Removes another observer from inside a notification.
struct RemovingObserver : RecordingObserver {
    void on_gripper_move_status_changed(GripperLogicControl* control,
                                        GripperLogicControl::GripperStatus status) override {
        RecordingObserver::on_gripper_move_status_changed(control, status);
        control->remove_notify_interface(other_);
    }
    GripperLogicControl::NotifyInterface* other_ = nullptr;
};

// Reads the cached values inside each notification of a real value, as a redraw queued by that
// notification may run at once, and counts the reads that still show an older value.
class StaleReadObserver : public RecordingObserver {
public:
    void on_position_changed(GripperLogicControl* control, float position) override {
        RecordingObserver::on_position_changed(control, position);
        stale_ += (0.0f != position && control->cached_position() != position) ? 1 : 0;
    }
    void on_force_changed(GripperLogicControl* control, int force) override {
        RecordingObserver::on_force_changed(control, force);
        stale_ += (0 != force && control->cached_force() != force) ? 1 : 0;
    }
    void on_speed_changed(GripperLogicControl* control, int speed) override {
        RecordingObserver::on_speed_changed(control, speed);
        stale_ += (0 != speed && control->cached_speed() != speed) ? 1 : 0;
    }

    std::atomic<int> stale_{0};
};

}  // namespace

// Neither a reader on its own thread nor a redraw caused by a notification sees a stale value or
// the zeroes a read-back reports first.
TEST_F(DriverTest, CachedValuesNeverShowTheZeroesOfAReadBack) {
    gripper_sim::GripperOptions options = quick_options(1, 1000, 50);
    options.late_ms = 40;
    const int gripper = simulator_.add_modbus_pty(options);
    StaleReadObserver observer;
    driver_.reset(new GripperUSBSerialportCommunicationControl());
    driver_->add_notify_interface(&observer);
    ASSERT_TRUE(driver_->open({"CO_MANUAL", simulator_.endpoint(gripper)}));
    ASSERT_TRUE(driver_->handshake());
    EXPECT_EQ(0.0f, driver_->cached_position());
    ASSERT_TRUE(driver_->sync());
    driver_->start_loop_update();
    ASSERT_TRUE(activate() && driver_->set_position(50.0f) && wait_for_status(GLC::GS_ARRIVED));
    // Activating again keeps the fingers where they are; from then on every cycle reads back
    // with sync(), which reports zeroes first.
    ASSERT_TRUE(activate());
    ASSERT_TRUE(wait_until([&] { return 50.0f == driver_->cached_position(); }));
    EXPECT_EQ(100, driver_->cached_force());
    EXPECT_EQ(100, driver_->cached_speed());

    // Late answers hold each cycle's zeroes for a while.
    simulator_.set_fault(gripper, gripper_sim::Fault::late);
    observer.clear();
    // Reads the cached values the way a page redraws, on a thread of its own.
    std::atomic<bool> reading{true}, saw_zero{false};
    std::thread reader([&] {
        while (reading) {
            saw_zero = saw_zero || 0.0f == driver_->cached_position() ||
                       0 == driver_->cached_force() || 0 == driver_->cached_speed();
            std::this_thread::yield();
        }
    });
    ASSERT_TRUE(wait_until([&] {
        return observer.count("position 0.0") >= 3 && observer.count("position 50.0") >= 3;
    }));

    // A cycle that fails after its zeroes leaves the last finished values. The waiting getter
    // reads the driver's own value once the cycle in progress has ended.
    simulator_.set_fault(gripper, gripper_sim::Fault::silent);
    ASSERT_TRUE(wait_until([&] { return 0.0f == driver_->get_position(); }));
    reading = false;
    reader.join();
    EXPECT_FALSE(saw_zero);
    EXPECT_EQ(50.0f, driver_->cached_position());
    EXPECT_EQ(0, observer.stale_);
    driver_->remove_notify_interface(&observer);
}

TEST_F(DriverTest, AddingAnObserverDoesNotWaitForAnExchange) {
    const int gripper = simulator_.add_modbus_pty(quick_options(1, 1000, 50));
    ASSERT_TRUE(connect_serial(gripper) && activate());
    simulator_.set_fault(gripper, gripper_sim::Fault::silent);
    const long frames = snapshot(gripper).frames_received;

    // A silent gripper keeps the command's exchange, and the driver lock, for about a second.
    auto command = std::async(std::launch::async, [&] { return driver_->set_force(60); });
    ASSERT_TRUE(wait_until([&] { return snapshot(gripper).frames_received > frames; }));
    RecordingObserver late_observer;
    driver_->add_notify_interface(&late_observer);
    driver_->cached_force();
    EXPECT_NE(std::future_status::ready, command.wait_for(std::chrono::seconds(0)));
    EXPECT_FALSE(command.get());

    simulator_.set_fault(gripper, gripper_sim::Fault::none);
    ASSERT_TRUE(wait_until([&] { return driver_->set_force(60); }));
    EXPECT_TRUE(late_observer.seen("force 60"));
    EXPECT_EQ(60, driver_->cached_force());
    driver_->remove_notify_interface(&late_observer);
}

TEST_F(DriverTest, AnObserverRemovedDuringANotificationIsNotCalledAgain) {
    driver_.reset(new GripperUSBSerialportCommunicationControl());
    RecordingObserver removed;
    RemovingObserver remover;
    remover.other_ = &removed;
    driver_->add_notify_interface(&remover);
    driver_->add_notify_interface(&removed);
    driver_->set_gripper_status(GLC::GS_TURNING);
    driver_->add_notify_interface(&remover);
    driver_->set_gripper_status(GLC::GS_ARRIVED);
    EXPECT_EQ(2u, remover.size());
    EXPECT_EQ(0u, removed.size());
}
