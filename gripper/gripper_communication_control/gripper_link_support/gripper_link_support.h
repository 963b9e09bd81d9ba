#ifndef GRIPPER_LINK_SUPPORT_H
#define GRIPPER_LINK_SUPPORT_H

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

class GripperLogicControl;

// The steps the serial and the TCP link share, over the descriptor the link keeps: checking the
// open parameters, transferring bytes with their failure reports, and the pieces both retry
// schemes of an exchange are made of. Each link passes in what tells it apart.
class GripperLinkSupport {
public:
    // What tells one link from another in the shared steps.
    struct Traits {
        // The descriptor as the log texts name it, for example "private_->fd_".
        const char* descriptor_name;
        // The level of the link's failure logs.
        const char* fault_level;
        // The number of open parameters, the connect operation name included.
        size_t parameter_count;
        ssize_t (*send)(int descriptor, const void* data, size_t size);
        ssize_t (*receive)(int descriptor, void* data, size_t size);
        // Logged when receive returns other than the length asked for.
        const char* receive_failure;
    };

    GripperLinkSupport(GripperLogicControl* link, const Traits& traits);

    // Open and close steps; each logs its failure.
    bool accept_parameters(const std::vector<std::string>& parameters);
    static bool set_non_blocking(int descriptor);
    bool already_closed(int descriptor);
    // An open link is not opened again: its descriptor would leak.
    bool already_open(int descriptor);
    void close_descriptor(int& descriptor);

    // The byte transfers behind the link's read, write and available.
    std::vector<uint8_t> read(int descriptor, int length);
    bool write(int descriptor, const std::vector<uint8_t>& write_stream);
    int available(int descriptor);

    // True while the descriptor is open and the link is not in an exception state.
    bool usable(int descriptor);
    // Also refuses an exchange that could not be checked: no protocol or no answer length.
    bool ready_for_exchange(int descriptor, int read_length);

    // Pieces of an exchange; each logs its failure.
    bool drop_buffer();
    // A failed write also sets CS_WRITE_EXCEPTION.
    bool send_request(const std::vector<uint8_t>& write_stream);
    // Waits up to millis for an answer of length bytes and reads it with the link's read. A
    // dropped frame the gripper sent by itself, read in place of the answer, goes to the driver,
    // and the wait goes on for the answer within the same time. False when the time ran out.
    bool await_answer(int length, int millis, std::vector<uint8_t>& answer);
    // True when the driver's retry cap forbids waiting on this pass.
    bool retry_cap_reached(int count);
    // After a wait timed out: the request, the pass and the bytes waiting.
    void log_wait_state(const std::vector<uint8_t>& write_stream, int count);
    // Sets CS_READ_EXCEPTION for the first exchange that runs out of passes only.
    void report_exhaustion();
    bool answer_present(const std::vector<uint8_t>& answer);
    bool answer_matches(bool set, const std::vector<uint8_t>& write_stream,
                        const std::vector<uint8_t>& answer);

private:
    bool accept_operation(const std::string& operation);
    std::vector<uint8_t> receive(int descriptor, int length);
    bool send(int descriptor, const std::vector<uint8_t>& write_stream);
    void report_short_write(const std::vector<uint8_t>& write_stream, ssize_t size, int error);

    GripperLogicControl* link_;
    Traits traits_;
    // Set while looking for waiting bytes fails, so that a vanished device, which fails every
    // look of a wait the same way, is reported once instead of hundreds of times.
    bool available_failing_;
};

#endif
