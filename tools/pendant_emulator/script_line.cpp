#include "tools/pendant_emulator/script_line.h"

#include <QRegularExpression>

namespace {

const char* const FUNCTION = "script_common_interface";

QString unescape(const QString& quoted) {
    QString text;
    for (int i = 0; i < quoted.size(); ++i) {
        if (quoted[i] == '\\' && i + 1 < quoted.size()) {
            ++i;
        }
        text += quoted[i];
    }
    return text;
}

QString escape(QString text) {
    return text.replace("\\", "\\\\").replace("\"", "\\\"");
}

}  // namespace

bool ScriptLine::parse(const QString& text, ScriptLine& line, QString& error) {
    static const QRegularExpression call(
        QString(
            "^\\s*%1\\s*\\(\\s*\"((?:[^\"\\\\]|\\\\.)*)\"\\s*,\\s*\"((?:[^\"\\\\]|\\\\.)*)\"\\s*"
            "\\)\\s*;?\\s*$")
            .arg(FUNCTION));
    const QRegularExpressionMatch match = call.match(text);
    if (!match.hasMatch()) {
        error = QString("not a call %1(\"<plug-in>\", \"<command>\")").arg(FUNCTION);
        return false;
    }
    const QString name = unescape(match.captured(1));
    if (name.trimmed().isEmpty()) {
        error = "the plug-in name is empty";
        return false;
    }
    line.plugin_name = name;
    line.command = unescape(match.captured(2));
    return true;
}

QString ScriptLine::text() const {
    return QString("%1(\"%2\", \"%3\")").arg(FUNCTION, escape(plugin_name), escape(command));
}
