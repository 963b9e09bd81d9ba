// Figures of the per-gripper link options, through the plug-in as a pendant loads it, printed as
// Markdown tables:
// - end of a move: from the simulator's arrival (the end of its stroke, on the monotonic clock)
//   to the return of the blocking "set_gripper_position", 200 moves per update period, over a
//   Modbus line paced like 115200 8N1; back to back from activation on ("cold") and after the
//   gripper has rested arrived through an update cycle ("warm"); with the share of time the line
//   is idle while the gripper moves;
// - automatic reconnect: from the device's return to "gripper_isConnect" answering "i | 1", over
//   20 returns each on a pseudo-terminal reached through a symbolic link and on loopback TCP, the
//   device away for 0.3 s to 6 s;
// - what the process spends while its gripper waits to reconnect.
// Parts: `link_heal_bench [move] [reconnect]` (both by default).
#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>

#include <time.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "bench/link_round_trip/statistics.h"
#include "bench/plugin/plugin_session.h"
#include "tools/gripper_simulator/simulator.h"

namespace {

typedef std::chrono::steady_clock Clock;

const int kMoves = 200;
const int kBaud = 115200;
const int kStrokeMs = 200;
// Bytes of a Modbus request, and at most of its answer.
const int kFrameBytes = 8;
const int kReturns = 20;
const int kCpuWindowMs = 10000;

// The plug-in's log lines are formatted as on a pendant, and then dropped.
void drop_log_line(QtMsgType, const QMessageLogContext&, const QString&) {}

double ms_between(Clock::time_point from, Clock::time_point to) {
    return std::chrono::duration<double, std::milli>(to - from).count();
}

double process_cpu_ms() {
    struct timespec time;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

// An option of gripper 1 as its Setting page stores it.
void store_option(const char* name, const QVariant& value) {
    QSettings(QStringLiteral("orlape"), QStringLiteral("gripper_plugin"))
        .setValue(QStringLiteral("gripper_0/") + QLatin1String(name), value);
}

std::string link_path(const char* purpose) {
    return "/tmp/gripper-" + std::string(purpose) + "-" + std::to_string(::getpid());
}

// Sends a blocking move from a script thread of its own; the time it returned.
Clock::time_point blocking_move(PluginSession& session, int position) {
    std::atomic<bool> done(false);
    Clock::time_point returned;
    std::thread script([&] {
        QString answer;
        session.plugin()->pluginCommonInterface(
            QStringLiteral("set_gripper_position|1,%1,true").arg(position), answer);
        returned = Clock::now();
        done = true;
    });
    PluginSession::run_events_until([&] { return done.load(); }, 30000);
    script.join();
    return returned;
}

// Targets of moves of different lengths (20 to 160 ms), the same sequence for every case, so
// that arrivals fall at every point of an update period.
std::vector<int> move_targets() {
    std::vector<int> targets;
    unsigned state = 12345;
    int last = 30;
    while (static_cast<int>(targets.size()) < kMoves) {
        state = state * 1103515245u + 12345u;
        const int target = 10 + static_cast<int>((state >> 16) % 81);
        if (std::abs(target - last) >= 10) {
            targets.push_back(target);
            last = target;
        }
    }
    return targets;
}

struct MoveCase {
    const char* name;
    int period_ms;
    bool warm;
};

struct MoveFigures {
    std::vector<double> latency_ms;
    double idle_share;
};

// Connects gripper 1 with the period chosen on its Setting page, activates it and, warm, lets
// it rest arrived through an update cycle; then the moves, back to back.
bool measure_moves(PluginSession& session, gripper_sim::Simulator& simulator, int gripper,
                   const MoveCase& move_case, MoveFigures& figures) {
    store_option("move_period_ms", move_case.period_ms);
    session.send(QStringLiteral("gripper_disconnect|1"));
    session.send(QStringLiteral("gripper_connect_usb|1,%1")
                     .arg(QString::fromStdString(link_path("move-bench"))));
    session.plugin()->initParms();
    session.send(QStringLiteral("gripper_active|1"));
    if (!session.send_until(QStringLiteral("gripper_isActivate|1"), QStringLiteral("i | 1"),
                            15000)) {
        return false;
    }
    if (move_case.warm) {
        blocking_move(session, 30);
        PluginSession::run_events_until([] { return false; }, 1500);
    }
    const gripper_sim::GripperSnapshot before = simulator.snapshot(gripper);
    const Clock::time_point start = Clock::now();
    for (int target : move_targets()) {
        const Clock::time_point returned = blocking_move(session, target);
        const Clock::time_point arrival{Clock::duration(simulator.snapshot(gripper).stroke_end_ns)};
        figures.latency_ms.push_back(ms_between(arrival, returned));
    }
    const gripper_sim::GripperSnapshot after = simulator.snapshot(gripper);
    const double frames = static_cast<double>(after.frames_received - before.frames_received +
                                              after.answers_sent - before.answers_sent);
    const double busy_ms = frames * kFrameBytes * 10.0 * 1000.0 / kBaud;
    figures.idle_share = 1.0 - busy_ms / ms_between(start, Clock::now());
    session.plugin()->stopPlugin();
    return true;
}

int run_moves(PluginSession& session) {
    gripper_sim::Simulator simulator;
    gripper_sim::GripperOptions options;
    options.init_ms = 50;
    options.full_stroke_ms = kStrokeMs;
    options.baud = kBaud;
    const int gripper = simulator.add_modbus_pty(options);
    simulator.set_link(gripper, link_path("move-bench"));
    const MoveCase cases[] = {{"100 ms (default), cold", 100, false},
                              {"100 ms (default), warm", 100, true},
                              {"50 ms, cold", 50, false},
                              {"20 ms, cold", 20, false},
                              {"20 ms, warm", 20, true}};
    std::printf(
        "| Update period while moving, %d moves of 20-160 ms, Modbus at %d 8N1 | arrival -> "
        "return, median ms | p99 ms | line idle while moving |\n|---|---:|---:|---:|\n",
        kMoves, kBaud);
    for (const MoveCase& move_case : cases) {
        MoveFigures figures;
        if (!measure_moves(session, simulator, gripper, move_case, figures)) {
            std::fprintf(stderr, "the simulated gripper did not activate\n");
            return 1;
        }
        std::printf("| %s | %.1f | %.1f | %.0f %% |\n", move_case.name,
                    percentile(figures.latency_ms, 0.5), percentile(figures.latency_ms, 0.99),
                    figures.idle_share * 100.0);
        std::fflush(stdout);
    }
    session.send(QStringLiteral("gripper_disconnect|1"));
    std::printf("\n");
    return 0;
}

// Gripper 1 with "Reconnect automatically" ticked, on the simulator's gripper; each return
// after a different time away, so that it meets the tries' back-off at different points.
std::vector<double> measure_returns(PluginSession& session, gripper_sim::Simulator& simulator,
                                    int gripper, const QString& connect_line) {
    std::vector<double> seconds;
    store_option("reconnect", true);
    session.send(QStringLiteral("gripper_disconnect|1"));
    session.send(connect_line);
    for (int run = 0; run < kReturns; ++run) {
        simulator.set_fault(gripper, gripper_sim::Fault::vanish);
        session.send_until(QStringLiteral("gripper_isConnect|1"), QStringLiteral("i | 0"), 15000);
        PluginSession::run_events_until([] { return false; }, 300 + run * 6000 / kReturns);
        simulator.set_fault(gripper, gripper_sim::Fault::none);
        const Clock::time_point back = Clock::now();
        session.send_until(QStringLiteral("gripper_isConnect|1"), QStringLiteral("i | 1"), 30000);
        seconds.push_back(ms_between(back, Clock::now()) / 1000.0);
    }
    return seconds;
}

// The process's processor time while its one gripper is away and being tried, the interface
// thread asleep meanwhile (its event loop would count its own timer): the tries and the idle
// simulator threads.
double waiting_cpu_share(PluginSession& session, gripper_sim::Simulator& simulator, int gripper) {
    simulator.set_fault(gripper, gripper_sim::Fault::vanish);
    session.send_until(QStringLiteral("gripper_isConnect|1"), QStringLiteral("i | 0"), 15000);
    const double before = process_cpu_ms();
    std::this_thread::sleep_for(std::chrono::milliseconds(kCpuWindowMs));
    const double share = (process_cpu_ms() - before) / kCpuWindowMs * 100.0;
    simulator.set_fault(gripper, gripper_sim::Fault::none);
    return share;
}

void print_returns(const char* name, const std::vector<double>& seconds) {
    std::printf("| %s, %zu returns | %.2f s | %.2f s |\n", name, seconds.size(),
                percentile(seconds, 0.5), percentile(seconds, 1.0));
}

int run_reconnects(PluginSession& session) {
    gripper_sim::Simulator simulator;
    gripper_sim::GripperOptions options;
    options.init_ms = 50;
    const int usb = simulator.add_modbus_pty(options);
    options.position_max = 100;
    const int tcp = simulator.add_custom_tcp(options);
    const std::string link = link_path("reconnect-bench");
    simulator.set_link(usb, link);
    std::printf(
        "| Automatic reconnect: device back -> connected | median | worst |\n|---|---:|---:|\n");
    print_returns(
        "USB (pty through a symbolic link)",
        measure_returns(
            session, simulator, usb,
            QStringLiteral("gripper_connect_usb|1,%1").arg(QString::fromStdString(link))));
    const double share = waiting_cpu_share(session, simulator, usb);
    print_returns(
        "TCP (server gone, listening again on its port)",
        measure_returns(
            session, simulator, tcp,
            QStringLiteral("gripper_connect_tcp|1,127.0.0.1:%1").arg(simulator.tcp_port(tcp))));
    std::printf("| process CPU while its USB gripper is away, %d s | %.3f %% of a core | |\n\n",
                kCpuWindowMs / 1000, share);
    session.send(QStringLiteral("gripper_disconnect|1"));
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir settings_folder;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings_folder.path());
    QApplication application(argc, argv);
    qInstallMessageHandler(drop_log_line);
    const QStringList parts = QCoreApplication::arguments().mid(1);
    PluginSession session;
    if (!session.open()) {
        std::fprintf(stderr, "no plug-in\n");
        return 1;
    }
    if ((parts.isEmpty() || parts.contains(QStringLiteral("move"))) && 0 != run_moves(session)) {
        return 1;
    }
    if (parts.isEmpty() || parts.contains(QStringLiteral("reconnect"))) {
        return run_reconnects(session);
    }
    return 0;
}
