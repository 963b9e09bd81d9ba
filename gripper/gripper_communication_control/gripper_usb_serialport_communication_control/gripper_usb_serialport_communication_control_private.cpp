#include "gripper/gripper_communication_control/gripper_usb_serialport_communication_control/gripper_usb_serialport_communication_control_private.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "gripper/gripper_common/system_error/system_error.h"

GripperUSBSerialportCommunicationControlPrivate::GripperUSBSerialportCommunicationControlPrivate(
    GripperUSBSerialportCommunicationControl* parent)
    : parent_(parent), fd_(parent->descriptor_) {}

GripperUSBSerialportCommunicationControlPrivate::
    ~GripperUSBSerialportCommunicationControlPrivate() {
    if (-1 != fd_) {
        ::close(fd_);
    }
}

bool GripperUSBSerialportCommunicationControlPrivate::open_port(const std::string& path) {
    if (-1 == access(path.c_str(), F_OK)) {
        parent_->keep_failure(GripperLinkFailure::LF_NO_DEVICE, errno,
                              "-1 == access(path.c_str(), F_OK)");
        GRIPPER_LOG("W", "-1 == access(path.c_str(), F_OK)");
        GRIPPER_LOG("W", "path = %s", path.c_str());
        return false;
    }
    // Close-on-exec: a program the pendant starts must not keep the port open.
    fd_ = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (-1 == fd_) {
        const int error = errno;
        GRIPPER_LOG("W", "-1 == private_->fd_");
        GRIPPER_LOG_ERRNO("W", error);
        parent_->keep_failure(GripperLinkFailure::LF_OPEN, error, "-1 == private_->fd_");
        return false;
    }
    return true;
}

bool GripperUSBSerialportCommunicationControlPrivate::raise_dtr() {
    int status = TIOCM_DTR;
    if (-1 != ::ioctl(fd_, TIOCMBIS, &status)) {
        return true;
    }
    const int error = errno;
    GRIPPER_LOG("W", "-1 == ::ioctl(private_->fd_, TIOCMBIS, &status)");
    GRIPPER_LOG_ERRNO("W", error);
    // A pseudo-terminal has no modem lines and works without DTR.
    if (ENOTTY == error) {
        return true;
    }
    parent_->keep_failure(GripperLinkFailure::LF_OPEN, error,
                          "-1 == ::ioctl(private_->fd_, TIOCMBIS, &status)");
    return false;
}

bool GripperUSBSerialportCommunicationControlPrivate::configure_port() {
    struct termios termios;
    if (!read_attributes(termios)) {
        return false;
    }
    make_raw(termios);
    return set_speed(termios) && apply_attributes(termios);
}

bool GripperUSBSerialportCommunicationControlPrivate::read_attributes(struct termios& termios) {
    if (0 != tcgetattr(fd_, &termios)) {
        const int error = errno;
        GRIPPER_LOG("W", "0 != tcgetattr(private_->fd_, &termios)");
        GRIPPER_LOG_ERRNO("W", error);
        parent_->keep_failure(GripperLinkFailure::LF_OPEN, error,
                              "0 != tcgetattr(private_->fd_, &termios)");
        return false;
    }
    return true;
}

void GripperUSBSerialportCommunicationControlPrivate::make_raw(struct termios& termios) {
    // Start from nothing: no echo, no line editing, no translation, no flow control.
    memset(&termios, 0, sizeof(termios));
    // 8 data bits, no parity, one stop bit, receiver on, modem lines ignored.
    termios.c_cflag = CS8 | CREAD | CLOCAL;
    // read() returns at once with whatever is there.
    termios.c_cc[VTIME] = 0;
    termios.c_cc[VMIN] = 0;
}

bool GripperUSBSerialportCommunicationControlPrivate::set_speed(struct termios& termios) {
    if (0 != cfsetispeed(&termios, B115200)) {
        GRIPPER_LOG("W", "0 != cfsetispeed(&termios, B115200)");
        parent_->keep_failure(GripperLinkFailure::LF_OPEN, 0,
                              "0 != cfsetispeed(&termios, B115200)");
        return false;
    }
    if (0 != cfsetospeed(&termios, B115200)) {
        GRIPPER_LOG("W", "0 != cfsetospeed(&termios, B115200)");
        parent_->keep_failure(GripperLinkFailure::LF_OPEN, 0,
                              "0 != cfsetospeed(&termios, B115200)");
        return false;
    }
    return true;
}

bool GripperUSBSerialportCommunicationControlPrivate::apply_attributes(
    const struct termios& termios) {
    if (0 != tcflush(fd_, TCIFLUSH)) {
        const int error = errno;
        GRIPPER_LOG("W", "0 != tcflush(private_->fd_, TCIFLUSH)");
        GRIPPER_LOG_ERRNO("W", error);
        parent_->keep_failure(GripperLinkFailure::LF_OPEN, error,
                              "0 != tcflush(private_->fd_, TCIFLUSH)");
        return false;
    }
    if (0 != tcsetattr(fd_, TCSANOW, &termios)) {
        const int error = errno;
        GRIPPER_LOG("W", "0 != tcsetattr(private_->fd_, TCSANOW, &termios)");
        GRIPPER_LOG_ERRNO("W", error);
        parent_->keep_failure(GripperLinkFailure::LF_OPEN, error,
                              "0 != tcsetattr(private_->fd_, TCSANOW, &termios)");
        return false;
    }
    return true;
}

bool GripperUSBSerialportCommunicationControlPrivate::abandon_open() {
    if (!parent_->close()) {
        GRIPPER_LOG("W", "!close()");
    }
    return false;
}
