#ifndef BENCH_LINK_ROUND_TRIP_PACED_ROUND_TRIP_H
#define BENCH_LINK_ROUND_TRIP_PACED_ROUND_TRIP_H

#include <string>

#include "bench/link_round_trip/round_trip.h"
#include "bench/link_round_trip/simulator_process.h"

// Our serial link and libmodbus over the same kind of simulated line, in the same run.
struct PacedRoundTrips {
    bool measured = false;
    // The simulator ran at a real-time priority, like a device apart from the host's load.
    bool realtime = false;
    RoundTrips ours;
    RoundTrips libmodbus;
};

// A fresh simulator process with two Modbus grippers on `line`: our serial link reads the
// position of the first, libmodbus that of the second, taking turns, while `load` busy
// processes run at normal priority.
PacedRoundTrips measure_paced_round_trips(const std::string& simulator_program,
                                          const SimulatedLine& line, int load);

// The time a one-register read takes on the wire at `baud`: 8 request and 7 answer bytes.
double wire_micros(int baud);

#endif
