#include "bench/link_round_trip/simulator_process.h"

#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "tests/test_support/wait_until.h"

extern char** environ;

namespace {

const char ANNOUNCE_PREFIX[] = "PTY is ";
const std::chrono::seconds ANNOUNCE_DEADLINE(10);
const char FRAMES_FIELD[] = " rx=";
// Above ordinary threads, below the kernel's own real-time work.
const int SIMULATOR_PRIORITY = 10;

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

SimulatorProcess::SimulatorProcess(const std::string& program, int count, const SimulatedLine& line)
    : count_(count) {
    char folder[] = "/tmp/link_round_trip_bench.XXXXXX";
    if (nullptr == mkdtemp(folder)) {
        return;
    }
    directory_ = folder;
    const std::vector<std::string> argv = arguments(program, count, line);
    realtime_ = spawn(argv, true);
    if ((!realtime_ && !spawn(argv, false)) || !read_paths(count)) {
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
    unlink(control_socket().c_str());
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

long SimulatorProcess::frames_received(int id) const {
    const std::string state = ask("state " + std::to_string(id));
    const size_t field = state.find(FRAMES_FIELD);
    if (std::string::npos == field) {
        return -1;
    }
    return std::strtol(state.c_str() + field + sizeof(FRAMES_FIELD) - 1, nullptr, 10);
}

// Options come before the gripper flag they belong to.
std::vector<std::string> SimulatorProcess::arguments(const std::string& program, int count,
                                                     const SimulatedLine& line) const {
    std::vector<std::string> result = {program, "--control", control_socket()};
    for (int id = 1; id <= count; ++id) {
        const std::vector<std::string> gripper = {"--id",        std::to_string(id),
                                                  "--init-ms",   "100",
                                                  "--stroke-ms", std::to_string(line.stroke_ms),
                                                  "--baud",      std::to_string(line.baud),
                                                  "--window-us", std::to_string(line.window_us),
                                                  "--announce",  announce_file(id),
                                                  "--modbus"};
        result.insert(result.end(), gripper.begin(), gripper.end());
    }
    return result;
}

std::string SimulatorProcess::announce_file(int id) const {
    return directory_ + "/gripper-" + std::to_string(id);
}

std::string SimulatorProcess::control_socket() const {
    return directory_ + "/control";
}

// Starts the program with its standard input and output on /dev/null; real-time from its first
// instruction on, so that every thread it starts inherits the priority.
bool SimulatorProcess::spawn(const std::vector<std::string>& arguments, bool realtime) {
    std::vector<char*> argv;
    for (const std::string& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    if (realtime) {
        struct sched_param priority = {};
        priority.sched_priority = SIMULATOR_PRIORITY;
        posix_spawnattr_setschedpolicy(&attributes, SCHED_FIFO);
        posix_spawnattr_setschedparam(&attributes, &priority);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSCHEDULER);
    }
    const int result = posix_spawn(&pid_, argv[0], &actions, &attributes, argv.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (0 != result) {
        pid_ = -1;
    }
    return 0 == result;
}

// One command on the control socket, one reply line; empty when the process cannot be asked.
std::string SimulatorProcess::ask(const std::string& command) const {
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    struct sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, control_socket().c_str(), sizeof(address.sun_path) - 1);
    std::string reply;
    const std::string line = command + "\n";
    if (fd >= 0 &&
        0 == connect(fd, reinterpret_cast<struct sockaddr*>(&address), sizeof(address)) &&
        static_cast<ssize_t>(line.size()) == write(fd, line.data(), line.size())) {
        char c = 0;
        while (1 == read(fd, &c, 1) && '\n' != c) {
            reply += c;
        }
    }
    if (fd >= 0) {
        close(fd);
    }
    return reply;
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
