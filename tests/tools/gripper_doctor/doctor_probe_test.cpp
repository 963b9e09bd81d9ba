// gripper-doctor against healthy simulated grippers: what it reports about each kind of link, for
// the targets named; without a target, the ports the plug-in's scan lists, probed one line each.
// The system's ports come from a sysfs tree the test builds, with a USB adapter whose device node
// leads to a simulated gripper; the announcement file is the real one.

#include <sys/stat.h>

#include <fstream>

#include "tests/tools/gripper_doctor/doctor_test_support.h"

namespace {

using gripper_sim::Simulator;

const char ANNOUNCE_FILE[] = "/tmp/pts";

// Keeps the announcement file as it was found and puts it back at the end.
class AnnouncementFile {
public:
    ~AnnouncementFile() {
        if (existed_) {
            std::ofstream(ANNOUNCE_FILE) << saved_;
        } else {
            remove();
        }
    }
    void write(const std::string& line) { std::ofstream(ANNOUNCE_FILE) << line << "\n"; }
    void remove() { ::unlink(ANNOUNCE_FILE); }

private:
    const bool existed_ = 0 == ::access(ANNOUNCE_FILE, F_OK);
    const std::string saved_ = read_file(ANNOUNCE_FILE);
};

// A sysfs tree and a /dev under one root, as the doctor reads them with --sysroot.
class FakeSystem {
public:
    FakeSystem() : root_(testing::TempDir() + "doctor_sysroot_" + std::to_string(::getpid())) {
        std::system(("rm -rf " + root_).c_str());
        run("mkdir -p sys/class/tty sys/bus/usb/devices dev");
    }
    ~FakeSystem() { std::system(("rm -rf " + root_).c_str()); }

    const std::string& root() const { return root_; }

    // A USB device at bus position name ("1-1") with its ids and, unless tty is empty, a tty whose
    // /dev node leads to target.
    void add_usb(const std::string& name, const std::string& ids, const std::string& tty = "",
                 const std::string& target = "") {
        const std::string device = "sys/devices/usb1/" + name;
        run("mkdir -p " + device + " && echo " + ids.substr(0, 4) + " >" + device +
            "/idVendor && echo " + ids.substr(5) + " >" + device + "/idProduct && ln -s ../../../" +
            device.substr(4) + " sys/bus/usb/devices/" + name);
        const std::string directory = device + "/" + name + ":1.0/" + tty + "/tty/" + tty;
        if (!tty.empty()) {
            run("mkdir -p " + directory + " && ln -s ../../../../" + name + ":1.0 " + directory +
                "/device && ln -s ../../" + directory.substr(4) + " sys/class/tty/" + tty +
                " && ln -s " + target + " dev/" + tty);
        }
    }

private:
    // A shell command run in the root.
    void run(const std::string& command) {
        ASSERT_EQ(0,
                  std::system(("mkdir -p " + root_ + " && cd " + root_ + " && " + command).c_str()))
            << command;
    }

    const std::string root_;
};

// Text gives one line per port, JSON one object per port with where it was found.
TEST(DoctorScan, AnnouncedAndUsbPortsAreListedAndEachIsProbed) {
    AnnouncementFile announcement;
    Simulator simulator;
    const int frames = simulator.add_custom_pty(quick_gripper(100));
    const int modbus = simulator.add_modbus_pty(quick_gripper());
    announcement.write("PTY is " + simulator.endpoint(frames));
    FakeSystem system;
    system.add_usb("1-1", "0483:5740", "ttyACM0", simulator.endpoint(modbus));
    const std::string usb_port = system.root() + "/dev/ttyACM0";
    const std::string usb = "USB 0483:5740 (a known gripper adapter)\n";

    const DoctorProcess::Result result = run_doctor({"--sysroot", system.root()});
    announcement.write("PTY is " + simulator.endpoint(frames));
    const DoctorProcess::Result json = run_doctor({"--json", "--sysroot", system.root()});

    EXPECT_EQ(0, result.status) << result.out << result.err;
    EXPECT_TRUE(holds(result.out, "Candidate ports, as the plug-in's scan lists them:\n  " +
                                      simulator.endpoint(frames) + "  announced in /tmp/pts\n  " +
                                      usb_port + "  serial port, " + usb));
    EXPECT_TRUE(holds(result.out,
                      "  14-byte frame gripper, id 1, model series 1, firmware "
                      "1.2.1.3, not initialised\n"));
    EXPECT_TRUE(holds(result.out, usb_port +
                                      "  Modbus RTU gripper, id 1, model series 3, "
                                      "firmware 1.2, not initialised, " +
                                      usb));
    EXPECT_EQ(0, json.status);
    const std::vector<nlohmann::json> objects = json.json_lines();
    ASSERT_EQ(2u, objects.size()) << json.out;
    EXPECT_EQ("announced in /tmp/pts", objects[0]["source"]);
    EXPECT_EQ("custom_frames", objects[0]["protocol"]) << json.out;
    EXPECT_EQ(usb_port, objects[1]["target"]);
    EXPECT_EQ("serial port", objects[1]["source"]);
    EXPECT_EQ("0483:5740", objects[1]["usb"]);
    EXPECT_EQ("modbus_rtu", objects[1]["protocol"]);
}

TEST(DoctorScan, ScanProblemsAreReportedAndGiveStatusOne) {
    AnnouncementFile announcement;
    announcement.write("no path here");
    FakeSystem system;
    system.add_usb("1-2", "0403:6001");
    system.add_usb("1-3", "046d:c52b");

    const DoctorProcess::Result result = run_doctor({"--sysroot", system.root()});

    EXPECT_EQ(1, result.status) << result.out << result.err;
    EXPECT_TRUE(holds(result.out,
                      "/tmp/pts  problem: /tmp/pts holds no \"PTY is <path>\" line, "
                      "so the plug-in's scan stops there and lists no port at all"));
    EXPECT_TRUE(holds(result.out,
                      "USB 1-2   problem: the gripper adapter 0403:6001 has no serial "
                      "port; hint: load its driver: sudo modprobe ftdi_sio"));
    EXPECT_EQ(std::string::npos, result.out.find("046d")) << result.out;

    announcement.write("PTY is /dev/pts/no-such-pty");
    const DoctorProcess::Result stale = run_doctor({"--json", "--sysroot", system.root()});

    EXPECT_EQ(1, stale.status);
    const std::vector<nlohmann::json> objects = stale.json_lines();
    ASSERT_EQ(2u, objects.size()) << stale.out;
    EXPECT_EQ("adapter_without_port", objects[0]["problem_code"]);
    EXPECT_EQ("/dev/pts/no-such-pty", objects[1]["target"]);
    EXPECT_EQ("announced in /tmp/pts", objects[1]["source"]);
    EXPECT_EQ("not_found", objects[1]["problem_code"]);
}

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
