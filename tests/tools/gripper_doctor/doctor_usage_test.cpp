// gripper-doctor's command line: help, and bad input refused with a message and status 2.

#include <fstream>

#include "tests/tools/gripper_doctor/doctor_test_support.h"

namespace {

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
