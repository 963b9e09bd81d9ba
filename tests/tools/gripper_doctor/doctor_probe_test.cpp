// gripper-doctor against healthy simulated grippers: what it reports about each kind of link.

#include "tests/tools/gripper_doctor/doctor_test_support.h"

namespace {

using gripper_sim::Simulator;

// The trace shows every frame in hex with its meaning, each line marked with its target when there
// are several; then the reports follow, in the order of the targets. The frame gripper is found
// once the Modbus request goes unanswered; its JSON (protocol "custom_frames") is in the scan's
// test.
TEST(DoctorProbe, GrippersOnSerialPortsAreTracedAndReportedInFullAndNothingIsWritten) {
    Simulator simulator;
    const int n = simulator.add_modbus_pty(quick_gripper());
    const int frames = simulator.add_custom_pty(quick_gripper(100));
    const std::string port = simulator.endpoint(n);

    const DoctorProcess::Result result = run_doctor({"--trace", port, simulator.endpoint(frames)});

    EXPECT_EQ(0, result.status) << result.out << result.err;
    for (const std::string& line :
         {"] " + port +
              " -> FF 03 03 02 00 01 30 50   Modbus read of register 0x0302 (device id) at slave "
              "255 (any slave answers)\n",
          "] " + port + " <- 01 03 02 00 01 79 84   slave 1: device id 1, CRC ok\n",
          "] " + port + " -> 01 03 0A 02 00 01 ", std::string("slave 1: firmware 1.2, CRC ok\n"),
          std::string(
              " -> FF FE FD FC 00 12 01 00 00 00 00 00 00 FB   frame read of 12/01 (device id) "
              "for gripper 0\n"),
          std::string("slave 1: model code 0x1000, model series 3, CRC ok\n"),
          port +
              "\n  link          serial port, 115200 baud 8N1\n"
              "  protocol      Modbus RTU\n  device id     1\n  firmware      1.2 (bytes 01 02)\n"
              "  model series  3\n  limits        position 0.0 to 100.0 % in steps of 0.1, force "
              "20 "
              "to 100 %, speed 20 to 100 %\n  initialised   no: activate it before moving it\n",
          std::string("  protocol      14-byte frames (the Modbus id request went unanswered)\n"
                      "  device id     1\n  firmware      1.2.1.3 (bytes 01 02 01 03)\n  model "
                      "series  1\n  limits        position 0.0 to 100.0 % in steps of 1,"),
          std::string("  result        OK")}) {
        EXPECT_TRUE(holds(result.out, line));
    }
    EXPECT_EQ(0u, result.out.find('[')) << result.out;
    EXPECT_EQ(':', result.out[3]);
    const gripper_sim::GripperSnapshot state = simulator.snapshot(n);
    EXPECT_FALSE(state.initialised);
    EXPECT_EQ(0, state.target);
    EXPECT_EQ(100, state.force);
}

// One run for two targets gives one JSON object each, in their order: an initialised Modbus
// gripper with its position, force and speed, and a frame gripper over TCP that takes the model
// series its version 1.2.1.4 stands for.
TEST(DoctorProbe, JsonReportsAnInitialisedModbusGripperAndATcpFrameGripper) {
    Simulator simulator;
    const int modbus = simulator.add_modbus_pty(quick_gripper());
    prepare_modbus_gripper(simulator, modbus, 500);
    gripper_sim::GripperOptions options = quick_gripper(100);
    options.custom_version = {{1, 2, 1, 4}};
    const int tcp = simulator.add_custom_tcp(options);

    const DoctorProcess::Result result =
        run_doctor({"--json", simulator.endpoint(modbus), simulator.endpoint(tcp)});

    EXPECT_EQ(0, result.status) << result.out << result.err;
    const std::vector<nlohmann::json> reports = result.json_lines();
    ASSERT_EQ(2u, reports.size()) << result.out;
    const char* const expected[] = {
        R"({"/link": "serial", "/protocol": "modbus_rtu", "/device_id": 1, "/version": "1.2",
            "/model_series": 3, "/limits/position_max": 100.0, "/limits/position_step": 0.1,
            "/limits/force_min": 20, "/initialised": true, "/position": 50.0, "/force": 100,
            "/speed": 100, "/problem": null, "/hint": null})",
        R"({"/link": "tcp", "/protocol": "custom_frames", "/model_series": 2,
            "/limits/position_max": 95.0, "/limits/force_min": 15, "/limits/force_max": 90,
            "/initialised": false, "/position": null})",
    };
    EXPECT_EQ(simulator.endpoint(modbus), reports[0]["target"]);
    for (size_t i = 0; i < 2; ++i) {
        const nlohmann::json fields = nlohmann::json::parse(expected[i]);
        for (const auto& field : fields.items()) {
            EXPECT_EQ(field.value(), reports[i].at(nlohmann::json::json_pointer(field.key())))
                << field.key();
        }
    }
}

}  // namespace
