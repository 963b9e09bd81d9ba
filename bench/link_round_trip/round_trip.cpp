#include "bench/link_round_trip/round_trip.h"

#include <modbus/modbus.h>

#include <sys/resource.h>
#include <time.h>

#include <chrono>

#include "gripper/gripper_communication_control/gripper_tcp_client_communication_control/gripper_tcp_client_communication_control.h"
#include "gripper/gripper_communication_control/gripper_usb_serialport_communication_control/gripper_usb_serialport_communication_control.h"
#include "gripper/gripper_protocol/gripper_custom_protocol/gripper_custom_protocol.h"
#include "gripper/gripper_protocol/gripper_modbus_protocol/gripper_modbus_protocol.h"

namespace {

const int POSITION_REGISTER = 0x0202;
// libmodbus gives up on an answer after this long (the serial link waits 100 ms per pass).
const uint32_t LIBMODBUS_RESPONSE_TIMEOUT_MICROS = 500000;

// A driver connected as the connection manager connects one, without the update loop, timing
// its link's write_read of one request.
class LinkClient : public RoundTripClient {
public:
    LinkClient(GripperLogicControl* link, const std::vector<std::string>& parameters,
               const std::vector<uint8_t>& request, int answer_length)
        : link_(link), request_(request), answer_length_(answer_length) {
        ready_ = link_->open(parameters) && link_->handshake() && link_->sync();
    }
    ~LinkClient() override { link_->close(); }

    bool ready() const override { return ready_; }
    bool exchange() override {
        return answer_length_ ==
               static_cast<int>(link_->write_read(false, answer_length_, request_).size());
    }

private:
    std::unique_ptr<GripperLogicControl> link_;
    std::vector<uint8_t> request_;
    int answer_length_;
    bool ready_;
};

class LibmodbusClient : public RoundTripClient {
public:
    LibmodbusClient(const std::string& path, int id)
        : context_(modbus_new_rtu(path.c_str(), 115200, 'N', 8, 1)) {
        ready_ = nullptr != context_ && 0 == modbus_set_slave(context_, id) &&
                 0 == modbus_set_response_timeout(context_, 0, LIBMODBUS_RESPONSE_TIMEOUT_MICROS) &&
                 0 == modbus_connect(context_);
    }
    ~LibmodbusClient() override {
        if (nullptr != context_) {
            modbus_close(context_);
            modbus_free(context_);
        }
    }

    bool ready() const override { return ready_; }
    bool exchange() override {
        uint16_t value = 0;
        return 1 == modbus_read_registers(context_, POSITION_REGISTER, 1, &value);
    }

private:
    modbus_t* context_;
    bool ready_;
};

double thread_wakeups() {
    struct rusage usage;
    getrusage(RUSAGE_THREAD, &usage);
    return static_cast<double>(usage.ru_nvcsw);
}

double thread_cpu_micros() {
    struct timespec time;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

// Times `count` exchanges of the client into `trips`; a client that is not ready fails them all.
void time_exchanges(RoundTripClient& client, int count, RoundTrips& trips) {
    const double cpu_start = thread_cpu_micros();
    const double wakeups_start = thread_wakeups();
    for (int i = 0; i < count; ++i) {
        const auto start = std::chrono::steady_clock::now();
        const bool answered = client.ready() && client.exchange();
        const std::chrono::duration<double, std::micro> took =
            std::chrono::steady_clock::now() - start;
        if (answered) {
            trips.micros.push_back(took.count());
        } else {
            ++trips.failures;
        }
    }
    trips.cpu_micros += thread_cpu_micros() - cpu_start;
    trips.wakeups += thread_wakeups() - wakeups_start;
}

}  // namespace

std::unique_ptr<RoundTripClient> make_serial_link_client(const std::string& path, int id) {
    GripperModbusProtocol protocol;
    return std::unique_ptr<RoundTripClient>(
        new LinkClient(new GripperUSBSerialportCommunicationControl(), {"CO_MANUAL", path},
                       protocol.build_position_protocol(static_cast<uint8_t>(id), false, 0),
                       GripperModbusProtocol::READ_LENGTH));
}

std::unique_ptr<RoundTripClient> make_libmodbus_client(const std::string& path, int id) {
    return std::unique_ptr<RoundTripClient>(new LibmodbusClient(path, id));
}

std::unique_ptr<RoundTripClient> make_tcp_link_client(int port, int id) {
    GripperCustomProtocol protocol;
    return std::unique_ptr<RoundTripClient>(
        new LinkClient(new GripperTCPClientCommunicationControl(),
                       {"CO_MANUAL", "127.0.0.1", std::to_string(port)},
                       protocol.build_position_protocol(static_cast<uint8_t>(id), false, 0),
                       GripperCustomProtocol::FRAME_LENGTH));
}

std::vector<RoundTrips> measure_in_turns(const std::vector<RoundTripClient*>& clients) {
    std::vector<RoundTrips> warm_up(clients.size());
    std::vector<RoundTrips> results(clients.size());
    for (size_t i = 0; i < clients.size(); ++i) {
        time_exchanges(*clients[i], ROUND_TRIP_WARM_UP, warm_up[i]);
    }
    for (int done = 0; done < ROUND_TRIP_SAMPLES; done += ROUND_TRIP_TURN) {
        for (size_t i = 0; i < clients.size(); ++i) {
            time_exchanges(*clients[i], ROUND_TRIP_TURN, results[i]);
        }
    }
    return results;
}
