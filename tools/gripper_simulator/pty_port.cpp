#include "tools/gripper_simulator/pty_port.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <cstdlib>

namespace gripper_sim {

PtyPort::~PtyPort() {
    close();
}

bool PtyPort::open() {
    close();
    Pair pair = open_pair();
    if (pair.master >= 0 && pair.path == last_path_) {
        // The kernel hands out the lowest free number; hold it while taking the next one.
        Pair next = open_pair();
        close_pair(pair);
        pair = next;
    }
    if (pair.master < 0) {
        return false;
    }
    pair_ = pair;
    last_path_ = pair_.path;
    return true;
}

void PtyPort::close() {
    close_pair(pair_);
}

void PtyPort::add_poll_fds(std::vector<pollfd>& fds) const {
    if (pair_.master >= 0) {
        fds.push_back(pollfd{pair_.master, POLLIN, 0});
    }
}

Bytes PtyPort::serve(const pollfd* fds, size_t count) {
    if (count == 0 || fds[0].fd != pair_.master || fds[0].revents == 0) {
        return {};
    }
    uint8_t buffer[512];
    const ssize_t size = ::read(pair_.master, buffer, sizeof(buffer));
    return size > 0 ? Bytes(buffer, buffer + size) : Bytes{};
}

void PtyPort::send(const Bytes& frame) {
    if (pair_.master >= 0 && !frame.empty()) {
        // A full input queue on the slave side loses the frame, as a line without reader would.
        const ssize_t written = ::write(pair_.master, frame.data(), frame.size());
        (void)written;
    }
}

PtyPort::Pair PtyPort::open_pair() {
    Pair pair;
    pair.master = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    char name[128] = {};
    if (pair.master < 0 || ::grantpt(pair.master) != 0 || ::unlockpt(pair.master) != 0 ||
        ::ptsname_r(pair.master, name, sizeof(name)) != 0) {
        close_pair(pair);
        return pair;
    }
    pair.path = name;
    pair.slave = ::open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (pair.slave < 0 || !make_raw(pair.slave) ||
        ::fcntl(pair.master, F_SETFL, ::fcntl(pair.master, F_GETFL) | O_NONBLOCK) != 0) {
        close_pair(pair);
    }
    return pair;
}

bool PtyPort::make_raw(int fd) {
    termios settings{};
    if (::tcgetattr(fd, &settings) != 0) {
        return false;
    }
    ::cfmakeraw(&settings);
    settings.c_cflag &= ~(CSTOPB | PARENB | CSIZE);
    settings.c_cflag |= CS8 | CLOCAL | CREAD;
    settings.c_cc[VMIN] = 1;
    settings.c_cc[VTIME] = 0;
    return ::cfsetispeed(&settings, B115200) == 0 && ::cfsetospeed(&settings, B115200) == 0 &&
           ::tcsetattr(fd, TCSANOW, &settings) == 0;
}

void PtyPort::close_pair(Pair& pair) {
    if (pair.slave >= 0) {
        ::close(pair.slave);
    }
    if (pair.master >= 0) {
        ::close(pair.master);
    }
    pair = Pair{};
}

}  // namespace gripper_sim
