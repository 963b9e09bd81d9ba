#include "src/plugins/templateplugin/custom_simple_logger.h"

#include <QDateTime>
#include <QDebug>
#include <QFile>
#include <QMutex>
#include <QMutexLocker>

#include <cstdio>
#include <vector>

#include "gripper/gripper_common/simple_logger/simple_logger.h"

QtMessageHandler g_default_qt_message_halder_ = nullptr;

namespace {

const char kLogFileName[] = "./zanther_gripper_log.log";
const qint64 kLogFileMaxSize = 10485760;

// Created on first use and never destroyed, so that messages sent while the process tears down
// its static objects still find a valid mutex.
QMutex& log_mutex() {
    static QMutex* mutex = new QMutex();
    return *mutex;
}

QString expand(const char* format, va_list args) {
    va_list length_args;
    va_copy(length_args, args);
    const int length = vsnprintf(nullptr, 0, format, length_args);
    va_end(length_args);
    if (length < 0) {
        return QString();
    }
    std::vector<char> text(static_cast<size_t>(length) + 1);
    vsnprintf(text.data(), text.size(), format, args);
    return QString::fromUtf8(text.data(), length);
}

QString tag_of(QtMsgType type) {
    switch (type) {
        case QtDebugMsg:
            return QStringLiteral("[DEBUG]");
        case QtWarningMsg:
            return QStringLiteral("[WARN]");
        case QtCriticalMsg:
            return QStringLiteral("[ERROR]");
        case QtFatalMsg:
            return QStringLiteral("Fatal:");
        case QtInfoMsg:
            return QStringLiteral("[INFO]");
    }
    return QString();
}

// Opens and closes the file for every line; past the size limit the file is deleted so that the
// next line starts a new one.
void append_line(const QString& line) {
    QFile file(QString::fromLatin1(kLogFileName));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append)) {
        return;
    }
    file.write(line.toUtf8() + "\r\n");
    file.flush();
    if (file.size() > kLogFileMaxSize) {
        file.remove();
    }
}

}  // namespace

void custom_simple_logger(const char* level, const char* file, unsigned int line,
                          const char* format, va_list args) {
    const QString text = QString::fromUtf8(level) + QLatin1Char('_') + QString::fromUtf8(file) +
                         QLatin1Char('_') + QString::number(line) + QLatin1Char(':') +
                         expand(format, args);
    QMessageLogger(file, static_cast<int>(line), nullptr, "default").debug() << text;
}

// A fatal message is only written here. Ending the process is left to the framework: after the
// handlers return from a fatal message it aborts, so the line is flushed to the file first.
void outputMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    {
        QMutexLocker locker(&log_mutex());
        const QString time =
            QDateTime::currentDateTime().toString(QStringLiteral("yyyy/MM/dd hh:mm:ss"));
        append_line(QStringLiteral("%1 %2 - %3").arg(time, tag_of(type), message));
    }
    if (nullptr != g_default_qt_message_halder_) {
        g_default_qt_message_halder_(type, context, message);
    }
}

void install_output_message() {
    const QtMessageHandler previous = qInstallMessageHandler(outputMessage);
    if (outputMessage != previous) {
        g_default_qt_message_halder_ = previous;
    }
}

void uninstall_output_message() {
    const QtMessageHandler current = qInstallMessageHandler(g_default_qt_message_halder_);
    if (outputMessage != current) {
        qInstallMessageHandler(current);
        return;
    }
    g_default_qt_message_halder_ = nullptr;
}

void install_gripper_logging() {
    register_simple_logger(custom_simple_logger);
    install_output_message();
}
