#ifndef TOOLS_PENDANT_EMULATOR_PROGRAM_RUNNER_H
#define TOOLS_PENDANT_EMULATOR_PROGRAM_RUNNER_H

#include <QObject>
#include <QVector>

#include "tools/pendant_emulator/script_result.h"

namespace ExtensionSystem {
class IPlugin;
}
class ScriptThread;

// Runs a compiled program as the pendant does: Run calls every plug-in's initParms and
// enableEdit(false) and sends the lines one by one to the script thread; Pause, Resume and Stop
// call pausePlugin, continuePlugin and stopPlugin. A paused program starts no further line (the
// running one is held by its plug-in); a stopped one ends when the running line returns. At the
// end every plug-in gets stopPlugin and enableEdit(true). A line that returns false ends the
// program, as a failed script call does. Lives on the interface thread.
class ProgramRunner : public QObject {
    Q_OBJECT

public:
    enum class State { stopped, running, paused, stopping };
    Q_ENUM(State)

    explicit ProgramRunner(ScriptThread& script, QObject* parent = nullptr);

    void set_plugins(const QVector<ExtensionSystem::IPlugin*>& plugins) { plugins_ = plugins; }
    // False (and nothing happens) while a program runs or when there is no line.
    bool run(const QVector<ScriptLine>& lines);
    void pause();
    void resume();
    void stop();

    State state() const { return state_; }
    // "Stopped", "Running", "Paused" or "Stopping".
    static QString state_name(State state);
    // Index of the line running or next to run; -1 when stopped.
    int current_line() const { return state_ == State::stopped ? -1 : next_line_ - 1; }

signals:
    void state_changed(ProgramRunner::State state);
    void line_started(int index, const ScriptResult& command);
    void line_finished(int index, const ScriptResult& result);
    // "completed", "stopped at line N" or why the program ended.
    void program_ended(const QString& outcome);

private:
    void on_started(const ScriptResult& command);
    void on_finished(const ScriptResult& result);
    void start_next_line();
    void end(const QString& outcome);
    void set_state(State state);
    template <typename Hook>
    void call_hook(Hook hook);

    ScriptThread& script_;
    QVector<ExtensionSystem::IPlugin*> plugins_;
    QVector<ScriptLine> lines_;
    State state_ = State::stopped;
    int next_line_ = 0;
    int command_number_ = 0;
    bool stop_hook_called_ = false;
};

#endif
