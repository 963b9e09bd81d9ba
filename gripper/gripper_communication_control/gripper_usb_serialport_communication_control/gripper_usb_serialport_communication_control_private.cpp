#include "gripper/gripper_communication_control/gripper_usb_serialport_communication_control/gripper_usb_serialport_communication_control_private.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>

#include "gripper/gripper_common/miscellaneous_utility/miscellaneous_utility.h"
#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "gripper/gripper_common/system_error/system_error.h"

namespace {

// Pause between a pass that timed out and the next one.
const int RETRY_PAUSE_MILLIS = 100;

std::string hex(const std::vector<uint8_t>& byte_stream) {
    return MiscellaneousUtility::convert_hex_binary(byte_stream);
}

const GripperLinkSupport::Traits SERIAL_LINK = {
    "private_->fd_",
    "E",
    2,
    &::write,
    &::read,
    "length != ::read(private_->fd_, byte_stream.data(), byte_stream.size())",
};

}  // namespace

GripperUSBSerialportCommunicationControlPrivate::GripperUSBSerialportCommunicationControlPrivate(
    GripperUSBSerialportCommunicationControl* parent)
    : parent_(parent), fd_(-1), support_(parent, SERIAL_LINK) {}

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

GripperUSBSerialportCommunicationControlPrivate::Pass
GripperUSBSerialportCommunicationControlPrivate::run_pass(bool set, int read_length,
                                                          const std::vector<uint8_t>& write_stream,
                                                          int count, std::vector<uint8_t>& answer) {
    if (!drop_stale_bytes() || !send_request(write_stream) || retry_cap_reached(count)) {
        return Pass::STOP;
    }
    const int interval = parent_->get_default_wait_for_length_available_interval();
    if (!support_.await_answer(read_length, interval, answer)) {
        return after_time_out(read_length, write_stream, count);
    }
    return check_answer(set, write_stream, answer, count);
}

bool GripperUSBSerialportCommunicationControlPrivate::drop_stale_bytes() {
    const int length = parent_->available();
    if (length <= 0) {
        return true;
    }
    GRIPPER_LOG("W", "length = %d", length);
    GRIPPER_LOG("W", "length > 0");
    return support_.drop_buffer();
}

bool GripperUSBSerialportCommunicationControlPrivate::send_request(
    const std::vector<uint8_t>& write_stream) {
    GRIPPER_LOG("D", "write_stream = %s", hex(write_stream).c_str());
    return support_.send_request(write_stream);
}

bool GripperUSBSerialportCommunicationControlPrivate::retry_cap_reached(int count) {
    if (!support_.retry_cap_reached(count)) {
        return false;
    }
    // On the serial link the capped pass also reports the read exception.
    parent_->set_communication_status(GripperCommunication::CS_READ_EXCEPTION);
    return true;
}

GripperUSBSerialportCommunicationControlPrivate::Pass
GripperUSBSerialportCommunicationControlPrivate::check_answer(
    bool set, const std::vector<uint8_t>& write_stream, const std::vector<uint8_t>& answer,
    int count) {
    GRIPPER_LOG("D", "read_byte_stream = %s", hex(answer).c_str());
    if (!support_.answer_present(answer)) {
        return Pass::AGAIN;
    }
    if (support_.answer_matches(set, write_stream, answer)) {
        return Pass::ANSWERED;
    }
    GRIPPER_LOG("W", "set = %d", set);
    GRIPPER_LOG("W", "count = %d", count);
    GRIPPER_LOG("W", "get_wait_retry_max_count() = %d", parent_->get_wait_retry_max_count());
    return Pass::AGAIN;
}

GripperUSBSerialportCommunicationControlPrivate::Pass
GripperUSBSerialportCommunicationControlPrivate::after_time_out(
    int read_length, const std::vector<uint8_t>& write_stream, int count) {
    const int max_count = parent_->get_wait_retry_max_count();
    GRIPPER_LOG("W",
                "!waitForLengthAvailable(readLength, getDefaultWaitForLengthAvailableInterval())");
    GRIPPER_LOG("W", "read_length = %d", read_length);
    support_.log_wait_state(write_stream, count);
    GRIPPER_LOG("W", "get_wait_retry_max_count() = %d", max_count);
    if (count < max_count - 1) {
        std::this_thread::sleep_for(std::chrono::milliseconds(RETRY_PAUSE_MILLIS));
        return Pass::AGAIN;
    }
    support_.report_exhaustion();
    return Pass::STOP;
}
