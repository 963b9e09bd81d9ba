#ifndef TESTS_TEST_SUPPORT_QT_LOG_CAPTURE_H
#define TESTS_TEST_SUPPORT_QT_LOG_CAPTURE_H

#include <QMutex>
#include <QMutexLocker>
#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QtGlobal>

// Collects the plug-in's log lines as "LEVEL text" (for example "W NULL == device") from the
// framework messages its logging back end emits. Install it before the plug-in is loaded: the
// plug-in's handler then hands every message on to this one. One per process.
class QtLogCapture {
public:
    static void install() { qInstallMessageHandler(&QtLogCapture::receive); }

    static QStringList lines() {
        QMutexLocker locker(&mutex());
        return store();
    }

    static int count(const QString& line) { return lines().count(line); }

    static bool contains(const QString& line) { return lines().contains(line); }

    static void clear() {
        QMutexLocker locker(&mutex());
        store().clear();
    }

private:
    // A back-end line reads "LEVEL_FILE_LINE:TEXT", quoted and escaped by the debug stream.
    static void receive(QtMsgType, const QMessageLogContext&, const QString& message) {
        static const QRegularExpression form(QStringLiteral("^\"([DIWE])_.*?_(\\d+):(.*)\"$"),
                                             QRegularExpression::DotMatchesEverythingOption);
        const QRegularExpressionMatch match = form.match(message);
        if (!match.hasMatch()) {
            return;
        }
        QString text = match.captured(3);
        text.replace(QStringLiteral("\\\""), QStringLiteral("\""));
        text.replace(QStringLiteral("\\\\"), QStringLiteral("\\"));
        QMutexLocker locker(&mutex());
        store().append(match.captured(1) + QLatin1Char(' ') + text);
    }

    static QMutex& mutex() {
        static QMutex instance;
        return instance;
    }

    static QStringList& store() {
        static QStringList instance;
        return instance;
    }
};

#endif
