#ifndef GRIPPER_DESCRIPTOR_LINK_H
#define GRIPPER_DESCRIPTOR_LINK_H

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control.h"

// A link over one file descriptor, the serial port's or the socket's: the descriptor and the
// steps both links take on it. Each link writes and reads the descriptor itself, in its own
// write_read, and calls these steps around its transfers; each step logs its failure and keeps
// it as the link's last failure.
class GripperDescriptorLink : public GripperLogicControl {
public:
    int available() override;

protected:
    // descriptor_name: the descriptor as the log texts name it, for example "private_->fd_";
    // fault_level: the level of the link's failure logs; parameter_count: the number of open
    // parameters, the connect operation name included.
    GripperDescriptorLink(const char* descriptor_name, const char* fault_level,
                          size_t parameter_count);

    // Open and close steps.
    bool accept_parameters(const std::vector<std::string>& parameters);
    bool set_non_blocking();
    bool already_closed();
    // An open link is not opened again: its descriptor would leak.
    bool already_open();
    void close_descriptor();

    // True while the descriptor is open and the link is not in an exception state.
    bool usable();
    // Also refuses an exchange that could not be checked: no protocol or no answer length.
    bool ready_for_exchange(int read_length);
    // Before a read of length bytes: stale bytes are dropped when fewer are waiting.
    bool ready_to_read(int length);
    // After the descriptor's write returned size (with errno error): true when all was written.
    // A short or failed write sets CS_WRITE_EXCEPTION.
    bool check_written(const std::vector<uint8_t>& write_stream, ssize_t size, int error);
    // After the descriptor's read into bytes returned size: empties bytes when it fell short.
    void check_read(std::vector<uint8_t>& bytes, ssize_t size, int error, const char* failure);

    // Steps of an exchange.
    bool drop_buffer();
    // After the link's write failed: logs it and sets CS_WRITE_EXCEPTION.
    void report_failed_request(const std::vector<uint8_t>& write_stream);
    // Waits up to millis for an answer of length bytes and reads it with the link's read. A
    // dropped frame the gripper sent by itself, read in place of the answer, goes to the driver,
    // and the wait goes on for the answer within the same time. False when the time ran out.
    bool await_answer(int length, int millis, std::vector<uint8_t>& answer);
    // After a wait timed out: the request, the pass and the bytes waiting.
    void log_wait_state(const std::vector<uint8_t>& write_stream, int count);
    bool answer_present(const std::vector<uint8_t>& answer);
    bool answer_matches(bool set, const std::vector<uint8_t>& write_stream,
                        const std::vector<uint8_t>& answer);

    // The port's or the socket's descriptor; -1 while closed.
    int descriptor_;

private:
    bool accept_operation(const std::string& operation);
    void report_short_write(const std::vector<uint8_t>& write_stream, ssize_t size, int error);

    const char* descriptor_name_;
    const char* fault_level_;
    size_t parameter_count_;
    // Set while looking for waiting bytes fails, so that a vanished device, which fails every
    // look of a wait the same way, is reported once instead of hundreds of times.
    bool available_failing_;
};

#endif
