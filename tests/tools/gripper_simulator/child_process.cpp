#include "tests/tools/gripper_simulator/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace sim_test {

using Clock = std::chrono::steady_clock;

ChildProcess::ChildProcess(const std::string& program, const std::vector<std::string>& args) {
    int in[2];
    int out[2];
    if (::pipe2(in, O_CLOEXEC) != 0 || ::pipe2(out, O_CLOEXEC) != 0) {
        return;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    std::vector<char*> argv{const_cast<char*>(program.c_str())};
    for (const auto& arg : args) {
        argv.push_back(const_cast<char*>(arg.c_str()));
    }
    argv.push_back(nullptr);
    if (posix_spawn(&pid_, program.c_str(), &actions, nullptr, argv.data(), environ) != 0) {
        pid_ = -1;
    }
    posix_spawn_file_actions_destroy(&actions);
    ::close(in[0]);
    ::close(out[1]);
    stdin_ = in[1];
    stdout_ = out[0];
}

ChildProcess::~ChildProcess() {
    close_stdin();
    if (pid_ > 0 && wait_exit(milliseconds(0)) == -1) {
        ::kill(pid_, SIGKILL);
        ::waitpid(pid_, nullptr, 0);
    }
    if (stdout_ >= 0) {
        ::close(stdout_);
    }
}

std::string ChildProcess::read_line(milliseconds timeout) {
    const auto deadline = Clock::now() + timeout;
    size_t end;
    while ((end = buffer_.find('\n')) == std::string::npos) {
        const auto left = std::chrono::duration_cast<milliseconds>(deadline - Clock::now());
        if (output_ended_ || left.count() <= 0 || !fill(left)) {
            return std::string();
        }
    }
    const std::string line = buffer_.substr(0, end);
    buffer_.erase(0, end + 1);
    return line;
}

std::string ChildProcess::read_all(milliseconds timeout) {
    const auto deadline = Clock::now() + timeout;
    while (!output_ended_ && Clock::now() < deadline) {
        fill(std::chrono::duration_cast<milliseconds>(deadline - Clock::now()));
    }
    std::string all;
    all.swap(buffer_);
    return all;
}

bool ChildProcess::write_line(const std::string& line) {
    const std::string text = line + "\n";
    return stdin_ >= 0 &&
           ::write(stdin_, text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

void ChildProcess::close_stdin() {
    if (stdin_ >= 0) {
        ::close(stdin_);
        stdin_ = -1;
    }
}

void ChildProcess::signal(int number) {
    if (pid_ > 0) {
        ::kill(pid_, number);
    }
}

int ChildProcess::wait_exit(milliseconds timeout) {
    int status = 0;
    pid_t ended = 0;
    wait_until([&] { return (ended = ::waitpid(pid_, &status, WNOHANG)) != 0; }, timeout);
    if (ended != pid_) {
        return -1;
    }
    pid_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

bool ChildProcess::fill(milliseconds timeout) {
    pollfd fd{stdout_, POLLIN, 0};
    if (::poll(&fd, 1, static_cast<int>(timeout.count())) <= 0) {
        return false;
    }
    char chunk[512];
    const ssize_t size = ::read(stdout_, chunk, sizeof(chunk));
    if (size <= 0) {
        output_ended_ = true;
        return false;
    }
    buffer_.append(chunk, static_cast<size_t>(size));
    return true;
}

}  // namespace sim_test
