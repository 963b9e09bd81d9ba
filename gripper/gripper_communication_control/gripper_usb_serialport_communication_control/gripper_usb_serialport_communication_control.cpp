#include "gripper/gripper_communication_control/gripper_usb_serialport_communication_control/gripper_usb_serialport_communication_control.h"

#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <thread>

#include "gripper/gripper_common/miscellaneous_utility/miscellaneous_utility.h"
#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "gripper/gripper_communication_control/gripper_usb_serialport_communication_control/gripper_usb_serialport_communication_control_private.h"

namespace {

// Pause between a pass that timed out and the next one.
const int RETRY_PAUSE_MILLIS = 100;

std::string hex(const std::vector<uint8_t>& byte_stream) {
    return MiscellaneousUtility::convert_hex_binary(byte_stream);
}

}  // namespace

// Write 5, wait 5, interval 100 ms.
const GripperScanProperty GripperUSBSerialportCommunicationControl::scan_property_(5, 5, 100);

GripperUSBSerialportCommunicationControl::GripperUSBSerialportCommunicationControl()
    : GripperDescriptorLink("private_->fd_", "E", 2),
      private_(new GripperUSBSerialportCommunicationControlPrivate(this)) {
    set_gripper_communication(this);
}

GripperUSBSerialportCommunicationControl::~GripperUSBSerialportCommunicationControl() {
    finish_loop_update();
}

GripperCommunication::CommunicationConnection
GripperUSBSerialportCommunicationControl::get_communication_connection() {
    return CC_USB_SERIALPORT;
}

bool GripperUSBSerialportCommunicationControl::open(const std::vector<std::string>& parameters) {
    if (already_open()) {
        return false;
    }
    if (!accept_parameters(parameters) || !private_->open_port(parameters[1]) ||
        !set_non_blocking() || !private_->raise_dtr() || !private_->configure_port()) {
        return private_->abandon_open();
    }
    set_readable_descriptor(descriptor_);
    return true;
}

bool GripperUSBSerialportCommunicationControl::handshake_check() {
    return true;
}

bool GripperUSBSerialportCommunicationControl::is_alive() {
    return true;
}

bool GripperUSBSerialportCommunicationControl::close() {
    if (!already_closed()) {
        set_readable_descriptor(-1);
        close_descriptor();
    }
    return true;
}

// Up to five passes; each drops stale bytes, writes the request, waits for the answer's bytes,
// reads them and checks them.
std::vector<uint8_t> GripperUSBSerialportCommunicationControl::write_read(
    bool set, int read_length, const std::vector<uint8_t>& write_stream) {
    if (!ready_for_exchange(read_length)) {
        return std::vector<uint8_t>();
    }
    const int interval = get_default_wait_for_length_available_interval();
    std::vector<uint8_t> answer;
    for (int count = 0; count < get_wait_retry_max_count(); ++count) {
        if (!drop_stale_bytes() || !send_request(write_stream) || pass_capped(count)) {
            break;
        }
        if (!await_answer(read_length, interval, answer)) {
            if (!retry_after_time_out(read_length, write_stream, count)) {
                break;
            }
        } else if (answer_accepted(set, write_stream, answer, count)) {
            return answer;
        }
    }
    return std::vector<uint8_t>();
}

bool GripperUSBSerialportCommunicationControl::write(const std::vector<uint8_t>& write_stream) {
    if (refuse_write(write_stream)) {
        return false;
    }
    bool written = false;
    if (usable()) {
        const ssize_t size = ::write(descriptor_, write_stream.data(), write_stream.size());
        written = check_written(write_stream, size, errno);
    }
    report_written(write_stream, written);
    return written;
}

std::vector<uint8_t> GripperUSBSerialportCommunicationControl::read(int length) {
    const bool stale = discarding_stale_bytes();
    std::vector<uint8_t> bytes;
    if (ready_to_read(length)) {
        bytes.resize(length);
        const ssize_t size = ::read(descriptor_, bytes.data(), bytes.size());
        check_read(bytes, size, errno,
                   "length != ::read(private_->fd_, byte_stream.data(), byte_stream.size())");
    }
    report_read(bytes, stale);
    return bytes;
}

int GripperUSBSerialportCommunicationControl::get_write_retry_max_count() {
    return scan_property_.write_retry_max_count_;
}

int GripperUSBSerialportCommunicationControl::get_wait_retry_max_count() {
    return scan_property_.wait_retry_max_count_;
}

int GripperUSBSerialportCommunicationControl::get_alive_retry_max_count() {
    return scan_property_.wait_retry_max_count_;
}

int GripperUSBSerialportCommunicationControl::get_default_wait_for_length_available_interval() {
    return scan_property_.wait_for_length_available_interval_;
}

bool GripperUSBSerialportCommunicationControl::drop_stale_bytes() {
    const int length = available();
    if (length <= 0) {
        return true;
    }
    GRIPPER_LOG("W", "length = %d", length);
    GRIPPER_LOG("W", "length > 0");
    return drop_buffer();
}

bool GripperUSBSerialportCommunicationControl::send_request(
    const std::vector<uint8_t>& write_stream) {
    GRIPPER_LOG("D", "write_stream = %s", hex(write_stream).c_str());
    if (write(write_stream)) {
        return true;
    }
    report_failed_request(write_stream);
    return false;
}

bool GripperUSBSerialportCommunicationControl::pass_capped(int count) {
    if (!retry_cap_reached(count)) {
        return false;
    }
    // On the serial link the capped pass also reports the read exception.
    set_communication_status(CS_READ_EXCEPTION);
    return true;
}

bool GripperUSBSerialportCommunicationControl::retry_after_time_out(
    int read_length, const std::vector<uint8_t>& write_stream, int count) {
    const int max_count = get_wait_retry_max_count();
    GRIPPER_LOG("W",
                "!waitForLengthAvailable(readLength, getDefaultWaitForLengthAvailableInterval())");
    GRIPPER_LOG("W", "read_length = %d", read_length);
    log_wait_state(write_stream, count);
    GRIPPER_LOG("W", "get_wait_retry_max_count() = %d", max_count);
    if (count < max_count - 1) {
        std::this_thread::sleep_for(std::chrono::milliseconds(RETRY_PAUSE_MILLIS));
        return true;
    }
    report_exhaustion();
    return false;
}

bool GripperUSBSerialportCommunicationControl::answer_accepted(
    bool set, const std::vector<uint8_t>& write_stream, const std::vector<uint8_t>& answer,
    int count) {
    GRIPPER_LOG("D", "read_byte_stream = %s", hex(answer).c_str());
    if (!answer_present(answer)) {
        return false;
    }
    if (answer_matches(set, write_stream, answer)) {
        return true;
    }
    GRIPPER_LOG("W", "set = %d", set);
    GRIPPER_LOG("W", "count = %d", count);
    GRIPPER_LOG("W", "get_wait_retry_max_count() = %d", get_wait_retry_max_count());
    return false;
}
