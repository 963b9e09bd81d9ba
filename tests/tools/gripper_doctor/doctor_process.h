#ifndef TESTS_TOOLS_GRIPPER_DOCTOR_DOCTOR_PROCESS_H
#define TESTS_TOOLS_GRIPPER_DOCTOR_DOCTOR_PROCESS_H

#include <fcntl.h>
#include <grp.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

// The gripper-doctor program run as a child, with its stdout and stderr collected; optionally
// as the user nobody (the test must then run as root). Killed on destruction if still running.
class DoctorProcess {
public:
    static const uid_t NOBODY = 65534;

    struct Result {
        int status = -1;  // exit status; -1 when it did not end in time
        std::string out;
        std::string err;

        // The stdout lines that parse as JSON objects.
        std::vector<nlohmann::json> json_lines() const {
            std::vector<nlohmann::json> objects;
            size_t start = 0;
            for (size_t end = out.find('\n'); std::string::npos != end;
                 start = end + 1, end = out.find('\n', start)) {
                objects.push_back(nlohmann::json::parse(out.substr(start, end - start)));
            }
            return objects;
        }
    };

    explicit DoctorProcess(const std::vector<std::string>& args, bool as_nobody = false)
        : args_(args) {
        // Everything the child needs is ready before the fork: it may only make system calls.
        std::vector<char*> argv{const_cast<char*>(GRIPPER_DOCTOR_PROGRAM)};
        for (std::string& arg : args_) {
            argv.push_back(&arg[0]);
        }
        argv.push_back(nullptr);
        int out[2], err[2];
        if (0 != ::pipe2(out, O_CLOEXEC) || 0 != ::pipe2(err, O_CLOEXEC)) {
            return;
        }
        pid_ = ::fork();
        if (0 == pid_) {
            exec_child(argv.data(), as_nobody, out[1], err[1]);
        }
        ::close(out[1]);
        ::close(err[1]);
        out_fd_ = out[0];
        err_fd_ = err[0];
    }

    ~DoctorProcess() {
        if (pid_ > 0) {
            ::kill(pid_, SIGKILL);
            ::waitpid(pid_, nullptr, 0);
        }
        close_fd(out_fd_);
        close_fd(err_fd_);
    }

    DoctorProcess(const DoctorProcess&) = delete;
    DoctorProcess& operator=(const DoctorProcess&) = delete;

    // Collects the output until the program ends or the deadline passes.
    Result wait(std::chrono::milliseconds deadline = std::chrono::seconds(30)) {
        const auto end = std::chrono::steady_clock::now() + deadline;
        while ((out_fd_ >= 0 || err_fd_ >= 0) && std::chrono::steady_clock::now() < end) {
            collect();
        }
        int status = 0;
        if (pid_ > 0 && pid_ == ::waitpid(pid_, &status, out_fd_ < 0 ? 0 : WNOHANG)) {
            pid_ = -1;
            result_.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        }
        return result_;
    }

private:
    // The program is opened before the user changes: nobody may be unable to reach the build
    // folder (a clone under a home folder of mode 0700) but may still run the file itself.
    static void exec_child(char* const* argv, bool as_nobody, int out, int err) {
        ::dup2(out, STDOUT_FILENO);
        ::dup2(err, STDERR_FILENO);
        const int program = ::open(GRIPPER_DOCTOR_PROGRAM, O_PATH | O_CLOEXEC);
        if (as_nobody && (0 != ::setgroups(0, nullptr) || 0 != ::setgid(NOBODY) ||
                          0 != ::setuid(NOBODY) || 0 != ::chdir("/"))) {
            ::_exit(126);
        }
        ::fexecve(program, argv, environ);
        ::_exit(127);
    }

    void collect() {
        struct pollfd fds[2] = {{out_fd_, POLLIN, 0}, {err_fd_, POLLIN, 0}};
        if (::poll(fds, 2, 50) <= 0) {
            return;
        }
        drain(fds[0], out_fd_, result_.out);
        drain(fds[1], err_fd_, result_.err);
    }

    static void drain(const struct pollfd& ready, int& fd, std::string& text) {
        if (fd < 0 || 0 == ready.revents) {
            return;
        }
        char buffer[4096];
        const ssize_t size = ::read(fd, buffer, sizeof(buffer));
        if (size > 0) {
            text.append(buffer, static_cast<size_t>(size));
        } else {
            close_fd(fd);
        }
    }

    static void close_fd(int& fd) {
        if (fd >= 0) {
            ::close(fd);
        }
        fd = -1;
    }

    std::vector<std::string> args_;
    pid_t pid_ = -1;
    int out_fd_ = -1;
    int err_fd_ = -1;
    Result result_;
};

// Runs the program to its end.
inline DoctorProcess::Result run_doctor(const std::vector<std::string>& args,
                                        bool as_nobody = false) {
    return DoctorProcess(args, as_nobody).wait();
}

#endif
