#include "tools/gripper_simulator/line_channel.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>

namespace gripper_sim {
namespace {

constexpr size_t kLongestLine = 4096;

// True when `in_fd` has input (or has ended) and no stop was asked for.
bool wait_for_input(int in_fd, int stop_fd) {
    pollfd fds[] = {{in_fd, POLLIN, 0}, {stop_fd, POLLIN, 0}};
    while (::poll(fds, 2, -1) < 0) {
        if (errno != EINTR) {
            return false;
        }
    }
    return fds[1].revents == 0;
}

void write_all(int fd, const std::string& text) {
    size_t done = 0;
    while (done < text.size()) {
        const ssize_t written = ::write(fd, text.data() + done, text.size() - done);
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return;
        }
        done += static_cast<size_t>(written);
    }
}

void answer_lines(std::string& pending, int out_fd, const LineHandler& handle) {
    for (size_t end; (end = pending.find('\n')) != std::string::npos;) {
        std::string line = pending.substr(0, end);
        pending.erase(0, end + 1);
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        if (line.find_first_not_of(" \t") != std::string::npos) {
            write_all(out_fd, handle(line) + "\n");
        }
    }
    if (pending.size() > kLongestLine) {
        pending.clear();
        write_all(out_fd, "error: line too long\n");
    }
}

}  // namespace

void serve_lines(int in_fd, int out_fd, int stop_fd, const LineHandler& handle) {
    std::string pending;
    while (wait_for_input(in_fd, stop_fd)) {
        char chunk[512];
        const ssize_t size = ::read(in_fd, chunk, sizeof(chunk));
        if (size < 0 && errno == EINTR) {
            continue;
        }
        if (size <= 0) {
            return;
        }
        pending.append(chunk, static_cast<size_t>(size));
        answer_lines(pending, out_fd, handle);
    }
}

}  // namespace gripper_sim
