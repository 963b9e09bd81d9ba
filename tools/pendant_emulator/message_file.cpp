#include "tools/pendant_emulator/message_file.h"

#include <QFile>
#include <QMutex>
#include <QMutexLocker>

namespace {

QFile& file() {
    static QFile the_file;
    return the_file;
}

QMutex& mutex() {
    static QMutex the_mutex;
    return the_mutex;
}

void write_message(QtMsgType, const QMessageLogContext&, const QString& message) {
    QMutexLocker locker(&mutex());
    file().write(message.toUtf8() + '\n');
    file().flush();
}

}  // namespace

bool MessageFile::install(const QString& path) {
    file().setFileName(path);
    if (!file().open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) {
        return false;
    }
    qInstallMessageHandler(write_message);
    return true;
}
