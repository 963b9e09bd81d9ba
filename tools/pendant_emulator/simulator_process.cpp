#include "tools/pendant_emulator/simulator_process.h"

#include <QDeadlineTimer>

SimulatorProcess::SimulatorProcess(const QString& program) : program_(program) {}

SimulatorProcess::~SimulatorProcess() {
    stop();
}

bool SimulatorProcess::start(const QStringList& arguments, const QString& log_file, int timeout_ms,
                             QString& error) {
    process_.setStandardErrorFile(log_file.isEmpty() ? QProcess::nullDevice() : log_file);
    process_.start(program_, arguments);
    if (!process_.waitForStarted(timeout_ms)) {
        error = QString("cannot start %1: %2").arg(program_, process_.errorString());
        return false;
    }
    const QString line = read_line(timeout_ms);
    if (!take_announcement(line)) {
        error = QString("%1 %2 did not announce its port (it said \"%3\")")
                    .arg(program_, arguments.join(' '), line);
        stop();
        return false;
    }
    return true;
}

QString SimulatorProcess::command(const QString& line, int timeout_ms) {
    if (process_.state() != QProcess::Running) {
        return QString();
    }
    process_.write(line.toUtf8() + '\n');
    QDeadlineTimer deadline(timeout_ms);
    QString reply = read_line(timeout_ms);
    while (take_announcement(reply) && !deadline.hasExpired()) {
        reply = read_line(static_cast<int>(deadline.remainingTime()));
    }
    return reply;
}

void SimulatorProcess::stop() {
    if (process_.state() == QProcess::NotRunning) {
        return;
    }
    process_.write("quit\n");
    if (!process_.waitForFinished(2000)) {
        process_.kill();
        process_.waitForFinished(2000);
    }
}

QString SimulatorProcess::read_line(int timeout_ms) {
    QDeadlineTimer deadline(timeout_ms);
    while (!process_.canReadLine()) {
        if (deadline.hasExpired() ||
            !process_.waitForReadyRead(static_cast<int>(deadline.remainingTime()))) {
            return QString();
        }
    }
    return QString::fromUtf8(process_.readLine()).trimmed();
}

bool SimulatorProcess::take_announcement(const QString& line) {
    for (const char* prefix : {"PTY is ", "TCP is "}) {
        if (line.startsWith(prefix)) {
            endpoint_ = line.mid(static_cast<int>(qstrlen(prefix)));
            return true;
        }
    }
    return false;
}
