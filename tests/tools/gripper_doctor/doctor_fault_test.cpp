// gripper-doctor against grippers and ports that misbehave: each gives its plain-language problem
// and exit status 1. Its command line: help, and bad input refused with a message and status 2.

#include <grp.h>
#include <spawn.h>
#include <sys/stat.h>

#include <fstream>

#include "tests/tools/gripper_doctor/doctor_test_support.h"

namespace {

using gripper_sim::Fault;
using gripper_sim::Simulator;

struct FaultCase {
    std::string target;
    int gripper;  // 0: no simulated gripper behind the target
    Fault fault;
    std::string code;
    std::string problem;
};

// A path that does not exist and a port the plug-in refuses are problems too, not bad usage.
TEST(DoctorFault, EachFaultGetsItsOwnProblem) {
    Simulator simulator;
    const int modbus = simulator.add_modbus_pty(quick_gripper());
    const int tcp = simulator.add_custom_tcp(quick_gripper(100));
    const std::string port = simulator.endpoint(modbus);
    const std::string address = simulator.endpoint(tcp);
    const FaultCase cases[] = {
        {port, modbus, Fault::silent, "no_answer", "nothing answers at 115200 8N1"},
        {port, modbus, Fault::bad_crc, "bad_checksum", "answers arrive with bad checksums"},
        {port, modbus, Fault::wrong_id, "foreign_id",
         "answers come from device id 2, but the request was for id 1"},
        {port, modbus, Fault::garbage, "garbage", "answers are unreadable bytes"},
        {port, modbus, Fault::short_answer, "incomplete", "answers arrive incomplete or too late"},
        {address, tcp, Fault::silent, "no_answer",
         "connected to " + address + ", but nothing answers"},
        {address, tcp, Fault::reset, "tcp_dropped",
         address + " accepts a connection, then resets it"},
        {address, tcp, Fault::vanish, "tcp_refused", address + " refused the connection"},
        {"/dev/ttyUSB-no-such-port", 0, Fault::none, "not_found",
         "/dev/ttyUSB-no-such-port does not exist"},
        {"127.0.0.1:502", 0, Fault::none, "port_refused",
         "port 502 is below 1024, which the plug-in refuses"},
    };
    for (const FaultCase& row : cases) {
        simulator.set_fault(row.gripper, row.fault);

        const DoctorProcess::Result result = run_doctor({"--json", row.target});

        EXPECT_EQ(1, result.status) << row.code << "\n" << result.out << result.err;
        const nlohmann::json report = only_object(result);
        EXPECT_EQ(row.code, report["problem_code"]);
        EXPECT_TRUE(holds(report["problem"].get<std::string>(), row.problem));
        EXPECT_FALSE(report["hint"].get<std::string>().empty()) << row.code;
        EXPECT_TRUE(report["initialised"].is_null()) << row.code;
    }
    // The text report says it in words, with what to check and nothing about a protocol.
    simulator.set_fault(modbus, Fault::silent);
    const DoctorProcess::Result text = run_doctor({port});
    EXPECT_EQ(1, text.status);
    EXPECT_TRUE(holds(text.out,
                      "  problem       nothing answers at 115200 8N1 (10 requests, Modbus RTU and "
                      "14-byte frames)\n  hint          check the gripper's power and cable"));
    EXPECT_EQ(std::string::npos, text.out.find("protocol"));
}

TEST(DoctorFault, PortThatVanishesDuringTheProbeIsReportedGone) {
    Simulator simulator;
    const int n = simulator.add_modbus_pty(quick_gripper());
    const std::string path = simulator.endpoint(n);
    simulator.set_fault(n, Fault::silent);
    DoctorProcess doctor({"--json", path});
    ASSERT_TRUE(wait_until([&] { return simulator.snapshot(n).frames_received > 0; }));

    simulator.set_fault(n, Fault::vanish);
    const DoctorProcess::Result result = doctor.wait();

    EXPECT_EQ(1, result.status) << result.out << result.err;
    const nlohmann::json report = only_object(result);
    EXPECT_EQ("vanished", report["problem_code"]);
    EXPECT_EQ(path + " went away during the probe", report["problem"]);
}

// Root may open any device; the check is made as nobody then. Other users make the port
// unreadable for themselves.
TEST(DoctorFault, PortWithoutPermissionNamesItsGroup) {
    Simulator simulator;
    const int n = simulator.add_modbus_pty(quick_gripper());
    const std::string path = simulator.endpoint(n);
    const bool root = 0 == ::geteuid();
    ASSERT_EQ(0, ::chmod(path.c_str(), root ? 0660 : 0));
    struct stat status;
    ASSERT_EQ(0, ::stat(path.c_str(), &status));
    const struct group* owner = ::getgrgid(status.st_gid);
    ASSERT_NE(nullptr, owner);
    const std::string group = owner->gr_name;

    const DoctorProcess::Result result = run_doctor({"--json", path}, root);

    EXPECT_EQ(1, result.status) << result.out << result.err;
    const nlohmann::json report = only_object(result);
    EXPECT_EQ("permission_denied", report["problem_code"]);
    const std::string problem = report["problem"];
    EXPECT_TRUE(holds(problem, "permission denied: user "));
    EXPECT_TRUE(
        holds(problem, root ? "it belongs to group " + group + ", and nobody is not in that group"
                            : "(mode 0000"));
    EXPECT_TRUE(holds(report["hint"],
                      root ? "sudo usermod -aG " + group + " nobody" : "sudo chmod 660 " + path));
    EXPECT_EQ(0, simulator.snapshot(n).frames_received);
}

TEST(DoctorFault, PortThatAnotherProcessHoldsIsBusy) {
    Simulator simulator;
    const int n = simulator.add_modbus_pty(quick_gripper());
    const std::string path = simulator.endpoint(n);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, path.c_str(), O_RDWR | O_NOCTTY, 0);
    char sleep_program[] = "sleep";
    char sleep_time[] = "60";
    char* argv[] = {sleep_program, sleep_time, nullptr};
    pid_t holder = -1;
    ASSERT_EQ(0, posix_spawnp(&holder, "sleep", &actions, nullptr, argv, environ));
    posix_spawn_file_actions_destroy(&actions);
    const std::string fd_zero = "/proc/" + std::to_string(holder) + "/fd/0";
    ASSERT_TRUE(wait_until([&] {
        struct stat held, port;
        return 0 == ::stat(fd_zero.c_str(), &held) && 0 == ::stat(path.c_str(), &port) &&
               held.st_rdev == port.st_rdev;
    }));

    const DoctorProcess::Result result = run_doctor({"--json", path});
    ::kill(holder, SIGKILL);
    ::waitpid(holder, nullptr, 0);

    EXPECT_EQ(1, result.status) << result.out << result.err;
    const nlohmann::json report = only_object(result);
    EXPECT_EQ("busy", report["problem_code"]);
    EXPECT_EQ(path + " is busy: sleep (pid " + std::to_string(holder) + ") has it open",
              report["problem"]);
    EXPECT_EQ(0, simulator.snapshot(n).frames_received);
}

struct UsageCase {
    std::vector<std::string> args;
    std::string message;
};

TEST(DoctorUsage, BadInputIsRefusedWithAMessageAndStatusTwo) {
    const std::string file = testing::TempDir() + "doctor_usage_regular_file";
    std::ofstream(file) << "not a port\n";
    const UsageCase cases[] = {
        {{"--bogus"}, "unknown option --bogus"},
        {{"-x", "/dev/ttyUSB0"}, "unknown option -x"},
        {{"192.168.1:8888"}, "HOST must be an IPv4 address"},
        {{"gripper.local:8888"}, "HOST must be an IPv4 address"},
        {{"192.168.1.29:"}, "PORT must be a number"},
        {{"192.168.1.29:88x"}, "PORT must be a number"},
        {{"192.168.1.29:0"}, "port 0 is out of range (1-65535)"},
        {{"192.168.1.29:65536"}, "port 65536 is out of range (1-65535)"},
        {{"/tmp"}, "/tmp is a directory, not a serial port"},
        {{file}, file + " is a regular file, not a serial port"},
        {{"--timeout"}, "--timeout needs a value"},
        {{"--timeout", "0"}, "--timeout takes seconds above 0"},
        {{"--timeout=-1"}, "--timeout takes seconds above 0"},
        {{"--timeout", "soon"}, "--timeout takes seconds above 0"},
        {{"--json=yes"}, "unknown option --json"},
    };
    for (const UsageCase& row : cases) {
        const DoctorProcess::Result result = run_doctor(row.args);

        EXPECT_EQ(2, result.status) << row.message;
        EXPECT_EQ(0u, result.err.find("gripper-doctor: ")) << result.err;
        EXPECT_TRUE(holds(result.err, row.message));
        EXPECT_TRUE(holds(result.err, "Try 'gripper-doctor --help'"));
        EXPECT_TRUE(result.out.empty()) << result.out;
    }
}

TEST(DoctorUsage, HelpExplainsTargetsOptionsAndExitStatusWithExamples) {
    const DoctorProcess::Result result = run_doctor({"--help"});

    EXPECT_EQ(0, result.status);
    for (const char* part :
         {"Usage: gripper-doctor", "HOST:PORT", "--trace", "--json", "--timeout SECONDS",
          "Exit status: 0", "Examples", "gripper-doctor /dev/ttyUSB0"}) {
        EXPECT_TRUE(holds(result.out, part));
    }
}

}  // namespace
