#include "bench/pages/page_session.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSettings>
#include <QTemporaryDir>
#include <QThread>

#include <cstdarg>
#include <cstdio>

#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "src/plugins/templateplugin/common/settings.h"

namespace page_session {

namespace {

void print_log(const char* level, const char* file, unsigned int line, const char* format,
               va_list args) {
    std::fprintf(stderr, "%s %s:%u ", level, file, line);
    std::vfprintf(stderr, format, args);
    std::fputc('\n', stderr);
}

}  // namespace

void log_to_stderr() {
    register_simple_logger(&print_log);
}

void use_resolution(QTemporaryDir& folder, const QString& resolution) {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    Settings settings;
    settings.setValue(QStringLiteral("Displays/Resolution"), resolution);
    settings.sync();
}

bool wait_for(const std::function<bool()>& condition, int timeout_ms) {
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > timeout_ms) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(2);
    }
    return true;
}

}  // namespace page_session
