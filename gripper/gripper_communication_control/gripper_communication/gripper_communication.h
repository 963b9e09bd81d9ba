#ifndef GRIPPER_COMMUNICATION_H
#define GRIPPER_COMMUNICATION_H

#include <cstdint>
#include <string>
#include <vector>

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

    static std::string communication_status_to_string(CommunicationStatus status);
    static std::string communication_connection_to_string(CommunicationConnection connection);
    static CommunicationStatus string_to_communication_status(const std::string& text);
    static CommunicationConnection string_to_communication_connection(const std::string& text);
};

#endif
