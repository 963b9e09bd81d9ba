// The gripper-sim program run as a child process: its announcements and its control channels.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

#include "tests/tools/gripper_simulator/child_process.h"

namespace {

using namespace sim_test;

const std::string kProgram = GRIPPER_SIM_PROGRAM;

const Bytes kIdRequest{0xFF, 0x03, 0x03, 0x02, 0x00, 0x01, 0x30, 0x50};

std::string path_of(const std::string& pty_line) {
    const std::string prefix = "PTY is ";
    return pty_line.compare(0, prefix.size(), prefix) == 0 ? pty_line.substr(prefix.size()) : "";
}

FdStream connect_unix(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof(address.sun_path) - 1);
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd >= 0 && ::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0) {
        ::close(fd);
        return FdStream();
    }
    return FdStream(fd);
}

TEST(GripperSimProgram, AnnouncesItsGrippersAndObeysControlCommands) {
    TempDir dir;
    const std::string announce_file = dir.file("pts");
    ChildProcess sim(kProgram,
                     {"--announce", announce_file, "--id", "2", "--modbus", "--tcp", "0"});
    ASSERT_TRUE(sim.started());
    const std::string pty_line = sim.read_line();
    ASSERT_FALSE(path_of(pty_line).empty()) << pty_line;
    EXPECT_EQ(sim.read_line().rfind("TCP is 127.0.0.1:", 0), 0u);
    EXPECT_EQ(read_file(announce_file), pty_line + "\n");

    FdStream line = open_serial(path_of(pty_line));
    ASSERT_TRUE(line.write(kIdRequest));
    const Bytes answer = line.read(7);
    ASSERT_EQ(answer.size(), 7u);
    EXPECT_EQ(answer[4], 2);

    ASSERT_TRUE(sim.write_line("state 1"));
    EXPECT_EQ(sim.read_line().rfind("initialised=0 ", 0), 0u);
    ASSERT_TRUE(sim.write_line("fault 1 silent"));
    EXPECT_EQ(sim.read_line(), "ok");
    ASSERT_TRUE(sim.write_line("list"));
    const std::string list = sim.read_line();
    EXPECT_NE(list.find("1 modbus pty " + path_of(pty_line) + " id=2 fault=silent"),
              std::string::npos)
        << list;
    EXPECT_NE(list.find("2 custom tcp 127.0.0.1:"), std::string::npos) << list;
    ASSERT_TRUE(sim.write_line("frobnicate 3"));
    EXPECT_EQ(sim.read_line().rfind("error: ", 0), 0u);
    ASSERT_TRUE(sim.write_line("drop 1"));
    EXPECT_EQ(sim.read_line(), "error: gripper 1 holds no object");
    ASSERT_TRUE(sim.write_line("quit"));
    EXPECT_EQ(sim.read_line(), "ok");
    EXPECT_EQ(sim.wait_exit(), 0);
}

TEST(GripperSimProgram, KeepsServingAfterStdinEndsAndStopsOnSignals) {
    TempDir dir;
    for (int stop_signal : {SIGTERM, SIGINT}) {
        ChildProcess sim(kProgram, {"--announce", dir.file("pts"), "--modbus"});
        const std::string path = path_of(sim.read_line());
        ASSERT_FALSE(path.empty());
        sim.close_stdin();
        FdStream line = open_serial(path);
        ASSERT_TRUE(line.write(kIdRequest));
        EXPECT_EQ(line.read(7).size(), 7u);
        EXPECT_EQ(sim.wait_exit(milliseconds(0)), -1);
        sim.signal(stop_signal);
        EXPECT_EQ(sim.wait_exit(), 0);
    }
}

TEST(GripperSimProgram, ServesTheControlSocketAndRemovesItOnExit) {
    TempDir dir;
    const std::string socket_path = dir.file("control");
    ChildProcess sim(
        kProgram, {"--control", socket_path, "--announce", "-", "--object", "40", "--custom-pty"});
    ASSERT_FALSE(path_of(sim.read_line()).empty());
    EXPECT_TRUE(read_file(dir.file("pts")).empty());
    FdStream control = connect_unix(socket_path);
    ASSERT_TRUE(control.valid());
    const std::string command = "object 1 none\nstate 1\n";
    ASSERT_TRUE(control.write(Bytes(command.begin(), command.end())));
    const std::string expected = "ok\ninitialised=0 position=0 ";
    const Bytes reply = control.read(expected.size());
    EXPECT_EQ(std::string(reply.begin(), reply.end()), expected);
    sim.signal(SIGTERM);
    EXPECT_EQ(sim.wait_exit(), 0);
    EXPECT_NE(::access(socket_path.c_str(), F_OK), 0);
}

TEST(GripperSimProgram, HelpListsEveryFlag) {
    ChildProcess sim(kProgram, {"--help"});
    const std::string help = sim.read_all();
    EXPECT_EQ(sim.wait_exit(), 0);
    for (const char* flag : {"--modbus", "--custom-pty", "--tcp", "--id", "--model", "--version",
                             "--position-max", "--object", "--init-ms", "--stroke-ms", "--late-ms",
                             "--fault", "--announce", "--trace", "--control", "--help"}) {
        EXPECT_NE(help.find(flag), std::string::npos) << flag;
    }
}

TEST(GripperSimProgram, RefusesBadCommandLines) {
    const std::vector<std::vector<std::string>> bad{
        {},
        {"--id", "0", "--modbus"},
        {"--modbus", "--id", "3"},
        {"--fault", "sometimes", "--modbus"},
        {"--version", "1.2.3", "--tcp", "0"},
        {"--tcp", "70000"},
        {"--init-ms"},
        {"--frobnicate"},
    };
    for (const auto& args : bad) {
        ChildProcess sim(kProgram, args);
        EXPECT_EQ(sim.read_all(), "");
        EXPECT_EQ(sim.wait_exit(), 2) << (args.empty() ? "(none)" : args[0]);
    }
}

}  // namespace
