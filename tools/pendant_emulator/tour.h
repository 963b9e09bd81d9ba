#ifndef TOOLS_PENDANT_EMULATOR_TOUR_H
#define TOOLS_PENDANT_EMULATOR_TOUR_H

#include <QObject>
#include <QStringList>
#include <QVector>

#include "tools/pendant_emulator/dialog_answerer.h"
#include "tools/pendant_emulator/script_result.h"
#include "tools/pendant_emulator/tour_checks.h"

class EmulatorWindow;

// The scripted tour of the gripper plug-in in the emulator: load, connect both grippers by
// script, activate, insert and save a two-step program, run it (close on an object, open) with
// a pause, stop a run during a move, lose the object, break and restore a link, let a link
// come back by itself with "Reconnect automatically", open the saved program again, disconnect.
// Each stage checks what it should have done and leaves a picture; the transcript keeps every
// command with its answer. The tour ends the application with 0 only when every stage passed (or
// leaves the window open with keep_open). After activating, one stage shows the page in
// Simplified Chinese.
class Tour : public QObject {
    Q_OBJECT

public:
    Tour(EmulatorWindow& window, const QString& folder, bool keep_open);

    void run();
    int exit_code() const { return passed_ ? 0 : 1; }

private:
    bool stage_load();
    bool stage_connect();
    bool stage_activate();
    // The page in Simplified Chinese while shown, then in English again.
    bool stage_language();
    bool stage_program();
    bool stage_run();
    bool stage_stop();
    bool stage_faults();
    bool stage_reconnect();
    bool stage_reopen();
    bool stage_disconnect();

    bool run_stage(const QString& name, bool (Tour::*stage)());
    bool insert_step(const QString& position, const QString& picture);
    bool start_program_and_wait_for_move();
    // Paused in step 1: the gripper closes on its object, the page shows it, the step waits.
    bool held_while_paused();
    bool resume_to_the_end();
    bool wait_for_program_end(int timeout_ms);
    bool check_old_program();
    bool lose_and_restore_link();
    // Clicks "Reconnect automatically" on the Setting tab until it shows checked.
    bool tick_reconnect_box(bool checked);
    // The position of gripper 1's fingers as the simulator has them, as the page writes it.
    QString held_position();
    void finish();

    EmulatorWindow& window_;
    const QString folder_;
    const bool keep_open_;
    TourChecks checks_;
    DialogAnswerer answerer_;
    QStringList summary_;
    QStringList script_lines_;
    QVector<ScriptResult> line_results_;
    QString outcome_;
    int stage_number_ = 0;
    bool passed_ = false;
};

#endif
