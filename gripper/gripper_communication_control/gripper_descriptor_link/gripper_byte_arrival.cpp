#include "gripper/gripper_communication_control/gripper_descriptor_link/gripper_byte_arrival.h"

#include <poll.h>
#include <sys/epoll.h>
#include <sys/timerfd.h>
#include <time.h>
#include <unistd.h>

#include "gripper/gripper_common/simple_logger/simple_logger.h"

namespace {

const long NANOS_PER_SECOND = 1000000000L;
const long NANOS_PER_MILLI = 1000000L;
// A timer sleep that does not end by itself within this much longer is given up.
const int TIMER_MARGIN_MILLIS = 2;

void close_descriptor(int& descriptor) {
    if (descriptor >= 0) {
        close(descriptor);
    }
    descriptor = -1;
}

}  // namespace

GripperByteArrival::~GripperByteArrival() {
    stop_watching();
}

bool GripperByteArrival::hung_up() const {
    if (descriptor_ < 0) {
        return false;
    }
    struct pollfd state = {descriptor_, POLLRDHUP, 0};
    return 1 == poll(&state, 1, 0) &&
           0 != (state.revents & (POLLHUP | POLLERR | POLLNVAL | POLLRDHUP));
}

void GripperByteArrival::watch(int descriptor) {
    stop_watching();
    if (descriptor < 0) {
        return;
    }
    descriptor_ = descriptor;
    epoll_ = epoll_create1(EPOLL_CLOEXEC);
    struct epoll_event arrival = {};
    arrival.events = EPOLLIN | EPOLLET;
    arrival.data.fd = descriptor;
    if (epoll_ < 0 || 0 != epoll_ctl(epoll_, EPOLL_CTL_ADD, descriptor, &arrival)) {
        // Without it, waits for more bytes sleep for their time on the wire only.
        GRIPPER_LOG("W", "0 != epoll_ctl(epoll_, EPOLL_CTL_ADD, descriptor, &arrival)");
        close_descriptor(epoll_);
    }
    timer_ = timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC);
}

bool GripperByteArrival::wait_for_first(int millis) {
    struct pollfd readable = {descriptor_, POLLIN, 0};
    return poll(&readable, 1, millis) > 0;
}

void GripperByteArrival::forget_arrivals() {
    struct epoll_event arrival;
    if (epoll_ >= 0) {
        epoll_wait(epoll_, &arrival, 1, 0);
    }
}

bool GripperByteArrival::wait_for_more(int millis) {
    struct epoll_event arrival;
    if (epoll_ < 0) {
        return false;
    }
    epoll_wait(epoll_, &arrival, 1, millis);
    return true;
}

void GripperByteArrival::sleep(long nanos) {
    const struct timespec duration = {nanos / NANOS_PER_SECOND, nanos % NANOS_PER_SECOND};
    const struct itimerspec expiry = {{0, 0}, duration};
    if (nanos <= 0 || timer_ < 0 || 0 != timerfd_settime(timer_, 0, &expiry, nullptr)) {
        nanosleep(&duration, nullptr);
        return;
    }
    // Arming the timer again clears its last expiry: nothing needs to be read from it.
    struct pollfd expired = {timer_, POLLIN, 0};
    poll(&expired, 1, static_cast<int>(nanos / NANOS_PER_MILLI) + TIMER_MARGIN_MILLIS);
}

void GripperByteArrival::stop_watching() {
    close_descriptor(epoll_);
    close_descriptor(timer_);
    descriptor_ = -1;
}
