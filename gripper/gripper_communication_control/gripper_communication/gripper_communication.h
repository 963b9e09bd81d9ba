#ifndef GRIPPER_COMMUNICATION_H
#define GRIPPER_COMMUNICATION_H

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "gripper/gripper_communication_control/gripper_communication/gripper_link_failure.h"

// The byte link between the plug-in and one gripper.
class GripperCommunication {
public:
    enum CommunicationStatus : int32_t {
        CS_UNDEFINE = 0,
        CS_UNCONNECTED = 1,
        CS_CONNECT_FAILURE = 2,
        CS_CONNECTED = 3,
        CS_DISCONNECTED = 4,
        CS_WRITE_EXCEPTION = 5,
        CS_READ_EXCEPTION = 6,
        CS_ALIVE_EXCEPTION = 7,
        CS_VERSION_EXCEPTION = 8,
        CS_DEVICE_EXCEPTION = 9,
    };

    enum CommunicationConnection : int32_t {
        CC_UNDEFINE = 0,
        CC_TCP_CLIENT = 1,
        CC_USB_SERIALPORT = 2,
        CC_FIXED_PORT = 3,
    };

    // Sees every byte the link writes and reads, on the thread that transfers them (with the
    // driver lock held): for tools that show the frames of a session.
    class TrafficObserver {
    public:
        virtual ~TrafficObserver();
        // True refuses the write: the exchange then fails as it does on a broken link.
        virtual bool refuse_write(const std::vector<uint8_t>& bytes);
        virtual void on_written(const std::vector<uint8_t>& bytes, bool ok) = 0;
        // discarded_as_stale: read to be thrown away before a request, not as an answer.
        virtual void on_read(const std::vector<uint8_t>& bytes, bool discarded_as_stale) = 0;
    };

    GripperCommunication() = default;
    GripperCommunication(const GripperCommunication&) = delete;
    GripperCommunication& operator=(const GripperCommunication&) = delete;

    virtual CommunicationConnection get_communication_connection() = 0;
    virtual bool open(const std::vector<std::string>& parameters) = 0;
    virtual bool handshake_check() = 0;
    virtual bool is_alive() = 0;
    virtual bool close() = 0;
    virtual std::vector<uint8_t> read(int length) = 0;
    virtual std::vector<uint8_t> write_read(bool set, int read_length,
                                            const std::vector<uint8_t>& write_stream) = 0;
    virtual bool write(const std::vector<uint8_t>& write_stream) = 0;
    virtual int available() = 0;
    virtual int get_write_retry_max_count() = 0;
    virtual int get_wait_retry_max_count() = 0;
    virtual int get_alive_retry_max_count() = 0;
    virtual int get_default_wait_for_length_available_interval() = 0;
    virtual ~GripperCommunication() = 0;

    // Null for none; the observer must outlive the link or be replaced first.
    void set_traffic_observer(TrafficObserver* observer);
    // The failure the link logged last; LF_NONE while none.
    GripperLinkFailure last_failure() const;

    static std::string communication_status_to_string(CommunicationStatus status);
    static std::string communication_connection_to_string(CommunicationConnection connection);
    static CommunicationStatus string_to_communication_status(const std::string& text);
    static CommunicationConnection string_to_communication_connection(const std::string& text);

protected:
    // The links call these around their byte transfers and where they log a failure.
    bool refuse_write(const std::vector<uint8_t>& bytes);
    void report_written(const std::vector<uint8_t>& bytes, bool ok);
    void report_read(const std::vector<uint8_t>& bytes, bool discarded_as_stale);
    void keep_failure(GripperLinkFailure::Code code, int error_number, const std::string& sentence);

private:
    std::atomic<TrafficObserver*> traffic_observer_{nullptr};
    mutable std::mutex failure_mutex_;
    GripperLinkFailure last_failure_;
};

#endif
