#include "gripper/gripper_communication_control/gripper_link_support/gripper_link_support.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control.h"
#include "gripper/gripper_common/miscellaneous_utility/miscellaneous_utility.h"
#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "gripper/gripper_common/system_error/system_error.h"

namespace {

// With the driver's retry cap set, no pass after this one waits for its answer.
const int LAST_AWAITED_PASS = 3;

std::string hex(const std::vector<uint8_t>& byte_stream) {
    return MiscellaneousUtility::convert_hex_binary(byte_stream);
}

}  // namespace

GripperLinkSupport::GripperLinkSupport(GripperLogicControl* link, const Traits& traits)
    : link_(link), traits_(traits), available_failing_(false) {}

bool GripperLinkSupport::accept_parameters(const std::vector<std::string>& parameters) {
    if (parameters.size() < 2) {
        GRIPPER_LOG("E", "list_parameters.size() < 2");
        link_->keep_failure(GripperLinkFailure::LF_PARAMETERS, 0, "list_parameters.size() < 2");
        for (const std::string& parameter : parameters) {
            GRIPPER_LOG("E", "%s", parameter.c_str());
        }
        return false;
    }
    if (!accept_operation(parameters[0])) {
        return false;
    }
    if (traits_.parameter_count != parameters.size()) {
        GRIPPER_LOG("W", "%d != list_parameters.size()", static_cast<int>(traits_.parameter_count));
        link_->keep_failure(GripperLinkFailure::LF_PARAMETERS, 0,
                            std::to_string(traits_.parameter_count) + " != list_parameters.size()");
        return false;
    }
    return true;
}

bool GripperLinkSupport::accept_operation(const std::string& operation) {
    const MiscellaneousUtility::ConnectOperate type =
        MiscellaneousUtility::string_to_connect_operate(operation);
    if (MiscellaneousUtility::CO_UNDEFINE == type) {
        GRIPPER_LOG("W", "MiscellaneousUtility::ConnectOperate::CO_UNDEFINE == type");
        link_->keep_failure(GripperLinkFailure::LF_PARAMETERS, 0,
                            "MiscellaneousUtility::ConnectOperate::CO_UNDEFINE == type");
        return false;
    }
    if (MiscellaneousUtility::CO_SCAN == type) {
        // A scan names no device of its own, so there is nothing to open.
        GRIPPER_LOG("W", "%d != real_parameters.size()",
                    static_cast<int>(traits_.parameter_count) - 1);
        link_->keep_failure(
            GripperLinkFailure::LF_PARAMETERS, 0,
            std::to_string(traits_.parameter_count - 1) + " != real_parameters.size()");
        return false;
    }
    return true;
}

bool GripperLinkSupport::set_non_blocking(int descriptor) {
    int flags = fcntl(descriptor, F_GETFL, 0);
    if (flags >= 0) {
        flags = fcntl(descriptor, F_SETFL, flags | O_NONBLOCK);
    }
    if (flags < 0) {
        const int error = errno;
        GRIPPER_LOG("W", "flags < 0");
        GRIPPER_LOG_ERRNO("W", error);
        return false;
    }
    return true;
}

bool GripperLinkSupport::already_closed(int descriptor) {
    if (-1 != descriptor) {
        return false;
    }
    GRIPPER_LOG("W", "-1 == %s", traits_.descriptor_name);
    return true;
}

bool GripperLinkSupport::already_open(int descriptor) {
    if (-1 == descriptor) {
        return false;
    }
    GRIPPER_LOG("W", "-1 != %s", traits_.descriptor_name);
    return true;
}

void GripperLinkSupport::close_descriptor(int& descriptor) {
    if (0 != ::close(descriptor)) {
        const int error = errno;
        GRIPPER_LOG("E", "0 != ::close(%s)", traits_.descriptor_name);
        GRIPPER_LOG_ERRNO("E", error);
    }
    descriptor = -1;
}

std::vector<uint8_t> GripperLinkSupport::read(int descriptor, int length) {
    const bool stale = link_->discarding_stale_bytes();
    const std::vector<uint8_t> bytes = receive(descriptor, length);
    link_->report_read(bytes, stale);
    return bytes;
}

std::vector<uint8_t> GripperLinkSupport::receive(int descriptor, int length) {
    if (!usable(descriptor)) {
        return std::vector<uint8_t>();
    }
    if (length < 0) {
        GRIPPER_LOG("E", "length < 0");
        return std::vector<uint8_t>();
    }
    if (link_->available() < length) {
        GRIPPER_LOG("W", "available() < length");
        if (!drop_buffer()) {
            return std::vector<uint8_t>();
        }
    }
    std::vector<uint8_t> byte_stream(length);
    if (length != traits_.receive(descriptor, byte_stream.data(), byte_stream.size())) {
        const int error = errno;
        GRIPPER_LOG(traits_.fault_level, "%s", traits_.receive_failure);
        link_->keep_failure(GripperLinkFailure::LF_READ, error, traits_.receive_failure);
        return std::vector<uint8_t>();
    }
    return byte_stream;
}

bool GripperLinkSupport::write(int descriptor, const std::vector<uint8_t>& write_stream) {
    if (link_->refuse_write(write_stream)) {
        return false;
    }
    const bool written = send(descriptor, write_stream);
    link_->report_written(write_stream, written);
    return written;
}

bool GripperLinkSupport::send(int descriptor, const std::vector<uint8_t>& write_stream) {
    if (!usable(descriptor)) {
        return false;
    }
    const ssize_t size = traits_.send(descriptor, write_stream.data(), write_stream.size());
    if (static_cast<ssize_t>(write_stream.size()) == size) {
        return true;
    }
    const int error = errno;
    report_short_write(write_stream, size, error);
    return false;
}

void GripperLinkSupport::report_short_write(const std::vector<uint8_t>& write_stream, ssize_t size,
                                            int error) {
    GRIPPER_LOG("E", "size != static_cast<const int>(write_stream.size())");
    GRIPPER_LOG("E", "size = %d", static_cast<int>(size));
    GRIPPER_LOG("E", "write_stream.size() = %d", static_cast<int>(write_stream.size()));
    GRIPPER_LOG("E", "write_stream = %s", hex(write_stream).c_str());
    if (size < 0) {
        GRIPPER_LOG_ERRNO("E", error);
    }
    link_->keep_failure(GripperLinkFailure::LF_WRITE, size < 0 ? error : 0,
                        "size != static_cast<const int>(write_stream.size())");
    link_->set_communication_status(GripperCommunication::CS_WRITE_EXCEPTION);
}

int GripperLinkSupport::available(int descriptor) {
    if (!usable(descriptor)) {
        return 0;
    }
    int length = 0;
    if (-1 == ioctl(descriptor, FIONREAD, &length)) {
        const int error = errno;
        if (!available_failing_) {
            GRIPPER_LOG(traits_.fault_level, "-1 == ioctl(%s, FIONREAD, &length)",
                        traits_.descriptor_name);
            link_->keep_failure(
                GripperLinkFailure::LF_READ, error,
                std::string("-1 == ioctl(") + traits_.descriptor_name + ", FIONREAD, &length)");
        }
        available_failing_ = true;
        return 0;
    }
    available_failing_ = false;
    return length;
}

bool GripperLinkSupport::usable(int descriptor) {
    if (-1 == descriptor) {
        GRIPPER_LOG(traits_.fault_level, "-1 == %s", traits_.descriptor_name);
        link_->keep_failure(GripperLinkFailure::LF_OPEN, 0,
                            std::string("-1 == ") + traits_.descriptor_name);
        return false;
    }
    if (link_->occur_exception()) {
        GRIPPER_LOG("E", "occur_exception()");
        return false;
    }
    return true;
}

bool GripperLinkSupport::ready_for_exchange(int descriptor, int read_length) {
    if (!usable(descriptor)) {
        return false;
    }
    if (nullptr == link_->gripper_protocol_) {
        GRIPPER_LOG("E", "NULL == gripper_protocol_");
        return false;
    }
    if (read_length <= 0) {
        GRIPPER_LOG("E", "read_length <= 0");
        return false;
    }
    return true;
}

bool GripperLinkSupport::drop_buffer() {
    if (link_->buffer_drop()) {
        return true;
    }
    GRIPPER_LOG(traits_.fault_level, "!buffer_drop()");
    return false;
}

bool GripperLinkSupport::send_request(const std::vector<uint8_t>& write_stream) {
    if (link_->write(write_stream)) {
        return true;
    }
    GRIPPER_LOG(traits_.fault_level, "!write(write_stream)");
    GRIPPER_LOG(traits_.fault_level, "write_stream = %s", hex(write_stream).c_str());
    link_->set_communication_status(GripperCommunication::CS_WRITE_EXCEPTION);
    return false;
}

bool GripperLinkSupport::await_answer(int length, int millis, std::vector<uint8_t>& answer) {
    const int32_t start = MiscellaneousUtility::current_time_millis();
    for (;;) {
        const int32_t elapsed = static_cast<int32_t>(
            static_cast<uint32_t>(MiscellaneousUtility::current_time_millis()) -
            static_cast<uint32_t>(start));
        if (!link_->wait_for_length_available(length, std::max(millis - elapsed, 0))) {
            return false;
        }
        answer = link_->read(length);
        if (!link_->take_dropped_feedback(answer)) {
            return true;
        }
    }
}

bool GripperLinkSupport::retry_cap_reached(int count) {
    if (!link_->retry_cap_ || count <= LAST_AWAITED_PASS) {
        return false;
    }
    GRIPPER_LOG("W", "count > 3");
    link_->keep_failure(GripperLinkFailure::LF_TIMEOUT, 0, "count > 3");
    return true;
}

void GripperLinkSupport::log_wait_state(const std::vector<uint8_t>& write_stream, int count) {
    GRIPPER_LOG("W", "write_stream = %s", hex(write_stream).c_str());
    GRIPPER_LOG("W", "count = %d", count);
    GRIPPER_LOG("W", "available() = %d", link_->available());
    link_->keep_failure(
        GripperLinkFailure::LF_TIMEOUT, 0,
        "!waitForLengthAvailable(readLength, getDefaultWaitForLengthAvailableInterval())");
}

void GripperLinkSupport::report_exhaustion() {
    // Only the first exhausted exchange reports the read exception; later ones stay quiet.
    if (link_->first_exhaustion_.exchange(false)) {
        link_->set_communication_status(GripperCommunication::CS_READ_EXCEPTION);
    }
}

bool GripperLinkSupport::answer_present(const std::vector<uint8_t>& answer) {
    if (!answer.empty()) {
        return true;
    }
    GRIPPER_LOG("W", "0 == read_byte_stream.size()");
    link_->keep_failure(GripperLinkFailure::LF_READ, 0, "0 == read_byte_stream.size()");
    return false;
}

bool GripperLinkSupport::answer_matches(bool set, const std::vector<uint8_t>& write_stream,
                                        const std::vector<uint8_t>& answer) {
    if (link_->gripper_protocol_->compare_package(set, write_stream, answer)) {
        return true;
    }
    GRIPPER_LOG("W", "!gripper_protocol_->compare_package(set, write_stream, read_byte_stream)");
    link_->keep_failure(GripperLinkFailure::LF_ANSWER, 0,
                        "!gripper_protocol_->compare_package(set, write_stream, read_byte_stream)");
    return false;
}
