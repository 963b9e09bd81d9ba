#include "tools/gripper_simulator/control_socket.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace gripper_sim {

ControlSocket::~ControlSocket() {
    if (fd_ >= 0) {
        ::close(fd_);
        ::unlink(path_.c_str());
    }
}

bool ControlSocket::open(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof(address.sun_path)) {
        return false;
    }
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    struct stat status {};
    if (::lstat(path.c_str(), &status) == 0 && S_ISSOCK(status.st_mode)) {
        ::unlink(path.c_str());
    }
    fd_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (fd_ < 0 || ::bind(fd_, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0 ||
        ::listen(fd_, 4) != 0) {
        if (fd_ >= 0) {
            ::close(fd_);
            fd_ = -1;
        }
        return false;
    }
    path_ = path;
    return true;
}

void ControlSocket::serve(int stop_fd, const LineHandler& handle) {
    pollfd fds[] = {{fd_, POLLIN, 0}, {stop_fd, POLLIN, 0}};
    while (true) {
        const int ready = ::poll(fds, 2, -1);
        if (ready < 0 && errno == EINTR) {
            continue;
        }
        if (ready < 0 || fds[1].revents != 0) {
            return;
        }
        if (fds[0].revents == 0) {
            continue;
        }
        const int client = ::accept4(fd_, nullptr, nullptr, SOCK_CLOEXEC);
        if (client >= 0) {
            serve_lines(client, client, stop_fd, handle);
            ::close(client);
        }
    }
}

}  // namespace gripper_sim
