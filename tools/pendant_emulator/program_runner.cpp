#include "tools/pendant_emulator/program_runner.h"

#include "platform/iplugin.h"
#include "tools/pendant_emulator/script_thread.h"

ProgramRunner::ProgramRunner(ScriptThread& script, QObject* parent)
    : QObject(parent), script_(script) {
    connect(&script_, &ScriptThread::command_started, this, &ProgramRunner::on_started);
    connect(&script_, &ScriptThread::command_finished, this, &ProgramRunner::on_finished);
}

bool ProgramRunner::run(const QVector<ScriptLine>& lines) {
    if (state_ != State::stopped || lines.isEmpty()) {
        return false;
    }
    lines_ = lines;
    next_line_ = 0;
    stop_hook_called_ = false;
    call_hook([](ExtensionSystem::IPlugin* plugin) { plugin->initParms(); });
    call_hook([](ExtensionSystem::IPlugin* plugin) { plugin->enableEdit(false); });
    set_state(State::running);
    start_next_line();
    return true;
}

void ProgramRunner::pause() {
    if (state_ != State::running) {
        return;
    }
    call_hook([](ExtensionSystem::IPlugin* plugin) { plugin->pausePlugin(); });
    set_state(State::paused);
}

void ProgramRunner::resume() {
    if (state_ != State::paused) {
        return;
    }
    call_hook([](ExtensionSystem::IPlugin* plugin) { plugin->continuePlugin(); });
    set_state(State::running);
    if (command_number_ == 0) {
        start_next_line();
    }
}

void ProgramRunner::stop() {
    if (state_ == State::stopped || state_ == State::stopping) {
        return;
    }
    call_hook([](ExtensionSystem::IPlugin* plugin) { plugin->stopPlugin(); });
    stop_hook_called_ = true;
    if (command_number_ == 0) {
        end(QString("stopped before line %1").arg(next_line_ + 1));
        return;
    }
    set_state(State::stopping);
}

QString ProgramRunner::state_name(State state) {
    switch (state) {
        case State::running:
            return "Running";
        case State::paused:
            return "Paused";
        case State::stopping:
            return "Stopping";
        case State::stopped:
            break;
    }
    return "Stopped";
}

void ProgramRunner::on_started(const ScriptResult& command) {
    if (command_number_ != 0 && command.number == command_number_) {
        emit line_started(next_line_ - 1, command);
    }
}

void ProgramRunner::on_finished(const ScriptResult& result) {
    if (command_number_ == 0 || result.number != command_number_) {
        return;
    }
    command_number_ = 0;
    const int index = next_line_ - 1;
    emit line_finished(index, result);
    if (!result.error.isEmpty() || !result.returned) {
        end(QString("line %1 failed: %2")
                .arg(index + 1)
                .arg(result.error.isEmpty() ? "the plug-in returned false" : result.error));
    } else if (state_ == State::stopping) {
        end(QString("stopped at line %1").arg(index + 1));
    } else if (next_line_ == lines_.size()) {
        end("completed");
    } else if (state_ == State::running) {
        start_next_line();
    }
}

void ProgramRunner::start_next_line() {
    command_number_ = script_.submit(lines_[next_line_]);
    ++next_line_;
}

void ProgramRunner::end(const QString& outcome) {
    if (!stop_hook_called_) {
        call_hook([](ExtensionSystem::IPlugin* plugin) { plugin->stopPlugin(); });
    }
    call_hook([](ExtensionSystem::IPlugin* plugin) { plugin->enableEdit(true); });
    set_state(State::stopped);
    emit program_ended(outcome);
}

void ProgramRunner::set_state(State state) {
    state_ = state;
    emit state_changed(state);
}

template <typename Hook>
void ProgramRunner::call_hook(Hook hook) {
    for (ExtensionSystem::IPlugin* plugin : plugins_) {
        hook(plugin);
    }
}
