#include "bench/link_round_trip/paced_round_trip.h"

#include <memory>

#include "bench/link_round_trip/cpu_load.h"

namespace {

const int REQUEST_BYTES = 8;
const int ANSWER_BYTES = 7;
const double BITS_PER_BYTE = 10.0;

}  // namespace

PacedRoundTrips measure_paced_round_trips(const std::string& simulator_program,
                                          const SimulatedLine& line, int load) {
    SimulatorProcess simulator(simulator_program, 2, line);
    PacedRoundTrips result;
    if (!simulator.running()) {
        return result;
    }
    const std::unique_ptr<RoundTripClient> ours = make_serial_link_client(simulator.paths()[0], 1);
    const std::unique_ptr<RoundTripClient> libmodbus =
        make_libmodbus_client(simulator.paths()[1], 2);
    const CpuLoad busy(load);
    const std::vector<RoundTrips> trips = measure_in_turns({ours.get(), libmodbus.get()});
    result.measured = true;
    result.realtime = simulator.realtime();
    result.ours = trips[0];
    result.libmodbus = trips[1];
    return result;
}

double wire_micros(int baud) {
    return (REQUEST_BYTES + ANSWER_BYTES) * BITS_PER_BYTE * 1e6 / baud;
}
