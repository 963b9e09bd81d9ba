#ifndef BENCH_LINK_ROUND_TRIP_ROUND_TRIP_H
#define BENCH_LINK_ROUND_TRIP_ROUND_TRIP_H

#include <memory>
#include <string>
#include <vector>

// Timed exchanges of one client: the round trip of each successful one in microseconds, the
// number that failed, and the CPU time the calling thread spent on all of them and how often it
// went to sleep (voluntary context switches: each is a wake-up later).
struct RoundTrips {
    std::vector<double> micros;
    int failures = 0;
    double cpu_micros = 0.0;
    double wakeups = 0.0;
};

// Exchanges timed per client after its warm-up, in turns of ROUND_TRIP_TURN exchanges.
const int ROUND_TRIP_SAMPLES = 2000;
const int ROUND_TRIP_WARM_UP = 200;
const int ROUND_TRIP_TURN = 100;

// One client of a simulated gripper that reads the gripper's position.
class RoundTripClient {
public:
    RoundTripClient() = default;
    RoundTripClient(const RoundTripClient&) = delete;
    RoundTripClient& operator=(const RoundTripClient&) = delete;
    virtual ~RoundTripClient() = default;
    // False when the client could not connect.
    virtual bool ready() const = 0;
    // One request and its answer; true when the answer is valid.
    virtual bool exchange() = 0;
};

// The serial link's write_read of the one-register position read (0x0202), against the Modbus
// gripper with slave id `id` on the pseudo-terminal `path`. The driver is handshaken first; its
// update loop is not started, so nothing else uses the link.
std::unique_ptr<RoundTripClient> make_serial_link_client(const std::string& path, int id);

// libmodbus reading the same register with modbus_read_registers.
std::unique_ptr<RoundTripClient> make_libmodbus_client(const std::string& path, int id);

// The TCP link's write_read of the custom-frame position read, against the custom gripper with
// id `id` listening on 127.0.0.1:`port`.
std::unique_ptr<RoundTripClient> make_tcp_link_client(int port, int id);

// Times the clients' exchanges taking turns, so that slow phases of the machine fall on all of
// them alike. The results are in the order of the clients.
std::vector<RoundTrips> measure_in_turns(const std::vector<RoundTripClient*>& clients);

#endif
