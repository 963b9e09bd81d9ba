#ifndef TESTS_TEST_SUPPORT_DRIVER_FIXTURE_H
#define TESTS_TEST_SUPPORT_DRIVER_FIXTURE_H

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "gripper/gripper_communication_control/gripper_tcp_client_communication_control/gripper_tcp_client_communication_control.h"
#include "gripper/gripper_communication_control/gripper_usb_serialport_communication_control/gripper_usb_serialport_communication_control.h"
#include "tests/test_support/log_capture.h"
#include "tests/test_support/recording_observer.h"
#include "tests/test_support/wait_until.h"
#include "tools/gripper_simulator/simulator.h"

typedef GripperLogicControl GLC;

// On the notification of one force, that is with the driver lock held, waits until the update
// thread waits for that lock, then stops the loop.
class StoppingObserver : public RecordingObserver {
public:
    StoppingObserver(GripperLogicControl* driver, int force) : driver_(driver), force_(force) {}
    void on_force_changed(GripperLogicControl*, int force) override {
        if (force_ == force) {
            cycle_waited_ = wait_until([this] { return driver_->lock_waiters() > 0; });
            driver_->stop_loop_update();
        }
    }

    std::atomic<bool> cycle_waited_{false};

private:
    GripperLogicControl* driver_;
    int force_;
};

// A driver connected to a simulated gripper the way the connection manager connects one:
// open, handshake, sync, then the update loop.
class DriverTest : public ::testing::Test {
protected:
    void TearDown() override {
        if (driver_) {
            driver_->stop_loop_update();
            driver_->close();
        }
    }

    // A gripper whose initialisation takes init_ms and a full stroke at full speed 400 ms.
    static gripper_sim::GripperOptions quick_options(int id, int position_max, int init_ms = 100) {
        gripper_sim::GripperOptions options;
        options.id = id;
        options.position_max = position_max;
        options.init_ms = init_ms;
        options.full_stroke_ms = 400;
        return options;
    }

    bool connect_serial(int gripper) {
        driver_.reset(new GripperUSBSerialportCommunicationControl());
        return connect({"CO_MANUAL", simulator_.endpoint(gripper)});
    }

    bool connect_tcp(int gripper) {
        driver_.reset(new GripperTCPClientCommunicationControl());
        return connect({"CO_MANUAL", "127.0.0.1", std::to_string(simulator_.tcp_port(gripper))});
    }

    bool connect(const std::vector<std::string>& parameters) {
        driver_->add_notify_interface(&observer_);
        if (!driver_->open(parameters) || !driver_->handshake() || !driver_->sync()) {
            return false;
        }
        driver_->start_loop_update();
        return true;
    }

    bool wait_for_status(GLC::GripperStatus status) {
        return wait_until([&] { return driver_->get_gripper_status() == status; });
    }

    bool activate() { return driver_->set_activate() && wait_for_status(GLC::GS_ACTIVATED); }

    gripper_sim::GripperSnapshot snapshot(int gripper) { return simulator_.snapshot(gripper); }

    LogCapture log_;
    gripper_sim::Simulator simulator_;
    RecordingObserver observer_;
    std::unique_ptr<GripperLogicControl> driver_;
};

#endif
