// Link round trips against the simulator beside libmodbus, and the CPU cost of idle connected
// grippers. Prints Markdown tables with the machine they were measured on.
#include <modbus/modbus-version.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "bench/link_round_trip/idle_cpu.h"
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

void print_idle_row(int grippers, const IdleCpu& cpu) {
    if (!cpu.measured) {
        std::printf("| %d | not measured | | | |\n", grippers);
        return;
    }
    std::printf("| %d | %.3f | %.3f %% | %.0f | %.3f |\n", grippers, cpu.plugin_ms_per_s,
                cpu.plugin_ms_per_s / 10.0, cpu.plugin_sleeps_per_s, cpu.simulator_ms_per_s);
}

void print_idle_table(const IdleCpu& one, const IdleCpu& four) {
    std::printf(
        "| Idle grippers, activated, update loops running (%d s) | plug-in CPU ms/s | "
        "%% of one core | plug-in sleeps/s | simulator CPU ms/s (not counted) |\n",
        IDLE_WINDOW_SECONDS);
    std::printf("|---|---:|---:|---:|---:|\n");
    print_idle_row(1, one);
    print_idle_row(4, four);
}

bool any_failed(const RoundTripFigures& figures) {
    return figures.serial.failures + figures.libmodbus.failures + figures.tcp.failures > 0;
}

}  // namespace

int main() {
    print_machine();
    const RoundTripFigures figures = measure_round_trips();
    print_round_trips(figures);
    const IdleCpu one = measure_idle_cpu(GRIPPER_SIM_PROGRAM, 1);
    const IdleCpu four = measure_idle_cpu(GRIPPER_SIM_PROGRAM, 4);
    print_idle_table(one, four);
    return (any_failed(figures) || !one.measured || !four.measured) ? 1 : 0;
}
