#include "tools/pendant_emulator/program_panel.h"

#include <QComboBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include "platform/abscondinfo.h"
#include "platform/pluginmanager.h"
#include "tools/pendant_emulator/condition_interface.h"
#include "tools/pendant_emulator/plugin_folder_loader.h"
#include "tools/pendant_emulator/step_editor_dialog.h"

namespace {

const char* const CONDITION_CATEGORY = "Programming/Condition";
const char* const PROGRAM_FILTER = "Programs (*.json);;All files (*)";
// Columns: step, alias, type, script line, result of the last run.
const int RESULT_COLUMN = 4;

}  // namespace

ProgramPanel::ProgramPanel(ScriptThread& script, QWidget* parent)
    : QWidget(parent), runner_(script) {
    qRegisterMetaType<AbsCondInfo*>();
    build();
    ExtensionSystem::PluginManager* manager = ExtensionSystem::PluginManager::instance();
    connect(manager, &ExtensionSystem::PluginManager::condInfoSaved, this,
            &ProgramPanel::on_cond_info_saved);
    connect(manager, &ExtensionSystem::PluginManager::condItemRemoved, this,
            &ProgramPanel::on_cond_item_removed);
    connect(&runner_, &ProgramRunner::line_started, this, &ProgramPanel::on_line_started);
    connect(&runner_, &ProgramRunner::line_finished, this, &ProgramPanel::on_line_finished);
    connect(&runner_, &ProgramRunner::state_changed, this, &ProgramPanel::on_state_changed);
    connect(&runner_, &ProgramRunner::program_ended, this,
            [this](const QString& outcome) { set_status("Program ended: " + outcome); });
    refresh();
}

void ProgramPanel::set_plugins(const QVector<LoadedPlugin>& plugins) {
    plugins_.clear();
    type_box_->clear();
    for (const LoadedPlugin& loaded : plugins) {
        plugins_.append(loaded.plugin);
        if (loaded.category.contains(CONDITION_CATEGORY)) {
            type_box_->addItem(loaded.name);
        }
    }
    runner_.set_plugins(plugins_);
    update_buttons();
}

bool ProgramPanel::insert_step(const QString& type) {
    StepEditorDialog* dialog = editor(type);
    if (dialog == nullptr || runner_.state() != ProgramRunner::State::stopped) {
        return false;
    }
    ExtensionSystem::PluginManager::setCurCondType(type);
    editing_row_ = INSERTING;
    editing_type_ = type;
    dialog->show();
    dialog->raise();
    set_status(QString("Inserting a %1 step: set its values and confirm in the editor").arg(type));
    return true;
}

bool ProgramPanel::edit_step(int row) {
    if (!step_selected(row) || runner_.state() != ProgramRunner::State::stopped) {
        return false;
    }
    AbsCondInfo* record = steps_.at(row);
    const QString type = record->getCondType();
    StepEditorDialog* dialog = editor(type);
    if (dialog == nullptr) {
        return false;
    }
    ExtensionSystem::PluginManager::setCurCondType(type);
    ConditionInterface condition(ExtensionSystem::PluginManager::getObjectByName(type));
    if (!condition.update_cond_form(record)) {
        set_status(condition.last_error());
        return false;
    }
    editing_row_ = row;
    editing_type_ = type;
    dialog->show();
    dialog->raise();
    set_status(QString("Editing step %1 (%2)").arg(row + 1).arg(record->getAlias()));
    return true;
}

bool ProgramPanel::copy_step(int row) {
    QString error;
    if (!step_selected(row)) {
        return false;
    }
    if (!steps_.copy(row, error)) {
        set_status(QString("Step %1 not copied: %2").arg(row + 1).arg(error));
        return false;
    }
    refresh();
    table_->selectRow(row + 1);
    set_status(QString("Step %1 copied to step %2").arg(row + 1).arg(row + 2));
    return true;
}

bool ProgramPanel::remove_step(int row) {
    if (!step_selected(row) || runner_.state() != ProgramRunner::State::stopped) {
        return false;
    }
    const QString alias = steps_.at(row)->getAlias();
    steps_.remove(row);
    refresh();
    set_status(QString("Step %1 (%2) removed").arg(row + 1).arg(alias));
    return true;
}

bool ProgramPanel::check_step(int row) {
    QString error;
    if (!step_selected(row)) {
        return false;
    }
    const bool valid = steps_.check(row, error);
    set_status(valid ? QString("Step %1 is valid").arg(row + 1)
                     : QString("Step %1 is not valid: %2").arg(row + 1).arg(error));
    return valid;
}

bool ProgramPanel::save_program(const QString& path) {
    QString error;
    if (!steps_.save(path, error)) {
        set_status("Program not saved: " + error);
        return false;
    }
    set_status(QString("Program of %1 steps saved to %2").arg(steps_.count()).arg(path));
    return true;
}

bool ProgramPanel::open_program(const QString& path) {
    QString error;
    if (runner_.state() != ProgramRunner::State::stopped) {
        return false;
    }
    if (!steps_.open(path, error)) {
        set_status("Program not opened: " + error);
        return false;
    }
    close_editor();
    refresh();
    set_status(QString("Program of %1 steps opened from %2").arg(steps_.count()).arg(path));
    return true;
}

bool ProgramPanel::run_program() {
    QVector<ScriptLine> lines;
    QString error;
    if (runner_.state() != ProgramRunner::State::stopped) {
        return false;
    }
    if (steps_.count() == 0 || !steps_.compile(lines, error)) {
        set_status("Program not run: " + (error.isEmpty() ? QString("it has no step") : error));
        return false;
    }
    close_editor();
    results_.fill(QString(), steps_.count());
    refresh();
    runner_.run(lines);
    set_status(QString("Program of %1 steps started").arg(lines.size()));
    return true;
}

StepEditorDialog* ProgramPanel::editor(const QString& type) {
    const auto found = editors_.find(type);
    if (found != editors_.end()) {
        return found->second;
    }
    QObject* plugin = ExtensionSystem::PluginManager::getObjectByName(type);
    if (plugin == nullptr) {
        set_status(QString("No plug-in named \"%1\" is loaded").arg(type));
        return nullptr;
    }
    auto* dialog = new StepEditorDialog(type, this);
    ConditionInterface condition(plugin);
    QWidget* widget = condition.create_cond_ui(dialog);
    if (widget == nullptr) {
        set_status(condition.last_error().isEmpty() ? "The plug-in made no step editor"
                                                    : condition.last_error());
        delete dialog;
        return nullptr;
    }
    dialog->set_editor(widget);
    editors_[type] = dialog;
    return dialog;
}

int ProgramPanel::selected_row() const {
    const QList<QTableWidgetItem*> items = table_->selectedItems();
    return items.isEmpty() ? -1 : items.first()->row();
}

QString ProgramPanel::status() const {
    return message_;
}

void ProgramPanel::on_cond_info_saved(AbsCondInfo* record) {
    if (editing_row_ >= 0 && editing_row_ < steps_.count()) {
        steps_.replace(editing_row_, record);
        set_status(QString("Step %1 saved").arg(editing_row_ + 1));
    } else {
        const int selected = selected_row();
        const int row = selected < 0 ? steps_.count() : selected + 1;
        steps_.insert(row, record);
        editing_row_ = row;
        set_status(QString("Step %1 (%2) inserted").arg(row + 1).arg(record->getAlias()));
    }
    const int row = editing_row_;
    close_editor();
    refresh();
    table_->selectRow(row);
}

void ProgramPanel::on_cond_item_removed() {
    if (editing_row_ >= 0 && editing_row_ < steps_.count()) {
        steps_.remove(editing_row_);
        set_status(QString("Step %1 removed by its editor").arg(editing_row_ + 1));
    } else {
        set_status("Step not inserted");
    }
    close_editor();
    refresh();
}

void ProgramPanel::on_line_started(int index) {
    show_result(index, "running");
    table_->selectRow(index);
    set_status(QString("Running step %1 of %2").arg(index + 1).arg(steps_.count()));
}

void ProgramPanel::on_line_finished(int index, const ScriptResult& result) {
    show_result(index, result.error.isEmpty()
                           ? QString("%1 \"%2\" (%3 ms)")
                                 .arg(result.returned ? "true" : "false", result.answer)
                                 .arg(result.finished_ms - result.started_ms)
                           : "not run: " + result.error);
}

void ProgramPanel::on_state_changed() {
    update_buttons();
    show_status();
}

void ProgramPanel::show_result(int index, const QString& text) {
    if (index >= 0 && index < results_.size() && index < table_->rowCount()) {
        results_[index] = text;
        table_->setItem(index, RESULT_COLUMN, new QTableWidgetItem(text));
        table_->resizeRowToContents(index);
    }
}

void ProgramPanel::close_editor() {
    const auto found = editors_.find(editing_type_);
    if (found != editors_.end()) {
        found->second->hide();
    }
    editing_row_ = NOT_EDITING;
}

void ProgramPanel::refresh() {
    table_->setRowCount(steps_.count());
    results_.resize(steps_.count());
    for (int row = 0; row < steps_.count(); ++row) {
        QString error;
        const QString script = steps_.script_text(row, error);
        const QStringList cells{
            QString::number(row + 1), steps_.at(row)->getAlias(), steps_.at(row)->getCondType(),
            script.isEmpty() ? "(no script line: " + error + ")" : script, results_[row]};
        for (int column = 0; column < cells.size(); ++column) {
            table_->setItem(row, column, new QTableWidgetItem(cells[column]));
        }
    }
    table_->resizeRowsToContents();
    update_buttons();
}

void ProgramPanel::update_buttons() {
    const ProgramRunner::State state = runner_.state();
    const bool stopped = state == ProgramRunner::State::stopped;
    const bool has_steps = steps_.count() > 0;
    insert_->setEnabled(stopped && type_box_->count() > 0);
    for (QPushButton* button : {edit_, copy_, remove_, check_}) {
        button->setEnabled(stopped && has_steps);
    }
    open_->setEnabled(stopped);
    save_->setEnabled(stopped && has_steps);
    run_->setEnabled(stopped && has_steps);
    pause_->setEnabled(state == ProgramRunner::State::running);
    resume_->setEnabled(state == ProgramRunner::State::paused);
    stop_->setEnabled(state == ProgramRunner::State::running ||
                      state == ProgramRunner::State::paused);
}

void ProgramPanel::set_status(const QString& text) {
    message_ = text;
    show_status();
    emit status_changed(text);
}

void ProgramPanel::show_status() {
    status_->setText(QString("%1 | %2").arg(ProgramRunner::state_name(runner_.state()), message_));
}

bool ProgramPanel::step_selected(int row) {
    if (row < 0 || row >= steps_.count()) {
        set_status("Select a step first");
        return false;
    }
    return true;
}

void ProgramPanel::build() {
    auto* layout = new QVBoxLayout(this);
    auto* edit_row = new QHBoxLayout;
    auto* run_row = new QHBoxLayout;
    type_box_ = new QComboBox(this);
    type_box_->setObjectName("step_type");
    edit_row->addWidget(new QLabel("Step type:", this));
    edit_row->addWidget(type_box_);
    insert_ = add_button("Insert", edit_row, &ProgramPanel::click_insert);
    edit_ = add_button("Edit", edit_row, &ProgramPanel::click_edit);
    copy_ = add_button("Copy", edit_row, &ProgramPanel::click_copy);
    remove_ = add_button("Remove", edit_row, &ProgramPanel::click_remove);
    check_ = add_button("Check", edit_row, &ProgramPanel::click_check);
    open_ = add_button("Open...", edit_row, &ProgramPanel::click_open);
    save_ = add_button("Save...", edit_row, &ProgramPanel::click_save);
    run_ = add_button("Run", run_row, &ProgramPanel::click_run);
    pause_ = add_button("Pause", run_row, &ProgramPanel::click_pause);
    resume_ = add_button("Resume", run_row, &ProgramPanel::click_resume);
    stop_ = add_button("Stop", run_row, &ProgramPanel::click_stop);
    layout->addLayout(edit_row);
    table_ = new QTableWidget(0, RESULT_COLUMN + 1, this);
    table_->setObjectName("program_steps");
    table_->setHorizontalHeaderLabels({"Step", "Alias", "Type", "Script line", "Result"});
    table_->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table_->horizontalHeader()->setSectionResizeMode(RESULT_COLUMN - 1, QHeaderView::Stretch);
    table_->verticalHeader()->hide();
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setWordWrap(true);
    layout->addWidget(table_, 1);
    layout->addLayout(run_row);
    status_ = new QLabel(this);
    status_->setObjectName("program_status");
    status_->setWordWrap(true);
    layout->addWidget(status_);
}

QPushButton* ProgramPanel::add_button(const QString& text, QBoxLayout* row,
                                      void (ProgramPanel::*slot)()) {
    auto* button = new QPushButton(text, this);
    button->setObjectName("program_" + text.toLower().remove('.'));
    button->setMinimumHeight(36);
    row->addWidget(button);
    connect(button, &QPushButton::clicked, this, slot);
    return button;
}

void ProgramPanel::click_insert() {
    insert_step(type_box_->currentText());
}

void ProgramPanel::click_edit() {
    edit_step(selected_row());
}

void ProgramPanel::click_copy() {
    copy_step(selected_row());
}

void ProgramPanel::click_remove() {
    remove_step(selected_row());
}

void ProgramPanel::click_check() {
    check_step(selected_row());
}

void ProgramPanel::click_open() {
    const QString path =
        QFileDialog::getOpenFileName(this, "Open program", QString(), PROGRAM_FILTER);
    if (!path.isEmpty()) {
        open_program(path);
    }
}

void ProgramPanel::click_save() {
    const QString path =
        QFileDialog::getSaveFileName(this, "Save program", "program.json", PROGRAM_FILTER);
    if (!path.isEmpty()) {
        save_program(path);
    }
}

void ProgramPanel::click_run() {
    run_program();
}

void ProgramPanel::click_pause() {
    runner_.pause();
}

void ProgramPanel::click_resume() {
    runner_.resume();
}

void ProgramPanel::click_stop() {
    runner_.stop();
}
