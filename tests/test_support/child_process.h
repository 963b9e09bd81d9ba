#ifndef TESTS_TEST_SUPPORT_CHILD_PROCESS_H
#define TESTS_TEST_SUPPORT_CHILD_PROCESS_H

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include "tests/test_support/fd_stream.h"
#include "tests/test_support/wait_until.h"

// A program (looked up in PATH unless given with a path) run with pipes on its stdin and
// stdout; killed and reaped on destruction if still running.
class ChildProcess {
public:
    ChildProcess(const std::string& program, std::vector<std::string> args) {
        int in[2] = {-1, -1}, out[2] = {-1, -1};
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        if (0 == ::pipe2(in, O_CLOEXEC) && 0 == ::pipe2(out, O_CLOEXEC)) {
            posix_spawn_file_actions_adddup2(&actions, in[0], STDIN_FILENO);
            posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
            args.insert(args.begin(), program);
            std::vector<char*> argv;
            for (std::string& arg : args) {
                argv.push_back(&arg[0]);
            }
            argv.push_back(nullptr);
            if (0 !=
                posix_spawnp(&pid_, program.c_str(), &actions, nullptr, argv.data(), environ)) {
                pid_ = -1;
            }
        }
        posix_spawn_file_actions_destroy(&actions);
        ::close(in[0]);
        ::close(out[1]);
        stdin_.reset(in[1]);
        stdout_.reset(out[0]);
    }

    ~ChildProcess() {
        if (pid_ > 0 && -1 == wait_exit(std::chrono::milliseconds(0))) {
            ::kill(pid_, SIGKILL);
            ::waitpid(pid_, nullptr, 0);
        }
    }

    // The next stdout line without its newline; what came of it when the output ends or stays
    // silent for timeout.
    std::string read_line(std::chrono::milliseconds timeout = std::chrono::seconds(5)) {
        std::string line;
        for (Bytes byte = stdout_.read(1, timeout); 1 == byte.size() && '\n' != byte[0];
             byte = stdout_.read(1, timeout)) {
            line += static_cast<char>(byte[0]);
        }
        return line;
    }

    bool write_line(std::string line) {
        line += '\n';
        return stdin_.write(Bytes(line.begin(), line.end()));
    }

    void close_stdin() { stdin_.reset(); }

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
    FdStream stdin_;
    FdStream stdout_;
};

#endif
