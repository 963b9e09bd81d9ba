#include "src/plugins/templateplugin/script_command.h"

namespace {

QString without_blanks(const QString& line) {
    QString text = line.simplified();
    text.remove(QLatin1Char(' '), Qt::CaseSensitive);
    return text;
}

}  // namespace

ScriptCommand::ScriptCommand(const QString& line) {
    const QString text = without_blanks(line);
    name_ = text.section(QLatin1Char('|'), 0, 0);
    arguments_ = text.section(QLatin1Char('|'), 1, 1);
}

QString ScriptCommand::field(int k) const {
    return arguments_.section(QLatin1Char(','), k, k);
}

int ScriptCommand::number(int k) const {
    return field(k).toInt(nullptr, 10);
}

int ScriptCommand::device_index() const {
    return static_cast<int>(static_cast<unsigned int>(number(0)) - 1U);
}
