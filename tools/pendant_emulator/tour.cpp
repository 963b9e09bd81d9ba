#include "tools/pendant_emulator/tour.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <cstdio>

#include "platform/abscondinfo.h"
#include "tools/pendant_emulator/bench_page.h"
#include "tools/pendant_emulator/emulator_window.h"
#include "tools/pendant_emulator/program_file.h"
#include "tools/pendant_emulator/program_panel.h"
#include "tools/pendant_emulator/script_console.h"
#include "tools/pendant_emulator/step_editor_dialog.h"

namespace {

const char* const PLUGIN = "Zanther2F";
const char* const DONE = "i | 0";
const char* const YES = "i | 1";
const char* const CONFIG_ANSWER =
    "{\"forceEnabled\":true,\"forceMax\":100,\"forceMin\":20,\"positionEnabled\":true,"
    "\"positionMax\":100,\"positionMin\":0,\"speedEnabled\":true,\"speedMax\":100,"
    "\"speedMin\":1}";
const char* const PROGRAM_FILE = "tour-program.json";
const char* const OLD_PROGRAM_FILE = "old-program.json";
// Activation, a whole stroke, a connect attempt: each well within this on a busy machine.
const int STATE_TIMEOUT_MS = 15000;
const int SHORT_TIMEOUT_MS = 5000;

// Types text into an editor field as an operator does: select all, erase, type.
bool type_into(QWidget* editor, const char* field_name, const QString& text) {
    auto* field = editor->findChild<QLineEdit*>(field_name);
    if (field == nullptr) {
        return false;
    }
    field->setFocus();
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Backspace);
    QTest::keyClicks(field, text);
    return field->text() == text;
}

QString expected_line(const QString& parameters) {
    return QString("script_common_interface(\"%1\", \"set_2_finger_gripper_param|%2\")")
        .arg(PLUGIN, parameters);
}

}  // namespace

Tour::Tour(EmulatorWindow& window, const QString& folder, bool keep_open)
    : window_(window), folder_(folder), keep_open_(keep_open), checks_(window, folder) {
    connect(&answerer_, &DialogAnswerer::dialog_answered, this,
            [this](const QString& text) { window_.transcript().note("message box: " + text); });
    ProgramRunner& runner = window_.program().runner();
    connect(&runner, &ProgramRunner::line_finished, this,
            [this](int, const ScriptResult& result) { line_results_.append(result); });
    connect(&runner, &ProgramRunner::program_ended, this,
            [this](const QString& outcome) { outcome_ = outcome; });
}

void Tour::run() {
    window_.transcript().open_file(QDir(folder_).filePath("transcript.txt"));
    passed_ = run_stage("load the plug-in", &Tour::stage_load) &&
              run_stage("connect both grippers by script", &Tour::stage_connect) &&
              run_stage("activate", &Tour::stage_activate) &&
              run_stage("the page in Simplified Chinese", &Tour::stage_language) &&
              run_stage("insert, check and save a two-step program", &Tour::stage_program) &&
              run_stage("run it: close on the object, open; pause and resume", &Tour::stage_run) &&
              run_stage("stop a run during a move", &Tour::stage_stop) &&
              run_stage("the object is lost; a link breaks and is restored", &Tour::stage_faults) &&
              run_stage("a link resets and comes back by itself", &Tour::stage_reconnect) &&
              run_stage("open the saved program again", &Tour::stage_reopen) &&
              run_stage("disconnect", &Tour::stage_disconnect);
    finish();
}

bool Tour::run_stage(const QString& name, bool (Tour::*stage)()) {
    ++stage_number_;
    const QString title = QString("Stage %1: %2").arg(stage_number_).arg(name);
    window_.transcript().heading(title);
    const bool passed = (this->*stage)();
    const QString line = passed ? QString("ok      %1").arg(title)
                                : QString("FAILED  %1: %2").arg(title, checks_.failure());
    summary_.append(line);
    window_.transcript().note(line);
    std::printf("%s\n", qPrintable(line));
    std::fflush(stdout);
    return passed;
}

bool Tour::stage_load() {
    for (const LoadFailure& failure : window_.loader().failures()) {
        window_.transcript().note(QString("passed over: %1: %2").arg(failure.file, failure.reason));
    }
    QWidget* page = window_.plugin_page(PLUGIN);
    if (page == nullptr) {
        return checks_.fail(
            QString("no page of a plug-in named %1 (see the Emulator tab)").arg(PLUGIN));
    }
    return checks_.show_page_tab("Control") &&
           checks_.wait([&] { return page->isVisible(); }, SHORT_TIMEOUT_MS, "the page shown") &&
           checks_.expect("get_2_finger_gripper_config_info", CONFIG_ANSWER) &&
           checks_.picture("01-page", &window_);
}

bool Tour::stage_connect() {
    const BenchGripper* first = window_.grippers().gripper(1);
    const BenchGripper* second = window_.grippers().gripper(2);
    if (!checks_.simulated(1) || !checks_.simulated(2)) {
        return checks_.fail(
            "the tour runs on the two simulated grippers (no --usb, --tcp or "
            "--no-simulators)");
    }
    auto* ports = checks_.page()->findChild<QComboBox*>("combo_box_usb_");
    return checks_.expect("gripper_scan", DONE) &&
           checks_.wait([&] { return ports && ports->findText(first->address) >= 0; },
                        SHORT_TIMEOUT_MS, "the scanned port " + first->address + " listed") &&
           checks_.expect(first->connect_command(), DONE) &&
           checks_.expect(second->connect_command(), DONE) &&
           checks_.expect("gripper_isConnect|1", YES) &&
           checks_.expect("gripper_isConnect|2", YES) && checks_.show_page_tab("Setting") &&
           checks_.wait([&] { return checks_.page_status("Setting") == "Inactivate"; },
                        SHORT_TIMEOUT_MS, "the Setting tab showing \"Inactivate\"") &&
           checks_.picture("02-connected", &window_);
}

bool Tour::stage_activate() {
    // The Control tab shows gripper 1, the Setting tab the gripper connected last (2).
    const QStringList active{"Activated", "Arrived"};
    return checks_.expect("gripper_active|1", DONE) && checks_.expect("gripper_active|2", DONE) &&
           checks_.wait([&] { return active.contains(checks_.page_status("Setting")); },
                        STATE_TIMEOUT_MS, "the Setting tab showing gripper 2 activated") &&
           checks_.show_page_tab("Control") &&
           checks_.wait([&] { return active.contains(checks_.page_status("Control")); },
                        STATE_TIMEOUT_MS, "the Control tab showing gripper 1 activated") &&
           checks_.expect("gripper_isActivate|1", YES) &&
           checks_.expect("gripper_isActivate|2", YES) && checks_.picture("03-activated", &window_);
}

bool Tour::stage_program() {
    ProgramPanel& panel = window_.program();
    window_.tabs().setCurrentWidget(&panel);
    if (!insert_step("100", "04-editor") || !insert_step("0", QString())) {
        return false;
    }
    QString error;
    script_lines_ =
        QStringList{panel.steps().script_text(0, error), panel.steps().script_text(1, error)};
    const QStringList expected{expected_line("1, 100, 50, 80, true"),
                               expected_line("1, 0, 50, 80, true")};
    if (script_lines_ != expected) {
        return checks_.fail(QString("the steps compile to %1, not %2")
                                .arg(script_lines_.join(" / "), expected.join(" / ")));
    }
    if (!panel.check_step(0) || !panel.check_step(1)) {
        return checks_.fail(panel.status());
    }
    if (!panel.save_program(QDir(folder_).filePath(PROGRAM_FILE))) {
        return checks_.fail(panel.status());
    }
    panel.check_step(0);
    return checks_.picture("05-program", &window_);
}

bool Tour::insert_step(const QString& position, const QString& picture) {
    ProgramPanel& panel = window_.program();
    const int before = panel.steps().count();
    if (!panel.insert_step(PLUGIN)) {
        return checks_.fail("the editor did not open: " + panel.status());
    }
    StepEditorDialog* dialog = panel.editor(PLUGIN);
    QWidget* editor = dialog->editor();
    auto* block = editor->findChild<QCheckBox*>("chk_isBlock");
    auto* confirm = editor->findChild<QPushButton*>("pbn_confirm");
    if (!checks_.wait([&] { return dialog->isVisible(); }, SHORT_TIMEOUT_MS, "the editor shown") ||
        !type_into(editor, "le_deviceID", "1") || !type_into(editor, "le_position", position) ||
        !type_into(editor, "le_force", "50") || !type_into(editor, "le_speed", "80") ||
        block == nullptr || confirm == nullptr) {
        return checks_.fail("the editor's fields do not take device 1, position " + position +
                            ", force 50, speed 80");
    }
    block->setChecked(true);
    if (!picture.isEmpty() && !checks_.picture(picture, dialog)) {
        return false;
    }
    // The editor confirms with a message box, answered like any other.
    const int boxes = answerer_.answered().size();
    QTest::mouseClick(confirm, Qt::LeftButton);
    return checks_.wait([&] { return panel.steps().count() == before + 1; }, SHORT_TIMEOUT_MS,
                        "a step saved by the editor's confirm button") &&
           checks_.wait([&] { return answerer_.answered().size() > boxes; }, SHORT_TIMEOUT_MS,
                        "the editor's confirmation");
}

bool Tour::start_program_and_wait_for_move() {
    line_results_.clear();
    outcome_.clear();
    window_.tabs().setCurrentWidget(&window_.program());
    if (!window_.program().run_program()) {
        return checks_.fail(window_.program().status());
    }
    // Well under way: past a fifth of the stroke and still moving.
    return checks_.wait(
        [&] {
            const QMap<QString, QString> state = checks_.simulator_state(1);
            return state.value("motion") == "0" &&
                   state.value("position").toInt() > EmulatedGrippers::POSITION_MAX / 5;
        },
        SHORT_TIMEOUT_MS, "gripper 1 moving");
}

bool Tour::wait_for_program_end(int timeout_ms) {
    return checks_.wait([&] { return !outcome_.isEmpty(); }, timeout_ms, "the end of the program");
}

bool Tour::stage_run() {
    QWidget* page = window_.plugin_page(PLUGIN);
    if (!start_program_and_wait_for_move()) {
        return false;
    }
    window_.program().runner().pause();
    if (page->isEnabled()) {
        return checks_.fail("the plug-in's page is enabled while the program runs");
    }
    if (!held_while_paused() || !checks_.picture("06-running-paused", &window_) ||
        !checks_.show_page_tab("Control") || !checks_.picture("07-page-while-running", &window_) ||
        !resume_to_the_end()) {
        return false;
    }
    return checks_.expect("get_gripper_status|1", YES) &&
           checks_.expect("get_gripper_position|1", "i|0") &&
           (page->isEnabled() || checks_.fail("the page stays disabled after the program"));
}

bool Tour::held_while_paused() {
    const bool seen =
        checks_.wait([&] { return checks_.simulator_state(1).value("held") == "1"; },
                     STATE_TIMEOUT_MS, "gripper 1 closing on its object") &&
        checks_.wait([&] { return checks_.page_status("Control") == "Detected"; }, SHORT_TIMEOUT_MS,
                     "the page showing \"Detected\"") &&
        checks_.wait([&] { return checks_.page_position() == held_position(); }, SHORT_TIMEOUT_MS,
                     "the page showing the position of the object") &&
        checks_.wait([&] { return checks_.page_object_detected(); }, SHORT_TIMEOUT_MS,
                     "the page's \"Object detected\" checked");
    return seen && (line_results_.isEmpty() ||
                    checks_.fail("step 1 returned while the program was paused"));
}

bool Tour::resume_to_the_end() {
    window_.tabs().setCurrentWidget(&window_.program());
    const qint64 resumed_ms = checks_.now();
    window_.program().runner().resume();
    if (!wait_for_program_end(STATE_TIMEOUT_MS)) {
        return false;
    }
    if (outcome_ != "completed" || line_results_.size() != 2 || line_results_[0].answer != DONE ||
        line_results_[1].answer != DONE) {
        return checks_.fail("the program ended " + outcome_ +
                            ", not completed with both steps answering \"i | 0\"");
    }
    return line_results_[0].finished_ms >= resumed_ms ||
           checks_.fail("step 1 returned before Resume");
}

QString Tour::held_position() {
    const int position = checks_.simulator_state(1).value("position").toInt();
    return QString::number(position * 100.0 / EmulatedGrippers::POSITION_MAX, 'f', 1);
}

bool Tour::stage_stop() {
    if (!start_program_and_wait_for_move()) {
        return false;
    }
    const qint64 stopped_ms = checks_.now();
    window_.program().runner().stop();
    if (!wait_for_program_end(SHORT_TIMEOUT_MS)) {
        return false;
    }
    if (outcome_ != "stopped at line 1" || line_results_.size() != 1 ||
        !line_results_[0].returned || line_results_[0].answer != DONE) {
        return checks_.fail("the program ended " + outcome_ +
                            ", not stopped at line 1 with step 1 answering \"i | 0\"");
    }
    window_.transcript().note(QString("Stop ended the waiting step after %1 ms")
                                  .arg(line_results_[0].finished_ms - stopped_ms));
    return checks_.picture("08-stopped", &window_);
}

bool Tour::stage_faults() {
    checks_.show_page_tab("Control");
    return checks_.wait([&] { return checks_.page_status("Control") == "Detected"; },
                        STATE_TIMEOUT_MS, "gripper 1 closing on its object after the stop") &&
           checks_.expect("get_gripper_status|1", "i | 2") && checks_.simulator_does(1, "drop") &&
           checks_.wait([&] { return checks_.page_status("Control") == "Dropped"; },
                        STATE_TIMEOUT_MS, "the page showing \"Dropped\"") &&
           checks_.expect("gripper_isDrop|1", YES) &&
           checks_.expect("get_gripper_status|1", "i | 3") &&
           checks_.picture("09-dropped", &window_) && lose_and_restore_link();
}

bool Tour::lose_and_restore_link() {
    return checks_.show_page_tab("Setting") && checks_.simulator_does(2, "fault vanish") &&
           checks_.wait([&] { return checks_.page_status("Setting") == "Write EXCP"; },
                        STATE_TIMEOUT_MS, "the Setting tab showing \"Write EXCP\"") &&
           checks_.expect("gripper_isConnect|2", DONE) &&
           checks_.picture("10-link-lost", &window_) && checks_.simulator_does(2, "fault none") &&
           checks_.expect("gripper_disconnect|2", DONE) &&
           checks_.expect(window_.grippers().gripper(2)->connect_command(), DONE) &&
           checks_.expect("gripper_isConnect|2", YES);
}

// Gripper 2's TCP server resets and listens again on its port. With "Reconnect automatically"
// ticked for it (the Setting tab shows gripper 2, connected last), the plug-in connects it again
// by itself; the box is cleared afterwards.
bool Tour::stage_reconnect() {
    return checks_.show_page_tab("Setting") && tick_reconnect_box(true) &&
           checks_.simulator_does(2, "fault vanish") &&
           checks_.wait([&] { return checks_.page_status("Setting").startsWith("Reconnecting"); },
                        STATE_TIMEOUT_MS, "the Setting tab showing \"Reconnecting\"") &&
           checks_.expect("gripper_isConnect|2", DONE) &&
           checks_.picture("10-reconnecting", &window_) &&
           checks_.simulator_does(2, "fault none") &&
           checks_.wait([&] { return !checks_.page_status("Setting").startsWith("Reconnecting"); },
                        STATE_TIMEOUT_MS, "gripper 2 connected again by itself") &&
           checks_.expect("gripper_isConnect|2", YES) &&
           checks_.expect("gripper_isActivate|2", YES) && tick_reconnect_box(false);
}

bool Tour::tick_reconnect_box(bool checked) {
    QWidget* page = checks_.page();
    QWidget* setting = page ? page->findChild<QWidget*>("widget_setting_") : nullptr;
    auto* box = setting ? setting->findChild<QCheckBox*>("check_box_reconnect_") : nullptr;
    if (box == nullptr) {
        return checks_.fail("no \"Reconnect automatically\" box on the Setting tab");
    }
    if (box->isChecked() != checked) {
        QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, QPoint(4, box->height() / 2));
    }
    return box->isChecked() == checked ||
           checks_.fail(
               QString("\"Reconnect automatically\" not %1").arg(checked ? "ticked" : "cleared"));
}

bool Tour::stage_reopen() {
    ProgramPanel& panel = window_.program();
    window_.tabs().setCurrentWidget(&panel);
    if (!check_old_program()) {
        return false;
    }
    if (!panel.open_program(QDir(folder_).filePath(PROGRAM_FILE))) {
        return checks_.fail(panel.status());
    }
    QString error;
    const QStringList lines{panel.steps().script_text(0, error),
                            panel.steps().script_text(1, error)};
    if (panel.steps().count() != 2 || lines != script_lines_) {
        return checks_.fail("the program opened again differs from the one saved");
    }
    return checks_.picture("11-reopened", &window_);
}

bool Tour::check_old_program() {
    ProgramPanel& panel = window_.program();
    const QString path = QDir(folder_).filePath(OLD_PROGRAM_FILE);
    const StoredStep old{PLUGIN, "old_step",
                         "{\"Id\": 2, \"PluginName\": \"Zanther2F\", \"Position\": 10, "
                         "\"Force\": 20, \"Speed\": 30, \"IsBlock\": false}"};
    QString error;
    if (!ProgramFile::write(path, {old}, error) || !panel.open_program(path)) {
        return checks_.fail(error.isEmpty() ? panel.status() : error);
    }
    const QString json = panel.steps().at(0)->getXmlInfo();
    const QString line = panel.steps().script_text(0, error);
    window_.transcript().note("old step read as " + json + " -> " + line);
    if (json.contains("\"Id\"") || !json.contains("\"DeviceID\":2") ||
        line != expected_line("2, 10, 20, 30, false")) {
        return checks_.fail("the old \"Id\" step was not migrated: " + json + " -> " + line);
    }
    return true;
}

bool Tour::stage_disconnect() {
    const bool disconnected = checks_.expect("gripper_disconnect|1", DONE) &&
                              checks_.expect("gripper_disconnect|2", DONE) &&
                              checks_.expect("gripper_isConnect|1", DONE) &&
                              checks_.expect("gripper_isConnect|2", DONE);
    window_.tabs().setCurrentWidget(&window_.console());
    if (!disconnected || !checks_.picture("12-script-console", &window_)) {
        return false;
    }
    window_.tabs().setCurrentWidget(&window_.bench());
    return checks_.picture("13-emulator", &window_);
}

void Tour::finish() {
    if (!passed_) {
        window_.program().runner().stop();
        checks_.picture("failed", &window_);
        for (const char* command : {"gripper_disconnect|1", "gripper_disconnect|2"}) {
            checks_.send(command, SHORT_TIMEOUT_MS);
        }
    }
    window_.transcript().heading(passed_ ? "Tour passed" : "Tour FAILED");
    std::printf("%s: pictures and transcript in %s\n", passed_ ? "Tour passed" : "Tour FAILED",
                qPrintable(folder_));
    std::fflush(stdout);
    if (keep_open_) {
        window_.setWindowTitle(window_.windowTitle() +
                               (passed_ ? " - tour passed" : " - tour failed"));
        return;
    }
    QCoreApplication::exit(exit_code());
}
