#include "bench/link_round_trip/simulator_process.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <chrono>
#include <fstream>

#include "tests/test_support/wait_until.h"

extern char** environ;

namespace {

const char ANNOUNCE_PREFIX[] = "PTY is ";
const std::chrono::seconds ANNOUNCE_DEADLINE(10);

// The pty path announced in `file`, or an empty text while there is none yet.
std::string announced_path(const std::string& file) {
    std::ifstream stream(file);
    std::string line;
    if (!std::getline(stream, line) ||
        0 != line.compare(0, sizeof(ANNOUNCE_PREFIX) - 1, ANNOUNCE_PREFIX)) {
        return std::string();
    }
    return line.substr(sizeof(ANNOUNCE_PREFIX) - 1);
}

}  // namespace

SimulatorProcess::SimulatorProcess(const std::string& program, int count) : count_(count) {
    char folder[] = "/tmp/link_round_trip_bench.XXXXXX";
    if (nullptr == mkdtemp(folder)) {
        return;
    }
    directory_ = folder;
    if (!spawn(arguments(program, count)) || !read_paths(count)) {
        paths_.clear();
    }
}

SimulatorProcess::~SimulatorProcess() {
    if (pid_ > 0) {
        kill(pid_, SIGTERM);
        waitpid(pid_, nullptr, 0);
    }
    if (directory_.empty()) {
        return;
    }
    for (int id = 1; id <= count_; ++id) {
        unlink(announce_file(id).c_str());
    }
    rmdir(directory_.c_str());
}

double SimulatorProcess::cpu_millis() const {
    clockid_t clock;
    struct timespec time;
    if (pid_ <= 0 || 0 != clock_getcpuclockid(pid_, &clock) || 0 != clock_gettime(clock, &time)) {
        return -1.0;
    }
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

// Options come before the gripper flag they belong to.
std::vector<std::string> SimulatorProcess::arguments(const std::string& program, int count) const {
    std::vector<std::string> result = {program};
    for (int id = 1; id <= count; ++id) {
        const std::vector<std::string> gripper = {"--id",    std::to_string(id), "--init-ms",
                                                  "100",     "--announce",       announce_file(id),
                                                  "--modbus"};
        result.insert(result.end(), gripper.begin(), gripper.end());
    }
    return result;
}

std::string SimulatorProcess::announce_file(int id) const {
    return directory_ + "/gripper-" + std::to_string(id);
}

// Starts the program with its standard input and output on /dev/null.
bool SimulatorProcess::spawn(const std::vector<std::string>& arguments) {
    std::vector<char*> argv;
    for (const std::string& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    const int result = posix_spawn(&pid_, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (0 != result) {
        pid_ = -1;
    }
    return 0 == result;
}

bool SimulatorProcess::read_paths(int count) {
    for (int id = 1; id <= count; ++id) {
        std::string path;
        if (!wait_until([&] { return !(path = announced_path(announce_file(id))).empty(); },
                        ANNOUNCE_DEADLINE)) {
            return false;
        }
        paths_.push_back(path);
    }
    return true;
}
