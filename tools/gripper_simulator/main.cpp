// gripper-sim: simulated grippers for manual sessions, demos and tests. See README.md.

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <iostream>
#include <thread>

#include "tools/gripper_simulator/command_line.h"
#include "tools/gripper_simulator/control_socket.h"
#include "tools/gripper_simulator/line_channel.h"
#include "tools/gripper_simulator/simulator.h"

namespace {

using namespace gripper_sim;

// Adds one gripper and prints where it is; false when its port cannot be opened.
bool start_gripper(Simulator& simulator, const GripperSetup& setup) {
    int n = 0;
    if (setup.tcp) {
        n = simulator.add_custom_tcp(setup.options, setup.port);
    } else if (setup.wire == Wire::modbus) {
        n = simulator.add_modbus_pty(setup.options);
    } else {
        n = simulator.add_custom_pty(setup.options);
    }
    if (n == 0) {
        return false;
    }
    if (!setup.tcp) {
        simulator.set_announce_file(n, setup.announce_file);
        simulator.set_link(n, setup.link);
    }
    if (setup.fault != Fault::none) {
        simulator.set_fault(n, setup.fault);
    }
    std::cout << (setup.tcp ? "TCP is " : "PTY is ") << simulator.endpoint(n) << std::endl;
    return true;
}

// SIGINT and SIGTERM are taken by sigwait() in main, so every thread must block them.
sigset_t block_stop_signals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    // A closed control client must not kill the process; a background job reading the terminal
    // gets an error (ending the stdin channel) instead of being stopped.
    signal(SIGPIPE, SIG_IGN);
    signal(SIGTTIN, SIG_IGN);
    return signals;
}

void wait_for_stop(const sigset_t& signals) {
    int received = 0;
    sigwait(&signals, &received);
}

int run(const CommandLine& command_line, const sigset_t& signals) {
    // The socket exists before the first announcement, so a client may use it at once.
    ControlSocket control_socket;
    const std::string& socket_path = command_line.control_socket();
    if (!socket_path.empty() && !control_socket.open(socket_path)) {
        std::cerr << "gripper-sim: cannot listen on " << socket_path << "\n";
        return 1;
    }
    Simulator simulator;
    simulator.set_trace(command_line.trace());
    for (const auto& setup : command_line.grippers()) {
        if (!start_gripper(simulator, setup)) {
            std::cerr << "gripper-sim: cannot open a port for gripper " << simulator.count() + 1
                      << "\n";
            return 1;
        }
    }
    int stop[2];
    if (::pipe2(stop, O_CLOEXEC) != 0) {
        return 1;
    }
    const LineHandler handle = [&simulator](const std::string& line) {
        const std::string reply = simulator.command(line);
        if (simulator.quit_requested()) {
            ::kill(::getpid(), SIGTERM);
        }
        return reply;
    };
    std::thread console([&] { serve_lines(STDIN_FILENO, STDOUT_FILENO, stop[0], handle); });
    std::thread control;
    if (!socket_path.empty()) {
        control = std::thread([&] { control_socket.serve(stop[0], handle); });
    }
    wait_for_stop(signals);
    const ssize_t written = ::write(stop[1], "x", 1);
    (void)written;
    console.join();
    if (control.joinable()) {
        control.join();
    }
    ::close(stop[0]);
    ::close(stop[1]);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    CommandLine command_line;
    if (!command_line.parse(std::vector<std::string>(argv + 1, argv + argc))) {
        std::cerr << "gripper-sim: " << command_line.error() << " (try --help)\n";
        return 2;
    }
    if (command_line.help()) {
        std::cout << CommandLine::usage();
        return 0;
    }
    return run(command_line, block_stop_signals());
}
