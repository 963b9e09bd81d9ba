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

// With the driver's retry cap set, passes after this one still write but no longer wait.
const int LAST_AWAITED_PASS = 3;
// Pause between a pass that timed out and the next one.
const int RETRY_PAUSE_MILLIS = 100;

std::string hex(const std::vector<uint8_t>& byte_stream) {
    return MiscellaneousUtility::convert_hex_binary(byte_stream);
}

}  // namespace

GripperUSBSerialportCommunicationControlPrivate::GripperUSBSerialportCommunicationControlPrivate(
    GripperUSBSerialportCommunicationControl* parent)
    : parent_(parent), fd_(-1), scan_(false) {}

GripperUSBSerialportCommunicationControlPrivate::
    ~GripperUSBSerialportCommunicationControlPrivate() {
    if (-1 != fd_) {
        ::close(fd_);
    }
}

bool GripperUSBSerialportCommunicationControlPrivate::accept_parameters(
    const std::vector<std::string>& parameters) {
    if (parameters.size() < 2) {
        GRIPPER_LOG("E", "list_parameters.size() < 2");
        for (const std::string& parameter : parameters) {
            GRIPPER_LOG("E", "%s", parameter.c_str());
        }
        return false;
    }
    if (!accept_operation(parameters[0])) {
        return false;
    }
    if (2 != parameters.size()) {
        GRIPPER_LOG("W", "2 != list_parameters.size()");
        return false;
    }
    return true;
}

bool GripperUSBSerialportCommunicationControlPrivate::accept_operation(
    const std::string& operation) {
    const MiscellaneousUtility::ConnectOperate type =
        MiscellaneousUtility::string_to_connect_operate(operation);
    if (MiscellaneousUtility::CO_UNDEFINE == type) {
        GRIPPER_LOG("W", "MiscellaneousUtility::ConnectOperate::CO_UNDEFINE == type");
        return false;
    }
    scan_ = MiscellaneousUtility::CO_SCAN == type;
    if (scan_) {
        // A scan names no port of its own, so there is nothing to open.
        GRIPPER_LOG("W", "1 != real_parameters.size()");
        return false;
    }
    return true;
}

bool GripperUSBSerialportCommunicationControlPrivate::open_port(const std::string& path) {
    if (-1 == access(path.c_str(), F_OK)) {
        GRIPPER_LOG("W", "-1 == access(path.c_str(), F_OK)");
        GRIPPER_LOG("W", "path = %s", path.c_str());
        return false;
    }
    fd_ = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (-1 == fd_) {
        const int error = errno;
        GRIPPER_LOG("W", "-1 == private_->fd_");
        GRIPPER_LOG_ERRNO("W", error);
        return false;
    }
    return true;
}

bool GripperUSBSerialportCommunicationControlPrivate::set_non_blocking() {
    int flags = fcntl(fd_, F_GETFL, 0);
    if (flags >= 0) {
        flags = fcntl(fd_, F_SETFL, flags | O_NONBLOCK);
    }
    if (flags < 0) {
        const int error = errno;
        GRIPPER_LOG("W", "flags < 0");
        GRIPPER_LOG_ERRNO("W", error);
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
    return ENOTTY == error;
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
        return false;
    }
    if (0 != cfsetospeed(&termios, B115200)) {
        GRIPPER_LOG("W", "0 != cfsetospeed(&termios, B115200)");
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
        return false;
    }
    if (0 != tcsetattr(fd_, TCSANOW, &termios)) {
        const int error = errno;
        GRIPPER_LOG("W", "0 != tcsetattr(private_->fd_, TCSANOW, &termios)");
        GRIPPER_LOG_ERRNO("W", error);
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

bool GripperUSBSerialportCommunicationControlPrivate::usable() {
    if (-1 == fd_) {
        GRIPPER_LOG("E", "-1 == private_->fd_");
        return false;
    }
    if (parent_->occur_exception()) {
        GRIPPER_LOG("E", "occur_exception()");
        return false;
    }
    return true;
}

bool GripperUSBSerialportCommunicationControlPrivate::ready_for_exchange(int read_length) {
    if (!usable()) {
        return false;
    }
    if (nullptr == parent_->gripper_protocol_) {
        GRIPPER_LOG("E", "NULL == gripper_protocol_");
        return false;
    }
    if (read_length <= 0) {
        GRIPPER_LOG("E", "read_length <= 0");
        return false;
    }
    return true;
}

GripperUSBSerialportCommunicationControlPrivate::Pass
GripperUSBSerialportCommunicationControlPrivate::run_pass(bool set, int read_length,
                                                          const std::vector<uint8_t>& write_stream,
                                                          int count, std::vector<uint8_t>& answer) {
    if (!drop_stale_bytes() || !send_request(write_stream) || retry_cap_reached(count)) {
        return Pass::STOP;
    }
    const int interval = parent_->get_default_wait_for_length_available_interval();
    if (!parent_->wait_for_length_available(read_length, interval)) {
        return after_time_out(read_length, write_stream, count);
    }
    answer = parent_->read(read_length);
    return check_answer(set, write_stream, answer, count);
}

bool GripperUSBSerialportCommunicationControlPrivate::drop_stale_bytes() {
    const int length = parent_->available();
    if (length <= 0) {
        return true;
    }
    GRIPPER_LOG("W", "length = %d", length);
    GRIPPER_LOG("W", "length > 0");
    if (!parent_->buffer_drop()) {
        GRIPPER_LOG("E", "!buffer_drop()");
        return false;
    }
    return true;
}

bool GripperUSBSerialportCommunicationControlPrivate::send_request(
    const std::vector<uint8_t>& write_stream) {
    GRIPPER_LOG("D", "write_stream = %s", hex(write_stream).c_str());
    if (parent_->write(write_stream)) {
        return true;
    }
    GRIPPER_LOG("E", "!write(write_stream)");
    GRIPPER_LOG("E", "write_stream = %s", hex(write_stream).c_str());
    parent_->set_communication_status(GripperCommunication::CS_WRITE_EXCEPTION);
    return false;
}

bool GripperUSBSerialportCommunicationControlPrivate::retry_cap_reached(int count) {
    if (!parent_->retry_cap_ || count <= LAST_AWAITED_PASS) {
        return false;
    }
    GRIPPER_LOG("W", "count > 3");
    parent_->set_communication_status(GripperCommunication::CS_READ_EXCEPTION);
    return true;
}

GripperUSBSerialportCommunicationControlPrivate::Pass
GripperUSBSerialportCommunicationControlPrivate::check_answer(
    bool set, const std::vector<uint8_t>& write_stream, const std::vector<uint8_t>& answer,
    int count) {
    GRIPPER_LOG("D", "read_byte_stream = %s", hex(answer).c_str());
    if (answer.empty()) {
        GRIPPER_LOG("W", "0 == read_byte_stream.size()");
        return Pass::AGAIN;
    }
    if (parent_->gripper_protocol_->compare_package(set, write_stream, answer)) {
        return Pass::ANSWERED;
    }
    GRIPPER_LOG("W", "!gripper_protocol_->compare_package(set, write_stream, read_byte_stream)");
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
    GRIPPER_LOG("W", "write_stream = %s", hex(write_stream).c_str());
    GRIPPER_LOG("W", "count = %d", count);
    GRIPPER_LOG("W", "available() = %d", parent_->available());
    GRIPPER_LOG("W", "get_wait_retry_max_count() = %d", max_count);
    if (count < max_count - 1) {
        std::this_thread::sleep_for(std::chrono::milliseconds(RETRY_PAUSE_MILLIS));
        return Pass::AGAIN;
    }
    // Only the first exhausted exchange reports the read exception; later ones stay quiet.
    if (parent_->first_exhaustion_.exchange(false)) {
        parent_->set_communication_status(GripperCommunication::CS_READ_EXCEPTION);
    }
    return Pass::STOP;
}
