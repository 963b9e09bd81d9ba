// gripper-doctor against healthy simulated grippers: what it reports about each kind of link.

#include "tests/tools/gripper_doctor/doctor_test_support.h"

namespace {

using gripper_sim::Simulator;

// The trace shows every frame in hex with its meaning, then the report follows.
TEST(DoctorProbe, ModbusGripperIsTracedAndReportedInFullAndNothingIsWritten) {
    Simulator simulator;
    const int n = simulator.add_modbus_pty(quick_gripper());

    const DoctorProcess::Result result = run_doctor({"--trace", simulator.endpoint(n)});

    EXPECT_EQ(0, result.status) << result.out << result.err;
    for (const char* line :
         {"] -> FF 03 03 02 00 01 30 50   Modbus read of register 0x0302 (device id) at slave 255 "
          "(any slave answers)\n",
          "] <- 01 03 02 00 01 79 84   slave 1: device id 1, CRC ok\n", "] -> 01 03 0A 02 00 01 ",
          "slave 1: firmware 1.2, CRC ok\n", "slave 1: model code 0x1000, model series 3, CRC ok\n",
          "  link          serial port, 115200 baud 8N1\n", "  protocol      Modbus RTU\n",
          "  device id     1\n", "  firmware      1.2 (bytes 01 02)\n", "  model series  3\n",
          "  limits        position 0.0 to 100.0 % in steps of 0.1, force 20 to 100 %, speed 20 to "
          "100 %\n",
          "  initialised   no: activate it before moving it\n", "  result        OK"}) {
        EXPECT_TRUE(holds(result.out, line));
    }
    EXPECT_EQ(0u, result.out.find('[')) << result.out;
    EXPECT_EQ(':', result.out[3]);
    const gripper_sim::GripperSnapshot state = simulator.snapshot(n);
    EXPECT_FALSE(state.initialised);
    EXPECT_EQ(0, state.target);
    EXPECT_EQ(100, state.force);
}

TEST(DoctorProbe, InitialisedGripperReportsItsPositionForceAndSpeed) {
    Simulator simulator;
    const int n = simulator.add_modbus_pty(quick_gripper());
    prepare_modbus_gripper(simulator, n, 500);

    const DoctorProcess::Result result = run_doctor({"--json", simulator.endpoint(n)});

    EXPECT_EQ(0, result.status) << result.out << result.err;
    const nlohmann::json report = only_object(result);
    EXPECT_EQ(simulator.endpoint(n), report["target"]);
    EXPECT_EQ("serial", report["link"]);
    EXPECT_EQ("modbus_rtu", report["protocol"]);
    EXPECT_EQ(1, report["device_id"]);
    EXPECT_EQ("1.2", report["version"]);
    EXPECT_EQ(3, report["model_series"]);
    EXPECT_EQ(100.0, report["limits"]["position_max"]);
    EXPECT_EQ(0.1, report["limits"]["position_step"]);
    EXPECT_EQ(20, report["limits"]["force_min"]);
    EXPECT_EQ(true, report["initialised"]);
    EXPECT_EQ(50.0, report["position"]);
    EXPECT_EQ(100, report["force"]);
    EXPECT_EQ(100, report["speed"]);
    EXPECT_TRUE(report["problem"].is_null());
    EXPECT_TRUE(report["hint"].is_null());
}

// Its JSON (protocol "custom_frames") is in the scan's test.
TEST(DoctorProbe, FrameGripperOnASerialPortIsFoundAfterTheModbusRequestGoesUnanswered) {
    Simulator simulator;
    const int n = simulator.add_custom_pty(quick_gripper(100));

    const DoctorProcess::Result result = run_doctor({simulator.endpoint(n)});

    EXPECT_EQ(0, result.status) << result.out << result.err;
    EXPECT_TRUE(holds(result.out,
                      "  protocol      14-byte frames (the Modbus id request went "
                      "unanswered)\n  device id     1\n  firmware      1.2.1.3 (bytes 01 02 01 "
                      "03)\n  model series  1\n  limits        position 0.0 to 100.0 % in steps "
                      "of 1,"));
}

TEST(DoctorProbe, TcpGripperTakesTheModelSeriesItsVersionStandsFor) {
    Simulator simulator;
    gripper_sim::GripperOptions options = quick_gripper(100);
    options.custom_version = {{1, 2, 1, 4}};
    const int n = simulator.add_custom_tcp(options);

    const DoctorProcess::Result result = run_doctor({"--json", simulator.endpoint(n)});

    EXPECT_EQ(0, result.status) << result.out << result.err;
    const nlohmann::json report = only_object(result);
    EXPECT_EQ("tcp", report["link"]);
    EXPECT_EQ("custom_frames", report["protocol"]);
    EXPECT_EQ(2, report["model_series"]);
    EXPECT_EQ(95.0, report["limits"]["position_max"]);
    EXPECT_EQ(15, report["limits"]["force_min"]);
    EXPECT_EQ(90, report["limits"]["force_max"]);
    EXPECT_EQ(false, report["initialised"]);
    EXPECT_TRUE(report["position"].is_null());
}

}  // namespace
