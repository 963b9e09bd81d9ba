#include "gripper/gripper_business_logic/gripper_logic_control/gripper_byte_arrival.h"

#include <poll.h>
#include <sys/epoll.h>
#include <unistd.h>

#include "gripper/gripper_common/simple_logger/simple_logger.h"

GripperByteArrival::~GripperByteArrival() {
    stop_watching();
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
        if (epoll_ >= 0) {
            close(epoll_);
        }
        epoll_ = -1;
    }
}

void GripperByteArrival::wait_for_first(int millis) {
    struct pollfd readable = {descriptor_, POLLIN, 0};
    poll(&readable, 1, millis);
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

void GripperByteArrival::stop_watching() {
    if (epoll_ >= 0) {
        close(epoll_);
    }
    epoll_ = -1;
    descriptor_ = -1;
}
