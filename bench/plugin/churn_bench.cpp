// Connect/disconnect churn as a robot program makes it: the plug-in loaded as the pendant loads
// it, "gripper_connect_tcp" and "gripper_disconnect" sent from script threads against the
// simulator over loopback TCP, with a connect to a closed port (nobody listening) every third
// cycle. Prints resident memory (after malloc_trim), descriptors and threads after a warm-up of
// 20 cycles, at every 1000th cycle and at the end, and the growth per 1000 cycles.
//   churn_bench [cycles]   (10000 by default)
#include <QApplication>
#include <QDir>

#include <malloc.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "bench/plugin/plugin_session.h"
#include "tools/gripper_simulator/simulator.h"

namespace {

const int kWarmUp = 20;

struct Usage {
    double rss_kib;
    int descriptors;
    int threads;
};

int entries(const char* folder) {
    return static_cast<int>(QDir(QString::fromLatin1(folder))
                                .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System)
                                .size());
}

Usage usage() {
    malloc_trim(0);
    long pages = 0;
    FILE* statm = std::fopen("/proc/self/statm", "r");
    if (nullptr != statm) {
        long size = 0;
        if (2 != std::fscanf(statm, "%ld %ld", &size, &pages)) {
            pages = 0;
        }
        std::fclose(statm);
    }
    return Usage{pages * sysconf(_SC_PAGESIZE) / 1024.0, entries("/proc/self/fd"),
                 entries("/proc/self/task")};
}

// A loopback port nobody listens on: bound once, then closed.
uint16_t closed_port() {
    const int socket_fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof(address);
    ::bind(socket_fd, reinterpret_cast<sockaddr*>(&address), sizeof(address));
    ::getsockname(socket_fd, reinterpret_cast<sockaddr*>(&address), &length);
    ::close(socket_fd);
    return ntohs(address.sin_port);
}

void drop_message(QtMsgType, const QMessageLogContext&, const QString&) {}

void print(const char* label, int cycle, const Usage& now) {
    std::printf("| %s | %d | %.0f | %d | %d |\n", label, cycle, now.rss_kib, now.descriptors,
                now.threads);
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    qInstallMessageHandler(drop_message);
    const int cycles = argc > 1 ? std::atoi(argv[1]) : 10000;
    gripper_sim::Simulator simulator;
    gripper_sim::GripperOptions options;
    options.init_ms = 20;
    options.position_max = 100;
    const int gripper = simulator.add_custom_tcp(options);
    PluginSession session;
    if (0 == gripper || cycles <= kWarmUp || !session.open()) {
        std::fprintf(stderr, "no simulator, no plug-in or too few cycles\n");
        return 1;
    }
    const QString connect =
        QStringLiteral("gripper_connect_tcp|1,127.0.0.1:%1").arg(simulator.tcp_port(gripper));
    const QString connect_closed =
        QStringLiteral("gripper_connect_tcp|1,127.0.0.1:%1").arg(closed_port());
    std::printf("| point | cycle | RSS KiB | descriptors | threads |\n|---|---:|---:|---:|---:|\n");
    print("start", 0, usage());
    Usage warm{};
    int failures = 0;
    for (int cycle = 1; cycle <= cycles; ++cycle) {
        if (0 == cycle % 3) {
            session.send(connect_closed);
            failures +=
                QStringLiteral("i | 0") == session.send(QStringLiteral("gripper_isConnect|1")) ? 0
                                                                                               : 1;
        }
        session.send(connect);
        failures +=
            QStringLiteral("i | 1") == session.send(QStringLiteral("gripper_isConnect|1")) ? 0 : 1;
        session.send(QStringLiteral("gripper_disconnect|1"));
        if (kWarmUp == cycle) {
            warm = usage();
            print("after warm-up", cycle, warm);
        } else if (0 == cycle % 1000 || cycles == cycle) {
            print("cycle", cycle, usage());
        }
    }
    PluginSession::run_events_until([] { return false; }, 500);
    const Usage end = usage();
    print("end", cycles, end);
    const int measured = cycles - kWarmUp;
    std::printf(
        "\nRSS growth after warm-up: %.0f KiB over %d cycles = %.1f KiB per 1000 cycles; "
        "descriptors %+d, threads %+d; %d unexpected answers\n",
        end.rss_kib - warm.rss_kib, measured, (end.rss_kib - warm.rss_kib) * 1000.0 / measured,
        end.descriptors - warm.descriptors, end.threads - warm.threads, failures);
    return 0;
}
