#ifndef TESTS_TOOLS_GRIPPER_DOCTOR_DOCTOR_TEST_SUPPORT_H
#define TESTS_TOOLS_GRIPPER_DOCTOR_DOCTOR_TEST_SUPPORT_H

#include <gtest/gtest.h>

#include <string>

#include "gripper/gripper_protocol/gripper_modbus_protocol/gripper_modbus_protocol.h"
#include "tests/test_support/fd_stream.h"
#include "tests/test_support/wait_until.h"
#include "tests/tools/gripper_doctor/doctor_process.h"
#include "tools/gripper_simulator/simulator.h"

// A simulated gripper that initialises at once; custom-frame grippers have a stroke of 100.
inline gripper_sim::GripperOptions quick_gripper(int position_max = 1000) {
    gripper_sim::GripperOptions options;
    options.init_ms = 20;
    options.full_stroke_ms = 100;
    options.position_max = position_max;
    return options;
}

// True when text holds part; the failure message shows the whole text.
inline testing::AssertionResult holds(const std::string& text, const std::string& part) {
    if (std::string::npos != text.find(part)) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "\"" << part << "\" not in:\n" << text;
}

// Initialises a Modbus gripper and moves it to a register position, over its own port, the way
// the pendant does before the doctor looks at it; the port is closed again afterwards.
inline void prepare_modbus_gripper(gripper_sim::Simulator& simulator, int n, int position) {
    FdStream port = open_raw_terminal(simulator.endpoint(n));
    GripperModbusProtocol protocol;
    for (const Bytes& command : {protocol.build_initialize_protocol(1, true),
                                 protocol.build_position_protocol(1, true, position)}) {
        ASSERT_TRUE(port.write(command));
        ASSERT_EQ(command, port.read(command.size()));
        ASSERT_TRUE(wait_until([&] {
            const gripper_sim::GripperSnapshot state = simulator.snapshot(n);
            return state.initialised && 1 == state.motion_state;
        }));
    }
    ASSERT_EQ(position, simulator.snapshot(n).position);
}

// The one JSON object a run for one target printed.
inline nlohmann::json only_object(const DoctorProcess::Result& result) {
    const std::vector<nlohmann::json> objects = result.json_lines();
    EXPECT_EQ(1u, objects.size()) << result.out << result.err;
    return objects.empty() ? nlohmann::json::object() : objects[0];
}

#endif
