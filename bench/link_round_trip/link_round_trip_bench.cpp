// Link round trips against the simulator beside libmodbus, on a bare pseudo-terminal and on
// simulated serial lines, and what keeping connected grippers up to date costs beside
// libmodbus making the same reads. Prints Markdown tables with the machine they were measured
// on.
#include <modbus/modbus-version.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "bench/link_round_trip/paced_round_trip.h"
#include "bench/link_round_trip/polling_cost.h"
#include "bench/link_round_trip/round_trip.h"
#include "bench/link_round_trip/statistics.h"
#include "tools/gripper_simulator/simulator.h"

namespace {

struct RoundTripFigures {
    RoundTrips serial;
    RoundTrips libmodbus;
    RoundTrips tcp;
};

std::string cpu_model() {
    std::ifstream cpuinfo("/proc/cpuinfo");
    std::string line;
    while (std::getline(cpuinfo, line)) {
        const size_t colon = line.find(':');
        if (0 == line.compare(0, 10, "model name") && std::string::npos != colon) {
            return line.substr(colon + 2);
        }
    }
    return "unknown";
}

std::string now_text() {
    const time_t now = time(nullptr);
    struct tm local;
    char text[64];
    localtime_r(&now, &local);
    strftime(text, sizeof(text), "%Y-%m-%d %H:%M %Z", &local);
    return text;
}

void print_machine() {
    std::printf("Machine: %ld CPUs (nproc), %s; build %s; libmodbus %s; %s\n\n",
                sysconf(_SC_NPROCESSORS_ONLN), cpu_model().c_str(), GRIPPER_BUILD_TYPE,
                LIBMODBUS_VERSION_STRING, now_text().c_str());
}

// Three grippers of an in-process simulator: one Modbus gripper per Modbus client, so that
// neither sees the other's frames, and a custom gripper over TCP.
RoundTripFigures measure_round_trips() {
    gripper_sim::Simulator simulator;
    gripper_sim::GripperOptions modbus;
    modbus.id = 1;
    const int ours = simulator.add_modbus_pty(modbus);
    modbus.id = 2;
    const int theirs = simulator.add_modbus_pty(modbus);
    gripper_sim::GripperOptions custom;
    custom.id = 3;
    custom.position_max = 100;
    const int tcp = simulator.add_custom_tcp(custom);
    const std::unique_ptr<RoundTripClient> serial =
        make_serial_link_client(simulator.endpoint(ours), 1);
    const std::unique_ptr<RoundTripClient> libmodbus =
        make_libmodbus_client(simulator.endpoint(theirs), 2);
    const std::unique_ptr<RoundTripClient> tcp_link =
        make_tcp_link_client(simulator.tcp_port(tcp), 3);
    const std::vector<RoundTrips> trips =
        measure_in_turns({serial.get(), libmodbus.get(), tcp_link.get()});
    return RoundTripFigures{trips[0], trips[1], trips[2]};
}

void print_round_trip_row(const char* name, const RoundTrips& trips) {
    std::printf("| %s | %.1f | %.1f | %.1f | %d |\n", name, percentile(trips.micros, 0.5),
                percentile(trips.micros, 0.99), trips.cpu_micros / ROUND_TRIP_SAMPLES,
                trips.failures);
}

void print_ratio_row(const RoundTrips& ours, const RoundTrips& theirs) {
    const double median = percentile(theirs.micros, 0.5);
    const double p99 = percentile(theirs.micros, 0.99);
    std::printf("| pty, ratio ours / libmodbus | %.2f | %.2f | %.2f | |\n",
                median > 0.0 ? percentile(ours.micros, 0.5) / median : 0.0,
                p99 > 0.0 ? percentile(ours.micros, 0.99) / p99 : 0.0,
                theirs.cpu_micros > 0.0 ? ours.cpu_micros / theirs.cpu_micros : 0.0);
}

void print_round_trips(const RoundTripFigures& figures) {
    std::printf(
        "| Round trip, %d exchanges after %d warm-up, in turns of %d | median µs | p99 µs | "
        "caller CPU µs per exchange | failed |\n",
        ROUND_TRIP_SAMPLES, ROUND_TRIP_WARM_UP, ROUND_TRIP_TURN);
    std::printf("|---|---:|---:|---:|---:|\n");
    print_round_trip_row("pty, Modbus read of 0x0202, ours (`write_read`)", figures.serial);
    print_round_trip_row("pty, Modbus read of 0x0202, libmodbus (`modbus_read_registers`)",
                         figures.libmodbus);
    print_ratio_row(figures.serial, figures.libmodbus);
    print_round_trip_row("TCP, custom-frame position read, ours (`write_read`)", figures.tcp);
    std::printf("\n");
}

bool any_failed(const RoundTripFigures& figures) {
    return figures.serial.failures + figures.libmodbus.failures + figures.tcp.failures > 0;
}

// The lines of the paced round trips: a USB serial adapter hands over what it received every
// millisecond; "loaded" runs as many busy processes as there are cores meanwhile.
struct PacedCase {
    const char* name;
    SimulatedLine line;
    bool loaded;
};

const int BAUD = 115200;
const int USB_WINDOW_US = 1000;
// Long enough that a commanded gripper stays in motion for the whole measurement.
const int SLOW_STROKE_MS = 600000;

std::vector<PacedCase> paced_cases() {
    const SimulatedLine wire = {BAUD, 0, 1000};
    const SimulatedLine usb = {BAUD, USB_WINDOW_US, 1000};
    return {{"wire-paced, byte by byte", wire, false},
            {"USB-chunked, 1 ms windows", usb, false},
            {"wire-paced, loaded", wire, true},
            {"USB-chunked, loaded", usb, true}};
}

void print_paced_row(const char* line, const char* client, const RoundTrips& trips) {
    std::printf("| %s | %s | %.1f | %.1f | %.1f | %.2f | %d |\n", line, client,
                percentile(trips.micros, 0.5), percentile(trips.micros, 0.99),
                trips.cpu_micros / ROUND_TRIP_SAMPLES, trips.wakeups / ROUND_TRIP_SAMPLES,
                trips.failures);
}

double ratio(double ours, double theirs) {
    return theirs > 0.0 ? ours / theirs : 0.0;
}

void print_paced_case(const PacedCase& paced, const PacedRoundTrips& trips) {
    if (!trips.measured) {
        std::printf("| %s | not measured | | | | | |\n", paced.name);
        return;
    }
    print_paced_row(paced.name, "ours", trips.ours);
    print_paced_row(paced.name, "libmodbus", trips.libmodbus);
    std::printf(
        "| %s | ratio ours / libmodbus | %.2f | %.2f | %.2f | %.2f | |\n", paced.name,
        ratio(percentile(trips.ours.micros, 0.5), percentile(trips.libmodbus.micros, 0.5)),
        ratio(percentile(trips.ours.micros, 0.99), percentile(trips.libmodbus.micros, 0.99)),
        ratio(trips.ours.cpu_micros, trips.libmodbus.cpu_micros),
        ratio(trips.ours.wakeups, trips.libmodbus.wakeups));
}

// Round trips on simulated 115200 8N1 lines; false when one could not be measured or failed.
bool measure_paced_lines() {
    const int cores = static_cast<int>(sysconf(_SC_NPROCESSORS_ONLN));
    std::printf(
        "| Modbus read of 0x0202 at %d baud, 8N1 (on the wire: %.0f µs), %d exchanges each, in "
        "turns | client | median µs | p99 µs | caller CPU µs per exchange | wake-ups per "
        "exchange | failed |\n",
        BAUD, wire_micros(BAUD), ROUND_TRIP_SAMPLES);
    std::printf("|---|---|---:|---:|---:|---:|---:|\n");
    bool all = true;
    bool realtime = true;
    for (const PacedCase& paced : paced_cases()) {
        const PacedRoundTrips trips =
            measure_paced_round_trips(GRIPPER_SIM_PROGRAM, paced.line, paced.loaded ? cores : 0);
        print_paced_case(paced, trips);
        all = all && trips.measured && 0 == trips.ours.failures + trips.libmodbus.failures;
        realtime = realtime && trips.realtime;
    }
    std::printf("\nLoaded: %d busy processes at normal priority. Simulator at %s.\n\n", cores,
                realtime ? "a real-time priority (SCHED_FIFO 10)" : "normal priority");
    return all;
}

void print_polling_row(const char* activity, int grippers, const char* client,
                       const PollingCost& cost) {
    if (!cost.measured) {
        std::printf("| %s | %d | %s | not measured | | | | |\n", activity, grippers, client);
        return;
    }
    const double exchanges = cost.exchanges_per_s > 0.0 ? cost.exchanges_per_s : 1.0;
    std::printf("| %s | %d | %s | %.3f %% | %.1f | %.1f | %.1f | %.2f |\n", activity, grippers,
                client, cost.cpu_ms_per_s / 10.0 / grippers, cost.wakeups_per_s / grippers,
                cost.exchanges_per_s / grippers, cost.cpu_ms_per_s * 1000.0 / exchanges,
                cost.wakeups_per_s / exchanges);
}

// Our update loops and libmodbus making the same reads at the same rate, on a wire-paced line.
bool measure_polling() {
    const int grippers = 4;
    SimulatorProcess simulator(GRIPPER_SIM_PROGRAM, 2 * grippers,
                               SimulatedLine{BAUD, 0, SLOW_STROKE_MS});
    std::printf(
        "| Connected grippers on wire-paced %d baud lines (median of %d windows of %d s) | "
        "grippers | client | CPU per "
        "gripper, %% of a core | wake-ups/s per gripper | exchanges/s per gripper | CPU µs per "
        "exchange | wake-ups per exchange |\n",
        BAUD, POLLING_WINDOWS, POLLING_WINDOW_SECONDS);
    std::printf("|---|---:|---|---:|---:|---:|---:|---:|\n");
    bool all = simulator.running();
    for (int count : {1, grippers}) {
        const PollingCost ours = measure_driver_polling(simulator, 1, count, Polling::idle);
        const PollingCost theirs =
            measure_libmodbus_polling(simulator, grippers + 1, count, Polling::idle);
        print_polling_row("idle, read back once a second", count, "ours", ours);
        print_polling_row("idle, read back once a second", count, "libmodbus", theirs);
        all = all && ours.measured && theirs.measured;
    }
    const PollingCost ours = measure_driver_polling(simulator, 1, 1, Polling::moving);
    const PollingCost theirs =
        measure_libmodbus_polling(simulator, grippers + 1, 1, Polling::moving);
    print_polling_row("moving, followed every 100 ms", 1, "ours", ours);
    print_polling_row("moving, followed every 100 ms", 1, "libmodbus", theirs);
    return all && ours.measured && theirs.measured;
}

double load_average() {
    double load = 0.0;
    return 1 == getloadavg(&load, 1) ? load : -1.0;
}

}  // namespace

// Without arguments every part runs; otherwise the parts named: pty, paced, polling.
bool wanted(int argc, char** argv, const std::string& part) {
    return argc < 2 || std::find(argv + 1, argv + argc, part) != argv + argc;
}

int main(int argc, char** argv) {
    print_machine();
    std::printf("Load average (1 min) at the start: %.2f\n\n", load_average());
    bool measured = true;
    if (wanted(argc, argv, "pty")) {
        const RoundTripFigures figures = measure_round_trips();
        print_round_trips(figures);
        measured = !any_failed(figures);
    }
    if (wanted(argc, argv, "paced")) {
        measured = measure_paced_lines() && measured;
    }
    if (wanted(argc, argv, "polling")) {
        measured = measure_polling() && measured;
    }
    return measured ? 0 : 1;
}
