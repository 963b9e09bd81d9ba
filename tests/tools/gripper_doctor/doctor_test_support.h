#ifndef TESTS_TOOLS_GRIPPER_DOCTOR_DOCTOR_TEST_SUPPORT_H
#define TESTS_TOOLS_GRIPPER_DOCTOR_DOCTOR_TEST_SUPPORT_H

#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "gripper/gripper_protocol/gripper_modbus_protocol/gripper_modbus_protocol.h"
#include "tests/test_support/fd_stream.h"
#include "tests/test_support/wait_until.h"
#include "tools/gripper_simulator/simulator.h"

// The gripper-doctor program run as a child, its stdout and stderr written to files; optionally
// as the user nobody (the test must then run as root). Killed on destruction if still running.
class DoctorProcess {
public:
    struct Result {
        int status = -1;  // exit status; -1 when it did not end in time
        std::string out;
        std::string err;

        // The stdout lines, each one JSON object.
        std::vector<nlohmann::json> json_lines() const {
            std::vector<nlohmann::json> objects;
            std::istringstream lines(out);
            for (std::string line; std::getline(lines, line);) {
                objects.push_back(nlohmann::json::parse(line));
            }
            return objects;
        }
    };

    explicit DoctorProcess(std::vector<std::string> args, bool as_nobody = false) {
        // Everything the child needs is ready before the fork: it may only make system calls.
        args.insert(args.begin(), GRIPPER_DOCTOR_PROGRAM);
        std::vector<char*> argv;
        for (std::string& arg : args) {
            argv.push_back(&arg[0]);
        }
        argv.push_back(nullptr);
        const int out = ::open(dir_.file("out").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        const int err = ::open(dir_.file("err").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        pid_ = ::fork();
        if (0 == pid_) {
            ::dup2(out, STDOUT_FILENO);
            ::dup2(err, STDERR_FILENO);
            const uid_t nobody = 65534;
            if (!as_nobody ||
                (0 == ::setgroups(0, nullptr) && 0 == ::setgid(nobody) && 0 == ::setuid(nobody))) {
                ::execv(argv[0], argv.data());
            }
            ::_exit(127);
        }
        ::close(out);
        ::close(err);
    }

    ~DoctorProcess() {
        if (pid_ > 0) {
            ::kill(pid_, SIGKILL);
            ::waitpid(pid_, nullptr, 0);
        }
    }

    DoctorProcess(const DoctorProcess&) = delete;
    DoctorProcess& operator=(const DoctorProcess&) = delete;

    // Waits for the program to end, at most deadline, and collects its output.
    Result wait(std::chrono::milliseconds deadline = std::chrono::seconds(30)) {
        Result result;
        int status = 0;
        if (pid_ > 0 &&
            wait_until([&] { return pid_ == ::waitpid(pid_, &status, WNOHANG); }, deadline)) {
            pid_ = -1;
            result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        }
        result.out = read_file(dir_.file("out"));
        result.err = read_file(dir_.file("err"));
        return result;
    }

private:
    TempDir dir_;
    pid_t pid_ = -1;
};

// Runs the program to its end.
inline DoctorProcess::Result run_doctor(const std::vector<std::string>& args,
                                        bool as_nobody = false) {
    return DoctorProcess(args, as_nobody).wait();
}

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
