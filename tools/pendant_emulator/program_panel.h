#ifndef TOOLS_PENDANT_EMULATOR_PROGRAM_PANEL_H
#define TOOLS_PENDANT_EMULATOR_PROGRAM_PANEL_H

#include <QString>
#include <QVector>
#include <QWidget>
#include <map>

#include "tools/pendant_emulator/program_runner.h"
#include "tools/pendant_emulator/program_steps.h"

class AbsCondInfo;
class QBoxLayout;
class QComboBox;
class QLabel;
class QPushButton;
class QTableWidget;
class ScriptThread;
class StepEditorDialog;
struct LoadedPlugin;

// The pendant's program editor in small: the steps of one program with the script line each
// compiles to; inserting and editing a step through its plug-in's editor, copying, removing and
// checking steps; saving and opening program files; and Run, Pause, Resume and Stop.
class ProgramPanel : public QWidget {
    Q_OBJECT

public:
    // Row of a step being inserted (the editor is open, no step exists yet).
    static const int INSERTING = -1;
    static const int NOT_EDITING = -2;

    ProgramPanel(ScriptThread& script, QWidget* parent = nullptr);

    // The plug-ins whose category offers program steps become step types.
    void set_plugins(const QVector<LoadedPlugin>& plugins);

    // Sets the pendant's current condition type and opens the type's editor.
    bool insert_step(const QString& type);
    // Opens the editor filled with the step (updateCondForm).
    bool edit_step(int row);
    bool copy_step(int row);
    bool remove_step(int row);
    bool check_step(int row);
    bool save_program(const QString& path);
    bool open_program(const QString& path);
    bool run_program();

    ProgramRunner& runner() { return runner_; }
    const ProgramSteps& steps() const { return steps_; }
    // The editor window of a step type (made on first use), or null.
    StepEditorDialog* editor(const QString& type);
    int editing_row() const { return editing_row_; }
    int selected_row() const;
    // The sentence about the last action.
    QString status() const;

signals:
    // A sentence about what the last action did, for the transcript.
    void status_changed(const QString& text);

private:
    void build();
    QPushButton* add_button(const QString& text, QBoxLayout* row, void (ProgramPanel::*slot)());
    void on_cond_info_saved(AbsCondInfo* record);
    void on_cond_item_removed();
    void on_line_started(int index);
    void on_line_finished(int index, const ScriptResult& result);
    void show_result(int index, const QString& text);
    void show_status();
    void on_state_changed();
    void close_editor();
    void refresh();
    void update_buttons();
    void set_status(const QString& text);
    bool step_selected(int row);
    void click_insert();
    void click_edit();
    void click_copy();
    void click_remove();
    void click_check();
    void click_open();
    void click_save();
    void click_run();
    void click_pause();
    void click_resume();
    void click_stop();

    ProgramSteps steps_;
    ProgramRunner runner_;
    std::map<QString, StepEditorDialog*> editors_;
    QVector<ExtensionSystem::IPlugin*> plugins_;
    int editing_row_ = NOT_EDITING;
    QString editing_type_;
    QString message_;
    // What each step returned and answered in the last run.
    QVector<QString> results_;
    QComboBox* type_box_ = nullptr;
    QTableWidget* table_ = nullptr;
    QLabel* status_ = nullptr;
    QPushButton* insert_ = nullptr;
    QPushButton* edit_ = nullptr;
    QPushButton* copy_ = nullptr;
    QPushButton* remove_ = nullptr;
    QPushButton* check_ = nullptr;
    QPushButton* open_ = nullptr;
    QPushButton* save_ = nullptr;
    QPushButton* run_ = nullptr;
    QPushButton* pause_ = nullptr;
    QPushButton* resume_ = nullptr;
    QPushButton* stop_ = nullptr;
};

#endif
