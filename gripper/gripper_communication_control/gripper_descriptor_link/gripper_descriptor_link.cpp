#include "gripper/gripper_communication_control/gripper_descriptor_link/gripper_descriptor_link.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "gripper/gripper_common/miscellaneous_utility/miscellaneous_utility.h"
#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "gripper/gripper_common/system_error/system_error.h"

namespace {

std::string hex(const std::vector<uint8_t>& byte_stream) {
    return MiscellaneousUtility::convert_hex_binary(byte_stream);
}

const char* const TIME_OUT =
    "!waitForLengthAvailable(readLength, getDefaultWaitForLengthAvailableInterval())";
const char* const MISMATCH =
    "!gripper_protocol_->compare_package(set, write_stream, read_byte_stream)";

}  // namespace

GripperDescriptorLink::GripperDescriptorLink(const char* descriptor_name, const char* fault_level,
                                             size_t parameter_count)
    : descriptor_(-1),
      descriptor_name_(descriptor_name),
      fault_level_(fault_level),
      parameter_count_(parameter_count),
      available_failing_(false) {}

int GripperDescriptorLink::available() {
    if (!usable()) {
        return 0;
    }
    int length = 0;
    if (-1 == ioctl(descriptor_, FIONREAD, &length)) {
        const int error = errno;
        if (!available_failing_) {
            GRIPPER_LOG(fault_level_, "-1 == ioctl(%s, FIONREAD, &length)", descriptor_name_);
            keep_failure(GripperLinkFailure::LF_READ, error,
                         std::string("-1 == ioctl(") + descriptor_name_ + ", FIONREAD, &length)");
        }
        available_failing_ = true;
        return 0;
    }
    available_failing_ = false;
    return length;
}

bool GripperDescriptorLink::accept_parameters(const std::vector<std::string>& parameters) {
    if (parameters.size() < 2) {
        GRIPPER_LOG("E", "list_parameters.size() < 2");
        for (const std::string& parameter : parameters) {
            GRIPPER_LOG("E", "%s", parameter.c_str());
        }
        keep_failure(GripperLinkFailure::LF_PARAMETERS, 0, "list_parameters.size() < 2");
        return false;
    }
    if (!accept_operation(parameters[0])) {
        return false;
    }
    if (parameter_count_ != parameters.size()) {
        GRIPPER_LOG("W", "%d != list_parameters.size()", static_cast<int>(parameter_count_));
        keep_failure(GripperLinkFailure::LF_PARAMETERS, 0,
                     std::to_string(parameter_count_) + " != list_parameters.size()");
        return false;
    }
    return true;
}

bool GripperDescriptorLink::accept_operation(const std::string& operation) {
    const MiscellaneousUtility::ConnectOperate type =
        MiscellaneousUtility::string_to_connect_operate(operation);
    if (MiscellaneousUtility::CO_UNDEFINE == type) {
        GRIPPER_LOG("W", "MiscellaneousUtility::ConnectOperate::CO_UNDEFINE == type");
        keep_failure(GripperLinkFailure::LF_PARAMETERS, 0,
                     "MiscellaneousUtility::ConnectOperate::CO_UNDEFINE == type");
        return false;
    }
    if (MiscellaneousUtility::CO_SCAN == type) {
        // A scan names no device of its own, so there is nothing to open.
        GRIPPER_LOG("W", "%d != real_parameters.size()", static_cast<int>(parameter_count_) - 1);
        keep_failure(GripperLinkFailure::LF_PARAMETERS, 0,
                     std::to_string(parameter_count_ - 1) + " != real_parameters.size()");
        return false;
    }
    return true;
}

bool GripperDescriptorLink::set_non_blocking() {
    int flags = fcntl(descriptor_, F_GETFL, 0);
    if (flags >= 0) {
        flags = fcntl(descriptor_, F_SETFL, flags | O_NONBLOCK);
    }
    if (flags < 0) {
        const int error = errno;
        GRIPPER_LOG("W", "flags < 0");
        GRIPPER_LOG_ERRNO("W", error);
        keep_failure(GripperLinkFailure::LF_OPEN, error, "flags < 0");
        return false;
    }
    return true;
}

bool GripperDescriptorLink::already_closed() {
    if (-1 != descriptor_) {
        return false;
    }
    GRIPPER_LOG("W", "-1 == %s", descriptor_name_);
    return true;
}

bool GripperDescriptorLink::already_open() {
    if (-1 == descriptor_) {
        return false;
    }
    GRIPPER_LOG("W", "-1 != %s", descriptor_name_);
    keep_failure(GripperLinkFailure::LF_OPEN, 0, std::string("-1 != ") + descriptor_name_);
    return true;
}

void GripperDescriptorLink::close_descriptor() {
    if (0 != ::close(descriptor_)) {
        const int error = errno;
        GRIPPER_LOG("E", "0 != ::close(%s)", descriptor_name_);
        GRIPPER_LOG_ERRNO("E", error);
    }
    descriptor_ = -1;
}

bool GripperDescriptorLink::usable() {
    if (-1 == descriptor_) {
        GRIPPER_LOG(fault_level_, "-1 == %s", descriptor_name_);
        keep_failure(GripperLinkFailure::LF_OPEN, 0, std::string("-1 == ") + descriptor_name_);
        return false;
    }
    if (occur_exception()) {
        GRIPPER_LOG("E", "occur_exception()");
        return false;
    }
    return true;
}

bool GripperDescriptorLink::ready_for_exchange(int read_length) {
    if (!usable()) {
        return false;
    }
    if (nullptr == gripper_protocol_) {
        GRIPPER_LOG("E", "NULL == gripper_protocol_");
        return false;
    }
    if (read_length <= 0) {
        GRIPPER_LOG("E", "read_length <= 0");
        return false;
    }
    return true;
}

bool GripperDescriptorLink::ready_to_read(int length) {
    if (!usable()) {
        return false;
    }
    if (length < 0) {
        GRIPPER_LOG("E", "length < 0");
        return false;
    }
    if (available() < length) {
        GRIPPER_LOG("W", "available() < length");
        return drop_buffer();
    }
    return true;
}

bool GripperDescriptorLink::check_written(const std::vector<uint8_t>& write_stream, ssize_t size,
                                          int error) {
    if (static_cast<ssize_t>(write_stream.size()) == size) {
        return true;
    }
    report_short_write(write_stream, size, error);
    return false;
}

void GripperDescriptorLink::report_short_write(const std::vector<uint8_t>& write_stream,
                                               ssize_t size, int error) {
    GRIPPER_LOG("E", "size != static_cast<const int>(write_stream.size())");
    GRIPPER_LOG("E", "size = %d", static_cast<int>(size));
    GRIPPER_LOG("E", "write_stream.size() = %d", static_cast<int>(write_stream.size()));
    GRIPPER_LOG("E", "write_stream = %s", hex(write_stream).c_str());
    if (size < 0) {
        GRIPPER_LOG_ERRNO("E", error);
    }
    keep_failure(GripperLinkFailure::LF_WRITE, size < 0 ? error : 0,
                 "size != static_cast<const int>(write_stream.size())");
    set_communication_status(CS_WRITE_EXCEPTION);
}

void GripperDescriptorLink::check_read(std::vector<uint8_t>& bytes, ssize_t size, int error,
                                       const char* failure) {
    if (static_cast<ssize_t>(bytes.size()) == size) {
        return;
    }
    GRIPPER_LOG(fault_level_, "%s", failure);
    keep_failure(GripperLinkFailure::LF_READ, size < 0 ? error : 0, failure);
    bytes.clear();
}

bool GripperDescriptorLink::drop_buffer() {
    if (buffer_drop()) {
        return true;
    }
    GRIPPER_LOG(fault_level_, "!buffer_drop()");
    return false;
}

void GripperDescriptorLink::report_failed_request(const std::vector<uint8_t>& write_stream) {
    GRIPPER_LOG(fault_level_, "!write(write_stream)");
    GRIPPER_LOG(fault_level_, "write_stream = %s", hex(write_stream).c_str());
    set_communication_status(CS_WRITE_EXCEPTION);
}

bool GripperDescriptorLink::await_answer(int length, int millis, std::vector<uint8_t>& answer) {
    const int32_t start = MiscellaneousUtility::current_time_millis();
    for (;;) {
        const int32_t elapsed = static_cast<int32_t>(
            static_cast<uint32_t>(MiscellaneousUtility::current_time_millis()) -
            static_cast<uint32_t>(start));
        if (!wait_for_length_available(length, std::max(millis - elapsed, 0))) {
            return false;
        }
        answer = read(length);
        if (!take_dropped_feedback(answer)) {
            return true;
        }
    }
}

void GripperDescriptorLink::log_wait_state(const std::vector<uint8_t>& write_stream, int count) {
    GRIPPER_LOG("W", "write_stream = %s", hex(write_stream).c_str());
    GRIPPER_LOG("W", "count = %d", count);
    GRIPPER_LOG("W", "available() = %d", available());
    keep_failure(GripperLinkFailure::LF_TIMEOUT, 0, TIME_OUT);
}

bool GripperDescriptorLink::answer_present(const std::vector<uint8_t>& answer) {
    if (!answer.empty()) {
        return true;
    }
    GRIPPER_LOG("W", "0 == read_byte_stream.size()");
    keep_failure(GripperLinkFailure::LF_READ, 0, "0 == read_byte_stream.size()");
    return false;
}

bool GripperDescriptorLink::answer_matches(bool set, const std::vector<uint8_t>& write_stream,
                                           const std::vector<uint8_t>& answer) {
    if (gripper_protocol_->compare_package(set, write_stream, answer)) {
        return true;
    }
    GRIPPER_LOG("W", "%s", MISMATCH);
    keep_failure(GripperLinkFailure::LF_ANSWER, 0, MISMATCH);
    return false;
}
