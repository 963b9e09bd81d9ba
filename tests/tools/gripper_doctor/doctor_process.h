#ifndef TESTS_TOOLS_GRIPPER_DOCTOR_DOCTOR_PROCESS_H
#define TESTS_TOOLS_GRIPPER_DOCTOR_DOCTOR_PROCESS_H

#include <fcntl.h>
#include <grp.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/test_support/fd_stream.h"
#include "tests/test_support/wait_until.h"

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

#endif
