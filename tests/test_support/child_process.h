#ifndef TESTS_TEST_SUPPORT_CHILD_PROCESS_H
#define TESTS_TEST_SUPPORT_CHILD_PROCESS_H

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <vector>

#include "tests/test_support/wait_until.h"

// A program (looked up in PATH unless given with a path) run with pipes on its stdin and
// stdout; killed and reaped on destruction if still running.
class ChildProcess {
public:
    ChildProcess(const std::string& program, const std::vector<std::string>& args) {
        int in[2];
        int out[2];
        if (0 != ::pipe2(in, O_CLOEXEC) || 0 != ::pipe2(out, O_CLOEXEC)) {
            return;
        }
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, in[0], STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
        std::vector<char*> argv{const_cast<char*>(program.c_str())};
        for (const std::string& arg : args) {
            argv.push_back(const_cast<char*>(arg.c_str()));
        }
        argv.push_back(nullptr);
        if (0 != posix_spawnp(&pid_, program.c_str(), &actions, nullptr, argv.data(), environ)) {
            pid_ = -1;
        }
        posix_spawn_file_actions_destroy(&actions);
        ::close(in[0]);
        ::close(out[1]);
        stdin_ = in[1];
        stdout_ = out[0];
    }

    ~ChildProcess() {
        close_stdin();
        if (pid_ > 0 && -1 == wait_exit(std::chrono::milliseconds(0))) {
            ::kill(pid_, SIGKILL);
            ::waitpid(pid_, nullptr, 0);
        }
        ::close(stdout_);
    }

    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // The next stdout line without its newline; at the end of the output or after timeout, what
    // came of a last line (empty when nothing).
    std::string read_line(std::chrono::milliseconds timeout = std::chrono::seconds(5)) {
        const auto deadline = std::chrono::steady_clock::now() + timeout;
        std::string line;
        char byte = 0;
        while (std::chrono::steady_clock::now() < deadline) {
            struct pollfd ready = {stdout_, POLLIN, 0};
            if (1 != ::poll(&ready, 1, 5)) {
                continue;
            }
            if (1 != ::read(stdout_, &byte, 1) || '\n' == byte) {
                break;
            }
            line += byte;
        }
        return line;
    }

    bool write_line(const std::string& line) {
        const std::string text = line + "\n";
        return static_cast<ssize_t>(text.size()) == ::write(stdin_, text.data(), text.size());
    }

    void close_stdin() {
        if (stdin_ >= 0) {
            ::close(stdin_);
            stdin_ = -1;
        }
    }

    void signal(int number) {
        if (pid_ > 0) {
            ::kill(pid_, number);
        }
    }

    // The exit status once the program ended (128 + signal when killed), -1 when still running
    // after timeout.
    int wait_exit(std::chrono::milliseconds timeout = std::chrono::seconds(5)) {
        int status = 0;
        if (pid_ <= 0 ||
            !wait_until([&] { return pid_ == ::waitpid(pid_, &status, WNOHANG); }, timeout)) {
            return -1;
        }
        pid_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

private:
    pid_t pid_ = -1;
    int stdin_ = -1;
    int stdout_ = -1;
};

#endif
