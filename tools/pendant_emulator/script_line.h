#ifndef TOOLS_PENDANT_EMULATOR_SCRIPT_LINE_H
#define TOOLS_PENDANT_EMULATOR_SCRIPT_LINE_H

#include <QString>

// One robot-script line that calls a plug-in: script_common_interface("<name>", "<command>").
// The script engine hands <command> to the plug-in object named <name>.
struct ScriptLine {
    QString plugin_name;
    QString command;

    // Reads a line; on failure error says what is wrong and line is left alone. Blanks around
    // the parts are allowed; inside the quotes \" and \\ stand for " and \.
    static bool parse(const QString& text, ScriptLine& line, QString& error);
    // The line as the script engine writes it.
    QString text() const;
};

#endif
