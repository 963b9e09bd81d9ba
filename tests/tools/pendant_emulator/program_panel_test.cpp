// The program panel, the program runner and the script console with the real plug-in loaded
// from its file and no gripper connected: steps made, edited, copied and removed through the
// plug-in's own editor; program files saved, opened, migrated and refused; Run, Pause, Resume
// and Stop; one command at a time from the console.

#include <memory>

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include "platform/abscondinfo.h"
#include "tools/pendant_emulator/dialog_answerer.h"
#include "tools/pendant_emulator/emulator_window.h"
#include "tools/pendant_emulator/private_settings.h"
#include "tools/pendant_emulator/program_file.h"
#include "tools/pendant_emulator/program_panel.h"
#include "tools/pendant_emulator/script_console.h"
#include "tools/pendant_emulator/step_editor_dialog.h"

namespace {

const QString PLUGIN = "Zanther2F";

QString line_for(const QString& parameters) {
    return QString("script_common_interface(\"Zanther2F\", \"set_2_finger_gripper_param|%1\")")
        .arg(parameters);
}

}  // namespace

class ProgramPanelTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void the_editor_inserts_edits_copies_and_removes_steps();
    void program_files_are_migrated_checked_and_refused_whole();
    void runs_pause_and_stop_or_end_at_a_failing_line();
    void the_console_sends_one_command_at_a_time();

private:
    QWidget* editor();
    void type(const char* field, const QString& text);
    void click(const char* button);
    QString script(int row) const;
    QVector<ScriptLine> lines(const QStringList& commands) const;

    PrivateSettings settings_;
    QTemporaryDir folder_;
    std::unique_ptr<EmulatorWindow> window_;
    ProgramPanel* panel_ = nullptr;
    DialogAnswerer* answerer_ = nullptr;
};

void ProgramPanelTest::initTestCase() {
    QVERIFY(settings_.valid());
    EmulatorOptions options;
    options.plugin_folder = QFileInfo(ZANTHER2F_LIBRARY).absolutePath();
    options.simulators = false;
    window_.reset(new EmulatorWindow(options));
    QVERIFY(window_->start_grippers(QString()));
    window_->load_plugins(folder_.filePath("shared"));
    QVERIFY(window_->plugin_page(PLUGIN) != nullptr);
    window_->show();
    panel_ = &window_->program();
    answerer_ = new DialogAnswerer(this);
}

QWidget* ProgramPanelTest::editor() {
    return panel_->editor(PLUGIN)->editor();
}

void ProgramPanelTest::type(const char* field, const QString& text) {
    auto* edit = editor()->findChild<QLineEdit*>(field);
    QVERIFY(edit != nullptr);
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Backspace);
    QTest::keyClicks(edit, text);
    QCOMPARE(edit->text(), text);
}

void ProgramPanelTest::click(const char* button) {
    auto* push = editor()->findChild<QPushButton*>(button);
    QVERIFY(push != nullptr);
    QTest::mouseClick(push, Qt::LeftButton);
}

QString ProgramPanelTest::script(int row) const {
    QString error;
    return panel_->steps().script_text(row, error);
}

QVector<ScriptLine> ProgramPanelTest::lines(const QStringList& commands) const {
    QVector<ScriptLine> result;
    for (const QString& command : commands) {
        result.append({PLUGIN, command});
    }
    return result;
}

void ProgramPanelTest::the_editor_inserts_edits_copies_and_removes_steps() {
    QVERIFY(panel_->insert_step(PLUGIN));
    QTRY_VERIFY(panel_->editor(PLUGIN)->isVisible());
    type("le_deviceID", "1");
    type("le_position", "100");
    type("le_force", "50");
    type("le_speed", "80");
    editor()->findChild<QCheckBox*>("chk_isBlock")->setChecked(true);
    click("pbn_confirm");
    QTRY_COMPARE(panel_->steps().count(), 1);
    QCOMPARE(answerer_->answered().last(), QString("Information: Condition saved."));
    QCOMPARE(script(0), line_for("1, 100, 50, 80, true"));
    QCOMPARE(panel_->steps().at(0)->getAlias(), QString("Zanther2F_1"));
    QVERIFY(!panel_->editor(PLUGIN)->isVisible());

    QVERIFY(panel_->edit_step(0));
    QCOMPARE(editor()->findChild<QLineEdit*>("le_position")->text(), QString("100"));
    type("le_position", "30");
    click("pbn_confirm");
    QTRY_COMPARE(script(0), line_for("1, 30, 50, 80, true"));
    QCOMPARE(panel_->steps().count(), 1);
    QCOMPARE(panel_->steps().at(0)->getAlias(), QString("Zanther2F_1"));

    QVERIFY(panel_->copy_step(0));
    QCOMPARE(panel_->steps().count(), 2);
    QCOMPARE(panel_->steps().at(1)->getAlias(), QString("Zanther2F_2"));
    QCOMPARE(script(1), script(0));

    QVERIFY(panel_->edit_step(1));
    click("pbn_remove");
    QTRY_COMPARE(panel_->steps().count(), 1);
    QCOMPARE(panel_->steps().at(0)->getAlias(), QString("Zanther2F_1"));

    QVERIFY(panel_->insert_step(PLUGIN));
    click("pbn_remove");
    QTRY_COMPARE(panel_->status(), QString("Step not inserted"));
    QCOMPARE(panel_->steps().count(), 1);

    QVERIFY(!panel_->remove_step(5));
    QCOMPARE(panel_->status(), QString("Select a step first"));
    QVERIFY(panel_->remove_step(0));
    QCOMPARE(panel_->steps().count(), 0);
}

void ProgramPanelTest::program_files_are_migrated_checked_and_refused_whole() {
    const QString old_path = folder_.filePath("old.json");
    QString error;
    QVERIFY(ProgramFile::write(
        old_path,
        {{PLUGIN, "wide",
          "{\"Id\": 3, \"PluginName\": \"Zanther2F\", \"Position\": 150, \"Force\": 20, "
          "\"Speed\": 30, \"IsBlock\": false}"},
         {PLUGIN, "fine",
          "{\"DeviceID\": \"2\", \"PluginName\": \"Zanther2F\", \"Position\": 50, \"Force\": 20, "
          "\"Speed\": 30, \"IsBlock\": true}"}},
        error));
    QVERIFY2(panel_->open_program(old_path), qPrintable(panel_->status()));
    QCOMPARE(panel_->steps().count(), 2);
    const QString migrated = panel_->steps().at(0)->getXmlInfo();
    QVERIFY2(migrated.contains("\"DeviceID\":3") && !migrated.contains("\"Id\""),
             qPrintable(migrated));
    QCOMPARE(script(0), line_for("3, 150, 20, 30, false"));
    QCOMPARE(script(1), line_for("2, 50, 20, 30, true"));
    QVERIFY(!panel_->check_step(0));
    QVERIFY2(panel_->status().contains("position does not match the configuration information"),
             qPrintable(panel_->status()));
    QVERIFY(panel_->check_step(1));

    const QString saved = folder_.filePath("saved.json");
    QVERIFY(panel_->save_program(saved));
    QVector<StoredStep> stored;
    QVERIFY(ProgramFile::read(saved, stored, error));
    QCOMPARE(stored.size(), 2);
    QCOMPARE(stored[0].alias, QString("wide"));
    QCOMPARE(stored[0].json, migrated);

    const QString foreign = folder_.filePath("foreign.json");
    QVERIFY(ProgramFile::write(foreign, {stored[0], {"Other", "x", "{}"}}, error));
    QVERIFY(!panel_->open_program(foreign));
    QVERIFY2(panel_->status().contains("step 2 (x): no plug-in named \"Other\" is loaded"),
             qPrintable(panel_->status()));
    QCOMPARE(panel_->steps().count(), 2);
    QCOMPARE(script(1), line_for("2, 50, 20, 30, true"));
}

void ProgramPanelTest::runs_pause_and_stop_or_end_at_a_failing_line() {
    ProgramRunner& runner = panel_->runner();
    QWidget* page = window_->plugin_page(PLUGIN);
    QSignalSpy started(&runner, &ProgramRunner::line_started);
    QSignalSpy finished(&runner, &ProgramRunner::line_finished);
    QSignalSpy ended(&runner, &ProgramRunner::program_ended);

    // Pause, Resume and a completed run are in the tour.
    QVERIFY(!runner.run({}));
    QVERIFY(runner.run(lines({"gripper_isConnect|1", "gripper_isConnect|2"})));
    QVERIFY(!runner.run(lines({"gripper_isConnect|1"})));
    runner.pause();
    QVERIFY(!page->isEnabled());
    QTRY_COMPARE(runner.state(), ProgramRunner::State::paused);
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(finished.last().at(1).value<ScriptResult>().answer, QString("i | 0"));
    runner.stop();
    QCOMPARE(ended.last().at(0).toString(), QString("stopped before line 2"));
    QCOMPARE(started.count(), 1);
    QCOMPARE(runner.state(), ProgramRunner::State::stopped);
    QVERIFY(page->isEnabled());

    // A failing line ends the program.
    started.clear();
    QVERIFY(runner.run(lines({"foo|1", "gripper_isConnect|1"})));
    QTRY_COMPARE(ended.count(), 2);
    QCOMPARE(ended.last().at(0).toString(), QString("line 1 failed: the plug-in returned false"));
    QVERIFY(runner.run({{"Nope", "gripper_isConnect|1"}, {PLUGIN, "gripper_isConnect|1"}}));
    QTRY_COMPARE(ended.count(), 3);
    QCOMPARE(ended.last().at(0).toString(),
             QString("line 1 failed: no plug-in named \"Nope\" is loaded"));
    QCOMPARE(started.count(), 2);
}

void ProgramPanelTest::the_console_sends_one_command_at_a_time() {
    ScriptConsole& console = window_->console();
    const QStringList& lines = window_->transcript().lines();
    QVERIFY(console.send("get_2_finger_gripper_config_info") > 0);
    QTRY_VERIFY(lines.last().contains(
        "Zanther2F: get_2_finger_gripper_config_info -> true \"{\"forceEnabled\":true,"
        "\"forceMax\":100,\"forceMin\":20,\"positionEnabled\":true,\"positionMax\":100,"
        "\"positionMin\":0,\"speedEnabled\":true,\"speedMax\":100,\"speedMin\":1}\""));
    QVERIFY(console.send("script_common_interface(\"Zanther2F\", \"gripper_isConnect | 0\")") > 0);
    QTRY_VERIFY(lines.last().contains("Zanther2F: gripper_isConnect | 0 -> true \"i | 0\""));
    QCOMPARE(console.send("script_common_interface("), 0);
    QVERIFY(lines.last().contains("console: script_common_interface(: not a call"));
    QVERIFY(console.send("script_common_interface(\"Nope\", \"x\")") > 0);
    QTRY_VERIFY(lines.last().endsWith("Nope: x -> not run: no plug-in named \"Nope\" is loaded"));
    QCOMPARE(console.send("   "), 0);
}

QTEST_MAIN(ProgramPanelTest)
#include "program_panel_test.moc"
