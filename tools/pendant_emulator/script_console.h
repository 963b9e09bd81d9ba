#ifndef TOOLS_PENDANT_EMULATOR_SCRIPT_CONSOLE_H
#define TOOLS_PENDANT_EMULATOR_SCRIPT_CONSOLE_H

#include <QStringList>
#include <QWidget>

class QComboBox;
class QPlainTextEdit;
class ScriptThread;
class Transcript;

// One script command at a time, typed or picked from a list: a whole line
// script_common_interface("<plug-in>", "<command>") or just "<command>" for the default
// plug-in. Commands go to the script thread; the view shows the transcript, the program's
// commands included.
class ScriptConsole : public QWidget {
    Q_OBJECT

public:
    ScriptConsole(ScriptThread& script, Transcript& transcript, QWidget* parent = nullptr);

    void set_default_plugin(const QString& name) { default_plugin_ = name; }
    void set_suggestions(const QStringList& commands);
    // Sends a line; returns the command's number, 0 when the line is not understood.
    int send(const QString& text);

private:
    void append(const QString& line);

    ScriptThread& script_;
    Transcript& transcript_;
    QString default_plugin_;
    QComboBox* input_ = nullptr;
    QPlainTextEdit* view_ = nullptr;
};

#endif
