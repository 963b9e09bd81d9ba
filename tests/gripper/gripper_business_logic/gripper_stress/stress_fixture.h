#ifndef TESTS_GRIPPER_STRESS_STRESS_FIXTURE_H
#define TESTS_GRIPPER_STRESS_STRESS_FIXTURE_H

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "gripper/gripper_business_logic/gripper_connection_manager/gripper_connection_manager.h"
#include "gripper_main/business_logic/gripper_global/gripper_global.h"
#include "tests/gripper/gripper_business_logic/gripper_stress/manager_recorder.h"
#include "tests/test_support/recording_observer.h"
#include "tests/test_support/wait_until.h"
#include "tools/gripper_simulator/simulator.h"

// Four simulated grippers (three Modbus on pseudo-terminals, one custom over TCP), each connected
// through the connection manager and held in its own registry slot, in the order of `plans_`.
class StressFixture : public ::testing::Test {
protected:
    static const int GRIPPER_COUNT = 4;

    struct Plan {
        bool tcp;
        int id;
        int position_max;
    };

    void SetUp() override {
        GripperConnectionManager::instance().add_notify_interface(&manager_events_);
        ASSERT_TRUE(GripperGlobal::instance().vector_device().empty());
        for (int index = 0; index < GRIPPER_COUNT; ++index) {
            grippers_.push_back(add_gripper(plans_[index]));
            slots_.push_back(GripperGlobal::insert_device());
            ASSERT_TRUE(GripperGlobal::instance().add_device(slots_.back()));
        }
    }

    void TearDown() override {
        for (int index = 0; index < static_cast<int>(slots_.size()); ++index) {
            disconnect(index);
            GripperGlobal::instance().remove_device(slots_[index]);
            delete slots_[index];
        }
        GripperConnectionManager::instance().remove_notify_interface(&manager_events_);
    }

    // The driver of a slot, looked up through the registry as the script commands do.
    GripperLogicControl* driver(int index) {
        return GripperGlobal::instance().get_device(index)->gripper_abstract_control_;
    }

    bool connect(int index) {
        const Plan& plan = plans_[index];
        GripperLogicControl* control = GripperConnectionManager::instance().create(
            &observers_[index],
            plan.tcp ? GripperCommunication::CC_TCP_CLIENT
                     : GripperCommunication::CC_USB_SERIALPORT,
            parameters(index));
        slots_[index]->gripper_abstract_control_ = control;
        return nullptr != control;
    }

    // Destroys the slot's driver through the manager and deletes it; true when none was there.
    bool disconnect(int index) {
        GripperLogicControl* control = slots_[index]->gripper_abstract_control_;
        if (nullptr == control) {
            return true;
        }
        slots_[index]->gripper_abstract_control_ = nullptr;
        const bool destroyed = GripperConnectionManager::instance().destroy(control);
        delete control;
        return destroyed;
    }

    bool connect_all() {
        bool connected = true;
        for (int index = 0; index < GRIPPER_COUNT; ++index) {
            connected = connect(index) && connected;
        }
        return connected;
    }

    bool disconnect_all() {
        bool disconnected = true;
        for (int index = 0; index < GRIPPER_COUNT; ++index) {
            disconnected = disconnect(index) && disconnected;
        }
        return disconnected;
    }

    bool activate_all() {
        for (int index = 0; index < GRIPPER_COUNT; ++index) {
            if (!driver(index)->set_activate()) {
                return false;
            }
        }
        return wait_until([this] { return all_in(GripperLogicControl::GS_ACTIVATED); },
                          std::chrono::seconds(30));
    }

    // Moves every gripper to `position` and waits until its update thread has run a cycle in
    // GS_ARRIVED (seen as frames the simulator receives after the arrival, when nothing else
    // talks to the gripper): from then on the thread follows moves every 100 ms.
    bool arrive_all(float position) {
        for (int index = 0; index < GRIPPER_COUNT; ++index) {
            if (!driver(index)->set_position(position)) {
                return false;
            }
        }
        if (!wait_until([this] { return all_in(GripperLogicControl::GS_ARRIVED); },
                        std::chrono::seconds(30))) {
            return false;
        }
        std::vector<long> frames;
        for (int index = 0; index < GRIPPER_COUNT; ++index) {
            frames.push_back(simulator_.snapshot(grippers_[index]).frames_received);
        }
        return wait_until([&] { return all_polled_since(frames); }, std::chrono::seconds(30));
    }

    bool all_polled_since(const std::vector<long>& frames) {
        for (int index = 0; index < GRIPPER_COUNT; ++index) {
            if (simulator_.snapshot(grippers_[index]).frames_received < frames[index] + 2) {
                return false;
            }
        }
        return true;
    }

    bool all_in(GripperLogicControl::GripperStatus status) {
        for (int index = 0; index < GRIPPER_COUNT; ++index) {
            if (status != driver(index)->get_gripper_status()) {
                return false;
            }
        }
        return true;
    }

    gripper_sim::Simulator simulator_;
    ManagerRecorder manager_events_;
    RecordingObserver observers_[GRIPPER_COUNT];
    const Plan plans_[GRIPPER_COUNT] = {
        {false, 1, 1000}, {false, 2, 1000}, {false, 3, 1000}, {true, 4, 100}};
    std::vector<int> grippers_;  // simulator numbers, by slot
    std::vector<GripperDevice*> slots_;

private:
    int add_gripper(const Plan& plan) {
        gripper_sim::GripperOptions options;
        options.id = plan.id;
        options.position_max = plan.position_max;
        options.init_ms = 100;
        options.full_stroke_ms = 400;
        return plan.tcp ? simulator_.add_custom_tcp(options) : simulator_.add_modbus_pty(options);
    }

    std::vector<std::string> parameters(int index) {
        const int gripper = grippers_[index];
        if (plans_[index].tcp) {
            return {"CO_MANUAL", "127.0.0.1", std::to_string(simulator_.tcp_port(gripper))};
        }
        return {"CO_MANUAL", simulator_.endpoint(gripper)};
    }
};

#endif
