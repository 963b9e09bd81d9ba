#include <gtest/gtest.h>

#include <cstdlib>

#include "gripper/gripper_business_logic/gripper_connection_manager/gripper_connection_manager.h"
#include "tests/test_support/log_capture.h"
#include "tools/gripper_simulator/simulator.h"

namespace {

// Connects a driver, destroys it twice and exits with 0 when the first destroy succeeded and
// the second was refused with "!contain". The refused destroy leaves the manager locked for
// good, so this runs in a child process and ends it without running any destructor.
void destroy_twice_and_exit() {
    LogCapture log;
    gripper_sim::Simulator simulator;
    const int gripper = simulator.add_modbus_pty(gripper_sim::GripperOptions());
    GripperConnectionManager& manager = GripperConnectionManager::instance();
    GripperLogicControl* driver = manager.create(nullptr, GripperCommunication::CC_USB_SERIALPORT,
                                                 {"CO_MANUAL", simulator.endpoint(gripper)});
    const bool first = nullptr != driver && manager.destroy(driver);
    const bool second = manager.destroy(driver);
    std::_Exit(first && !second && log.contains("!contain") ? 0 : 1);
}

}  // namespace

TEST(ConnectionManagerDoubleDestroy, SecondDestroyOfTheSameDriverIsRefused) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(destroy_twice_and_exit(), ::testing::ExitedWithCode(0), "");
}
