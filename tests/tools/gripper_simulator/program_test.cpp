// The gripper-sim program run as a child process: its announcements and its control channels.

#include <gtest/gtest.h>
#include <sys/un.h>

#include <cstring>

#include "tests/test_support/child_process.h"
#include "tests/test_support/fd_stream.h"

namespace {

const std::string kProgram = GRIPPER_SIM_PROGRAM;

// The path of a "PTY is <path>" line; empty for any other line.
std::string path_of(const std::string& pty_line) {
    return 0 == pty_line.rfind("PTY is ", 0) ? pty_line.substr(7) : "";
}

TEST(GripperSimProgram, AnnouncesItsGrippersAndObeysControlCommands) {
    TempDir dir;
    ChildProcess sim(kProgram,
                     {"--announce", dir.file("pts"), "--id", "2", "--modbus", "--tcp", "0"});
    const std::string pty_line = sim.read_line();
    ASSERT_FALSE(path_of(pty_line).empty()) << pty_line;
    EXPECT_EQ(0u, sim.read_line().rfind("TCP is 127.0.0.1:", 0));
    EXPECT_EQ(pty_line + "\n", read_file(dir.file("pts")));

    const std::vector<std::pair<std::string, std::string>> dialogue = {
        {"fault 1 silent", "ok"},
        {"list", "1 modbus pty " + path_of(pty_line) + " id=2 fault=silent"},
        {"frobnicate 3", "error: "},
        {"drop 1 next", "error: gripper 1 holds no object"},
        {"drop 1 later", "error: usage: drop N [next]"},
        {"quit", "ok"},
    };
    for (const auto& exchange : dialogue) {
        ASSERT_TRUE(sim.write_line(exchange.first));
        const std::string reply = sim.read_line();
        EXPECT_EQ(0u, reply.find(exchange.second)) << exchange.first << ": " << reply;
        EXPECT_TRUE("list" != exchange.first ||
                    std::string::npos != reply.find("2 custom tcp 127.0.0.1:"))
            << reply;
    }
    EXPECT_EQ(0, sim.wait_exit());
}

// The end of stdin does not stop it: its gripper and its control socket still answer. SIGTERM
// and SIGINT stop it, and the socket goes with it.
TEST(GripperSimProgram, ServesAfterStdinEndsAndStopsOnSignals) {
    TempDir dir;
    const std::string socket_path = dir.file("control");
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, socket_path.c_str(), sizeof(address.sun_path) - 1);
    for (int stop_signal : {SIGTERM, SIGINT}) {
        ChildProcess sim(kProgram, {"--control", socket_path, "--announce", "-", "--object", "40",
                                    "--custom-pty"});
        const std::string path = path_of(sim.read_line());
        ASSERT_FALSE(path.empty());
        sim.close_stdin();
        FdStream line = open_raw_terminal(path);
        ASSERT_TRUE(line.write(hex("FF FE FD FC 00 12 01 00 00 00 00 00 00 FB")));
        EXPECT_EQ(14u, line.read(14).size());
        FdStream control(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        ASSERT_EQ(0,
                  ::connect(control.fd(), reinterpret_cast<sockaddr*>(&address), sizeof(address)));
        const std::string command = "object 1 none\nstate 1\n";
        ASSERT_TRUE(control.write(Bytes(command.begin(), command.end())));
        const std::string expected = "ok\ninitialised=0 position=0 ";
        const Bytes reply = control.read(expected.size());
        EXPECT_EQ(expected, std::string(reply.begin(), reply.end()));
        EXPECT_EQ(-1, sim.wait_exit(std::chrono::milliseconds(0)));
        sim.signal(stop_signal);
        EXPECT_EQ(0, sim.wait_exit());
        EXPECT_NE(0, ::access(socket_path.c_str(), F_OK));
    }
}

TEST(GripperSimProgram, HelpsAndRefusesBadCommandLines) {
    ChildProcess help(kProgram, {"--help"});
    EXPECT_EQ(0u, help.read_line().find("Usage: gripper-sim"));
    EXPECT_EQ(0, help.wait_exit());
    // No gripper, a bad id, a flag after the gripper, a bad fault, version, port, missing value.
    const std::vector<std::vector<std::string>> bad{
        {},
        {"--id", "0", "--modbus"},
        {"--modbus", "--id", "3"},
        {"--fault", "sometimes", "--modbus"},
        {"--version", "1.2.3", "--tcp", "0"},
        {"--tcp", "70000"},
        {"--init-ms"},
        {"--baud", "-1", "--modbus"},
        {"--window-us", "1ms", "--modbus"},
        {"--frobnicate"},
    };
    for (const std::vector<std::string>& args : bad) {
        ChildProcess sim(kProgram, args);
        EXPECT_EQ("", sim.read_line());
        EXPECT_EQ(2, sim.wait_exit()) << (args.empty() ? "(none)" : args[0]);
    }
}

}  // namespace
