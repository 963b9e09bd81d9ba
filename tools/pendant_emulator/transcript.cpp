#include "tools/pendant_emulator/transcript.h"

namespace {

QString stamp(qint64 ms) {
    return QString("[%1]").arg(ms / 1000.0, 8, 'f', 3);
}

}  // namespace

Transcript::Transcript(const QElapsedTimer& clock, QObject* parent)
    : QObject(parent), clock_(clock) {}

bool Transcript::open_file(const QString& path) {
    file_.setFileName(path);
    if (!file_.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) {
        return false;
    }
    for (const QString& line : lines_) {
        file_.write(line.toUtf8() + '\n');
    }
    file_.flush();
    return true;
}

QString Transcript::format(const ScriptResult& result) {
    const QString sent =
        QString("%1 %2: %3 -> ")
            .arg(stamp(result.finished_ms), result.line.plugin_name, result.line.command);
    if (!result.error.isEmpty()) {
        return sent + "not run: " + result.error;
    }
    return sent + QString("%1 \"%2\" (%3 ms)")
                      .arg(result.returned ? "true" : "false", result.answer)
                      .arg(result.finished_ms - result.started_ms);
}

void Transcript::command(const ScriptResult& result) {
    add(format(result));
}

void Transcript::note(const QString& text) {
    add(QString("%1 %2").arg(stamp(clock_.elapsed()), text));
}

void Transcript::heading(const QString& text) {
    add(QString());
    add(QString("== %1").arg(text));
}

void Transcript::add(const QString& line) {
    lines_.append(line);
    if (file_.isOpen()) {
        file_.write(line.toUtf8() + '\n');
        file_.flush();
    }
    emit line_added(line);
}
