// Figures of the plug-in as a pendant uses it, printed as Markdown tables:
// - a script query ("get_gripper_status") in microseconds, in-process, gripper connected;
// - loading the library plus createUI in milliseconds, each in a fresh process;
// - a script thread waiting in a blocking move: its CPU share of one core, and how soon it
//   returns after a stop (the serial gripper answering, or silent mid-move) and after the
//   gripper reports arrival.
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <pthread.h>
#include <time.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <thread>
#include <vector>

#include "bench/link_round_trip/statistics.h"
#include "bench/plugin/plugin_session.h"
#include "tools/gripper_simulator/simulator.h"

namespace {

typedef std::chrono::steady_clock Clock;

const int kQueries = 200000;
const int kLoadRuns = 7;
const int kStopRuns = 20;
const int kArrivalRuns = 10;
const int kStrokeMs = 8000;
const int kCpuWindowMs = 4000;

double micros_between(Clock::time_point from, Clock::time_point to) {
    return std::chrono::duration<double, std::micro>(to - from).count();
}

double thread_cpu_ms(pthread_t thread) {
    clockid_t clock;
    struct timespec time;
    if (0 != pthread_getcpuclockid(thread, &clock) || 0 != clock_gettime(clock, &time)) {
        return -1.0;
    }
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

// The time the update thread logged the gripper's arrival (its debug line), for the latency
// from arrival to the waiting command's return.
std::atomic<Clock::rep> g_arrival_logged(0);
QtMessageHandler g_previous_handler = nullptr;

void note_arrival(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (message.contains(QStringLiteral("gripper_status_ = GS_ARRIVED"))) {
        g_arrival_logged = Clock::now().time_since_epoch().count();
        return;
    }
    if (type != QtDebugMsg && nullptr != g_previous_handler) {
        g_previous_handler(type, context, message);
    }
}

// A blocking move sent from a script thread of its own; records when the command returned.
class WaitingMove {
public:
    WaitingMove(ExtensionSystem::IPlugin* plugin, int position, int gripper = 1)
        : thread_([this, plugin, position, gripper] {
              QString answer;
              plugin->pluginCommonInterface(
                  QStringLiteral("set_gripper_position|%1,%2,true").arg(gripper).arg(position),
                  answer);
              returned_at_ = Clock::now();
              done_ = true;
          }) {}
    ~WaitingMove() { thread_.join(); }
    bool done() const { return done_; }
    Clock::time_point returned_at() const { return returned_at_; }
    pthread_t native() { return thread_.native_handle(); }

private:
    std::atomic<bool> done_{false};
    Clock::time_point returned_at_;
    std::thread thread_;
};

int load_once() {
    QElapsedTimer timer;
    timer.start();
    PluginSession session;
    if (!session.open()) {
        return 1;
    }
    std::printf("%.3f\n", static_cast<double>(timer.nsecsElapsed()) / 1e6);
    return 0;
}

void measure_load(const QString& program) {
    std::vector<double> millis;
    for (int run = 0; run < kLoadRuns; ++run) {
        QProcess child;
        child.start(program, QStringList{QStringLiteral("--load-once")});
        if (child.waitForFinished(30000) && 0 == child.exitCode()) {
            millis.push_back(child.readAllStandardOutput().trimmed().toDouble());
        }
    }
    std::printf("| load + createUI, fresh process, %zu runs | %.1f ms | %.1f ms |\n", millis.size(),
                percentile(millis, 0.5), percentile(millis, 1.0));
}

void measure_query(ExtensionSystem::IPlugin* plugin) {
    std::vector<double> micros;
    micros.reserve(kQueries);
    std::thread script([&] {
        QString answer;
        for (int i = 0; i < kQueries; ++i) {
            const Clock::time_point start = Clock::now();
            plugin->pluginCommonInterface(QStringLiteral("get_gripper_status|1"), answer);
            micros.push_back(micros_between(start, Clock::now()));
        }
    });
    script.join();
    std::printf("| get_gripper_status, %d calls on one thread | %.2f µs | %.2f µs (p99) |\n",
                kQueries, percentile(micros, 0.5), percentile(micros, 0.99));
}

// CPU of the waiting thread over a window in the middle of a long move, then the stop.
double measure_waiting_cpu(PluginSession& session, int target, std::vector<double>& stops) {
    WaitingMove move(session.plugin(), target);
    PluginSession::run_events_until([] { return false; }, 300);
    const double cpu_before = thread_cpu_ms(move.native());
    PluginSession::run_events_until([] { return false; }, kCpuWindowMs);
    const double cpu_after = thread_cpu_ms(move.native());
    const Clock::time_point stop_at = Clock::now();
    session.plugin()->stopPlugin();
    PluginSession::run_events_until([&] { return move.done(); }, 5000);
    stops.push_back(micros_between(stop_at, move.returned_at()));
    return (cpu_after - cpu_before) / kCpuWindowMs * 100.0;
}

void measure_stops(PluginSession& session, std::vector<double>& stops) {
    for (int run = 0; run < kStopRuns; ++run) {
        session.plugin()->initParms();
        WaitingMove move(session.plugin(), run % 2 == 0 ? 0 : 100);
        PluginSession::run_events_until([] { return false; }, 50);
        const Clock::time_point stop_at = Clock::now();
        session.plugin()->stopPlugin();
        PluginSession::run_events_until([&] { return move.done(); }, 5000);
        stops.push_back(micros_between(stop_at, move.returned_at()));
    }
}

// Stops while a Modbus gripper on a pseudo-terminal (reached through a link, as a by-id name
// is) hangs mid-move: its line stays open and it answers nothing, so an exchange holds the
// driver lock when the stop comes.
void measure_silent_stops(PluginSession& session, gripper_sim::Simulator& simulator) {
    gripper_sim::GripperOptions options;
    options.init_ms = 50;
    options.position_max = 1000;
    options.full_stroke_ms = kStrokeMs;
    const int serial = simulator.add_modbus_pty(options);
    QTemporaryDir folder;
    const QString link = folder.filePath(QStringLiteral("ttyGripper"));
    QFile::link(QString::fromStdString(simulator.endpoint(serial)), link);
    session.send(QStringLiteral("gripper_connect_usb|2,%1").arg(link));
    session.send(QStringLiteral("gripper_active|2"));
    if (!session.send_until(QStringLiteral("gripper_isActivate|2"), QStringLiteral("i | 1"),
                            15000)) {
        std::fprintf(stderr, "the serial gripper did not activate\n");
        return;
    }
    std::vector<double> stops;
    for (int run = 0; run < kStopRuns / 2; ++run) {
        session.plugin()->initParms();
        const int target = run % 2 == 0 ? 0 : 100;
        WaitingMove move(session.plugin(), target, 2);
        // The move has been accepted: the command waits for its end.
        PluginSession::run_events_until(
            [&] {
                const gripper_sim::GripperSnapshot now = simulator.snapshot(serial);
                return 0 == now.motion_state && target * 10 == now.target;
            },
            5000);
        simulator.set_fault(serial, gripper_sim::Fault::silent);
        PluginSession::run_events_until([] { return false; }, 150);
        const Clock::time_point stop_at = Clock::now();
        session.plugin()->stopPlugin();
        PluginSession::run_events_until([&] { return move.done(); }, 5000);
        stops.push_back(micros_between(stop_at, move.returned_at()));
        simulator.set_fault(serial, gripper_sim::Fault::none);
        PluginSession::run_events_until([] { return false; }, 1500);
    }
    std::printf(
        "| blocking move: stopPlugin -> command returns, serial gripper silent, %zu stops | "
        "%.0f µs | %.0f µs (max) |\n",
        stops.size(), percentile(stops, 0.5), percentile(stops, 1.0));
    session.send(QStringLiteral("gripper_disconnect|2"));
}

void measure_arrivals(PluginSession& session) {
    std::vector<double> micros;
    session.plugin()->initParms();
    for (int run = 0; run < kArrivalRuns; ++run) {
        g_arrival_logged = 0;
        WaitingMove move(session.plugin(), 40 + (run % 2) * 5);
        PluginSession::run_events_until([&] { return move.done(); }, 10000);
        const Clock::time_point logged{Clock::duration(g_arrival_logged.load())};
        if (0 != g_arrival_logged.load()) {
            micros.push_back(micros_between(logged, move.returned_at()));
        }
    }
    session.plugin()->stopPlugin();
    std::printf(
        "| blocking move: arrival reported -> command returns, %zu moves | %.0f µs | "
        "%.0f µs (max) |\n",
        micros.size(), percentile(micros, 0.5), percentile(micros, 1.0));
}

int run_benchmarks(const QString& program) {
    gripper_sim::Simulator simulator;
    gripper_sim::GripperOptions options;
    options.init_ms = 50;
    options.position_max = 100;
    options.full_stroke_ms = kStrokeMs;
    const int gripper = simulator.add_custom_tcp(options);
    PluginSession session;
    if (0 == gripper || !session.open()) {
        std::fprintf(stderr, "no simulator or no plug-in\n");
        return 1;
    }
    g_previous_handler = qInstallMessageHandler(note_arrival);
    session.send(
        QStringLiteral("gripper_connect_tcp|1,127.0.0.1:%1").arg(simulator.tcp_port(gripper)));
    session.send(QStringLiteral("gripper_active|1"));
    if (!session.send_until(QStringLiteral("gripper_isActivate|1"), QStringLiteral("i | 1"),
                            15000)) {
        std::fprintf(stderr, "the simulated gripper did not activate\n");
        return 1;
    }
    std::printf("| Measurement | median | worst |\n|---|---:|---:|\n");
    measure_query(session.plugin());
    measure_load(program);
    std::vector<double> stops;
    session.plugin()->initParms();
    const double share = measure_waiting_cpu(session, 100, stops);
    measure_stops(session, stops);
    std::printf(
        "| blocking move: stopPlugin -> command returns, %zu stops | %.0f µs | "
        "%.0f µs (max) |\n",
        stops.size(), percentile(stops, 0.5), percentile(stops, 1.0));
    measure_arrivals(session);
    measure_silent_stops(session, simulator);
    std::printf("| script thread waiting in a blocking move, %d ms | %.3f %% of a core | |\n",
                kCpuWindowMs, share);
    session.send(QStringLiteral("gripper_disconnect|1"));
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.contains(QStringLiteral("--load-once"))) {
        return load_once();
    }
    return run_benchmarks(QCoreApplication::applicationFilePath());
}
