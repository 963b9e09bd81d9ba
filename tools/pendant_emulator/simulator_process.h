#ifndef TOOLS_PENDANT_EMULATOR_SIMULATOR_PROCESS_H
#define TOOLS_PENDANT_EMULATOR_SIMULATOR_PROCESS_H

#include <QProcess>
#include <QString>
#include <QStringList>

// One gripper-sim program in a child process, so that each simulated gripper is a device of its
// own. Its stdin and stdout are the simulator's control channel; its log goes to a file.
class SimulatorProcess {
public:
    explicit SimulatorProcess(const QString& program);
    ~SimulatorProcess();
    SimulatorProcess(const SimulatorProcess&) = delete;
    SimulatorProcess& operator=(const SimulatorProcess&) = delete;

    // Starts the program and waits for its "PTY is <path>" or "TCP is <address>" line.
    bool start(const QStringList& arguments, const QString& log_file, int timeout_ms,
               QString& error);
    // "/dev/pts/N" or "127.0.0.1:PORT".
    const QString& endpoint() const { return endpoint_; }
    // Sends one control command ("state 1", "object 1 600", "drop 1", ...) and returns its reply
    // line; empty when none came within timeout_ms.
    QString command(const QString& line, int timeout_ms = 2000);
    // Asks the program to quit and reaps it; kills it if it does not end.
    void stop();

private:
    QString read_line(int timeout_ms);
    // Takes an announcement line ("PTY is ...", which a reopened port sends again).
    bool take_announcement(const QString& line);

    QString program_;
    QProcess process_;
    QString endpoint_;
};

#endif
