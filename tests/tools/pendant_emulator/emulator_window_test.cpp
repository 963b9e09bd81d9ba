// The emulator's window with the real plug-in loaded from its file (nothing of it is linked in),
// out of a folder that also holds a library made for another application, a library that is no
// plug-in and a file that is no library; no gripper is connected. What is loaded and why the
// others are not; steps made, edited, copied and removed through the plug-in's own editor;
// program files checked, saved and refused whole; Run, Pause and Stop; one command at a time from
// the console. A completed run, Pause and Resume, old program files and a saved program opened
// again are in the tour. Besides the plug-in, a session is made of the simulated grippers in child
// processes or real grippers in their place, the pictures' blank check and the private settings
// store.

#include <memory>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QtTest>

#include "platform/abscondinfo.h"
#include "tools/pendant_emulator/bench_page.h"
#include "tools/pendant_emulator/dialog_answerer.h"
#include "tools/pendant_emulator/emulated_grippers.h"
#include "tools/pendant_emulator/emulator_window.h"
#include "tools/pendant_emulator/language_catalogue.h"
#include "tools/pendant_emulator/plugin_folder_loader.h"
#include "tools/pendant_emulator/private_settings.h"
#include "tools/pendant_emulator/program_file.h"
#include "tools/pendant_emulator/program_panel.h"
#include "tools/pendant_emulator/screenshot.h"
#include "tools/pendant_emulator/script_console.h"
#include "tools/pendant_emulator/step_editor_dialog.h"

namespace {

const QString PLUGIN = "Zanther2F";

QString line_for(const QString& parameters) {
    return QString("script_common_interface(\"Zanther2F\", \"set_2_finger_gripper_param|%1\")")
        .arg(parameters);
}

EmulatorOptions simulated(const QString& program = GRIPPER_SIM) {
    EmulatorOptions options;
    options.simulator_program = program;
    return options;
}

}  // namespace

class EmulatorWindowTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void the_gripper_plugin_loads_and_the_others_are_reported();
    void program_files_are_checked_saved_and_refused_whole();
    void the_editor_edits_copies_and_removes_steps();
    void runs_pause_and_stop_or_end_at_a_failing_line();
    void the_console_sends_one_command_at_a_time();
    void grippers_are_simulated_in_child_processes_or_real();
    void blank_pictures_are_told_apart();
    // Last: it points the settings away from the window's private folder.
    void settings_stay_in_the_private_folder();

private:
    QWidget* editor();
    void click(const char* button);
    QString script(int row) const;

    PrivateSettings settings_;
    QTemporaryDir folder_;
    std::unique_ptr<EmulatorWindow> window_;
    ProgramPanel* panel_ = nullptr;
    DialogAnswerer* answerer_ = nullptr;
};

void EmulatorWindowTest::initTestCase() {
    QVERIFY(settings_.valid());
    QVERIFY(QFile::link(ZANTHER2F_LIBRARY, folder_.filePath("libZanther2F.so")));
    QVERIFY(QFile::copy(WRONG_IID_LIBRARY, folder_.filePath("libImageFilter.so")));
    QVERIFY(QFile::copy(HELPER_LIBRARY, folder_.filePath("libHelper.so")));
    QFile notes(folder_.filePath("notes.so"));
    QVERIFY(notes.open(QIODevice::WriteOnly));
    notes.write("These are notes, not a library.\n");
    notes.close();
    QVERIFY(QDir(folder_.path()).mkdir("sub"));
    EmulatorOptions options;
    QString error;
    QVERIFY2(EmulatorOptions::parse({"pendant-emulator", "--plugins", folder_.path(),
                                     "--no-simulators", "--language", "xx"},
                                    options, error),
             qPrintable(error));
    window_.reset(new EmulatorWindow(options));
    QVERIFY(window_->start_grippers(QString()));
    window_->load_plugins(folder_.filePath("shared"));
    window_->show();
    panel_ = &window_->program();
    answerer_ = new DialogAnswerer(this);
}

void EmulatorWindowTest::the_gripper_plugin_loads_and_the_others_are_reported() {
    QCOMPARE(window_->loader().plugins().size(), 1);
    QCOMPARE(window_->loader().failures().size(), 3);
    QMap<QString, QString> reasons;
    for (const LoadFailure& failure : window_->loader().failures()) {
        reasons[QFileInfo(failure.file).fileName()] = failure.reason;
    }
    QCOMPARE(reasons["libImageFilter.so"],
             QString("interface id \"org.example.ImageFilterPlugin\" is not "
                     "\"com.qt-project.Orla.TeachPendantPlugin\""));
    const QString not_library = reasons["notes.so"];
    QVERIFY2(not_library.contains("notes.so") && not_library.contains("not an ELF object"),
             qPrintable(not_library));
    const QString not_plugin = reasons["libHelper.so"];
    QVERIFY2(not_plugin.contains("libHelper.so") &&
                 not_plugin.contains("Failed to extract plugin meta data"),
             qPrintable(not_plugin));

    QCOMPARE(window_->tabs().count(), 4);
    const QString report = window_->bench().report();
    QVERIFY2(report.contains("Not loaded: " + folder_.filePath("notes.so")), qPrintable(report));
    QVERIFY(report.contains("Loaded: Zanther2F 4.2.6"));
    QVERIFY(report.contains("Grippers: none on the bench"));
    QVERIFY(
        report.contains("Language xx not installed: no catalogue xx_*.qm in the plug-ins' "
                        "resources"));
    LanguageCatalogue missing;
    QString error;
    QVERIFY(!missing.install(folder_.filePath("missing.qm"), error));
    QCOMPARE(error, "the catalogue " + folder_.filePath("missing.qm") + " does not load");
    // A second plug-in of a loaded name and a missing folder load nothing, each with its reason.
    QTemporaryDir second;
    QVERIFY(QFile::link(ZANTHER2F_LIBRARY, second.filePath("libZanther2F-copy.so")));
    const QString rows[][2] = {
        {second.path(), "a plug-in named \"Zanther2F\" is loaded already"},
        {folder_.filePath("absent"), "the plug-in folder does not exist"},
    };
    for (const auto& row : rows) {
        PluginFolderLoader loader;
        loader.load_folder(row[0]);
        QVERIFY(loader.plugins().isEmpty());
        QCOMPARE(loader.failures().size(), 1);
        QCOMPARE(loader.failures()[0].reason, row[1]);
    }
}

QWidget* EmulatorWindowTest::editor() {
    return panel_->editor(PLUGIN)->editor();
}

void EmulatorWindowTest::click(const char* button) {
    auto* push = editor()->findChild<QPushButton*>(button);
    QVERIFY(push != nullptr);
    QTest::mouseClick(push, Qt::LeftButton);
}

QString EmulatorWindowTest::script(int row) const {
    QString error;
    return panel_->steps().script_text(row, error);
}

void EmulatorWindowTest::program_files_are_checked_saved_and_refused_whole() {
    const QString path = folder_.filePath("program.json");
    QString error;
    QVector<StoredStep> stored{
        {PLUGIN, "wide",
         "{\"DeviceID\": \"3\", \"PluginName\": \"Zanther2F\", \"Position\": 150, \"Force\": 20, "
         "\"Speed\": 30, \"IsBlock\": false}"},
        {PLUGIN, "fine",
         "{\"DeviceID\": \"2\", \"PluginName\": \"Zanther2F\", \"Position\": 50, \"Force\": 20, "
         "\"Speed\": 30, \"IsBlock\": true}"}};
    QVERIFY(ProgramFile::write(path, stored, error));
    QVERIFY2(panel_->open_program(path), qPrintable(panel_->status()));
    QCOMPARE(script(0), line_for("3, 150, 20, 30, false"));
    QVERIFY(!panel_->check_step(0));
    QVERIFY2(panel_->status().contains("position does not match the configuration information"),
             qPrintable(panel_->status()));
    QVERIFY(panel_->check_step(1));
    QVERIFY(panel_->save_program(path));
    QVERIFY(ProgramFile::read(path, stored, error));
    QCOMPARE(stored.size(), 2);
    QCOMPARE(stored[0].alias, QString("wide"));

    QVERIFY(ProgramFile::write(path, {stored[0], {"Other", "x", "{}"}}, error));
    QVERIFY(!panel_->open_program(path));
    QVERIFY2(panel_->status().contains("step 2 (x): no plug-in named \"Other\" is loaded"),
             qPrintable(panel_->status()));
    QCOMPARE(panel_->steps().count(), 2);
    QCOMPARE(script(1), line_for("2, 50, 20, 30, true"));
}

// On the program opened above. Inserting a step through the editor is in the tour.
void EmulatorWindowTest::the_editor_edits_copies_and_removes_steps() {
    QVERIFY(panel_->edit_step(1));
    QTRY_VERIFY(panel_->editor(PLUGIN)->isVisible());
    auto* position = editor()->findChild<QLineEdit*>("le_position");
    QVERIFY(position != nullptr);
    QCOMPARE(position->text(), QString("50"));
    position->selectAll();
    QTest::keyClick(position, Qt::Key_Backspace);
    QTest::keyClicks(position, "30");
    click("pbn_confirm");
    QTRY_COMPARE(script(1), line_for("2, 30, 20, 30, true"));
    QCOMPARE(panel_->steps().count(), 2);
    QCOMPARE(panel_->steps().at(1)->getAlias(), QString("fine"));
    QVERIFY(!panel_->editor(PLUGIN)->isVisible());

    QVERIFY(panel_->copy_step(1));
    QCOMPARE(panel_->steps().count(), 3);
    QCOMPARE(panel_->steps().at(2)->getAlias(), QString("Zanther2F_1"));
    QCOMPARE(script(2), script(1));

    QVERIFY(panel_->edit_step(2));
    click("pbn_remove");
    QTRY_COMPARE(panel_->steps().count(), 2);
    QCOMPARE(panel_->steps().at(1)->getAlias(), QString("fine"));

    QVERIFY(panel_->insert_step(PLUGIN));
    click("pbn_remove");
    QTRY_COMPARE(panel_->status(), QString("Step not inserted"));
    QCOMPARE(panel_->steps().count(), 2);

    QVERIFY(!panel_->remove_step(5));
    QCOMPARE(panel_->status(), QString("Select a step first"));
    QVERIFY(panel_->remove_step(0));
    QCOMPARE(panel_->steps().count(), 1);
}

void EmulatorWindowTest::runs_pause_and_stop_or_end_at_a_failing_line() {
    ProgramRunner& runner = panel_->runner();
    QWidget* page = window_->plugin_page(PLUGIN);
    QSignalSpy started(&runner, &ProgramRunner::line_started);
    QSignalSpy finished(&runner, &ProgramRunner::line_finished);
    QSignalSpy ended(&runner, &ProgramRunner::program_ended);

    QVERIFY(!runner.run({}));
    QVERIFY(runner.run({{PLUGIN, "gripper_isConnect|1"}, {PLUGIN, "gripper_isConnect|2"}}));
    QVERIFY(!runner.run({{PLUGIN, "gripper_isConnect|1"}}));
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
    QVERIFY(runner.run({{PLUGIN, "foo|1"}, {PLUGIN, "gripper_isConnect|1"}}));
    QTRY_COMPARE(ended.count(), 2);
    QCOMPARE(ended.last().at(0).toString(), QString("line 1 failed: the plug-in returned false"));
    QVERIFY(runner.run({{"Nope", "gripper_isConnect|1"}, {PLUGIN, "gripper_isConnect|1"}}));
    QTRY_COMPARE(ended.count(), 3);
    QCOMPARE(ended.last().at(0).toString(),
             QString("line 1 failed: no plug-in named \"Nope\" is loaded"));
    QCOMPARE(started.count(), 2);
}

// A bare command goes to the first plug-in; the transcript shows what each returned and answered.
void EmulatorWindowTest::the_console_sends_one_command_at_a_time() {
    ScriptConsole& console = window_->console();
    const QStringList& lines = window_->transcript().lines();
    const QRegularExpression returned_false(
        "^\\[ *\\d+\\.\\d{3}\\] Zanther2F: foo\\|1 -> false \"[^\"]*\" \\(\\d+ ms\\)$");
    QVERIFY(console.send("foo|1") > 0);
    QTRY_VERIFY2(returned_false.match(lines.last()).hasMatch(), qPrintable(lines.last()));
    QVERIFY(console.send("script_common_interface(\"Zanther2F\", \"gripper_isConnect | 0\")") > 0);
    QTRY_VERIFY(lines.last().contains("Zanther2F: gripper_isConnect | 0 -> true \"i | 0\""));
    QCOMPARE(console.send("script_common_interface("), 0);
    QVERIFY(lines.last().contains("console: script_common_interface(: not a call"));
    QVERIFY(console.send("script_common_interface(\"Nope\", \"x\")") > 0);
    QTRY_VERIFY(lines.last().endsWith("Nope: x -> not run: no plug-in named \"Nope\" is loaded"));
    QCOMPARE(console.send("   "), 0);
}

// The tour drives the simulators; here what the bench says when it cannot.
void EmulatorWindowTest::grippers_are_simulated_in_child_processes_or_real() {
    QTemporaryDir logs;
    EmulatedGrippers grippers;
    QString error;
    QVERIFY2(grippers.start(simulated(), logs.path(), error), qPrintable(error));
    const BenchGripper* first = grippers.gripper(1);
    BenchPage bench(grippers);
    QCOMPARE(bench.simulator_command(1, "drop"), QString("error: gripper 1 holds no object"));
    QCOMPARE(bench.simulator_command(3, "state"), QString("error: gripper 3 is not simulated"));
    QVERIFY(QFileInfo::exists(logs.filePath("gripper-sim-2.log")));
    grippers.stop();
    QTRY_VERIFY(!QFileInfo::exists(first->address));
    QVERIFY(bench.simulator_command(1, "state").startsWith("error: "));

    EmulatorOptions real = simulated();
    real.usb_device = "/dev/ttyUSB7";
    real.tcp_address = "192.168.1.29:8888";
    EmulatedGrippers real_grippers;
    QVERIFY(real_grippers.start(real, QString(), error));
    QCOMPARE(real_grippers.gripper(1)->connect_command(),
             QString("gripper_connect_usb|1,/dev/ttyUSB7"));
    QCOMPARE(real_grippers.gripper(2)->connect_command(),
             QString("gripper_connect_tcp|2,192.168.1.29:8888"));
    QVERIFY(real_grippers.gripper(1)->simulator == nullptr &&
            real_grippers.gripper(2)->simulator == nullptr);
    const QString failing[][2] = {
        {"/nonexistent/gripper-sim", "cannot start /nonexistent/gripper-sim"},
        {"/bin/echo", "did not announce its port (it said \"--object 600"},
    };
    for (const auto& row : failing) {
        EmulatedGrippers none;
        QVERIFY(!none.start(simulated(row[0]), QString(), error));
        QVERIFY2(error.contains(row[1]), qPrintable(error));
    }
}

void EmulatorWindowTest::blank_pictures_are_told_apart() {
    QImage white(200, 100, QImage::Format_ARGB32);
    white.fill(Qt::white);
    QVERIFY(Screenshot::blank(white));
    QLabel label("Object detected");
    label.resize(200, 100);
    QVERIFY(!Screenshot::blank(Screenshot::take(&label)));
    QString error;
    QWidget empty;
    empty.resize(50, 50);
    QVERIFY(!Screenshot::save(&empty, folder_.filePath("empty.png"), error));
    QCOMPARE(error, "the picture " + folder_.filePath("empty.png") + " is blank");
}

void EmulatorWindowTest::settings_stay_in_the_private_folder() {
    QTemporaryDir user_config;
    qputenv("XDG_CONFIG_HOME", user_config.path().toUtf8());
    QString folder;
    {
        PrivateSettings settings;
        QVERIFY(settings.valid());
        folder = settings.path();
        settings.set_resolution(QSize(1280, 800));
        QCOMPARE(QSettings("orlape", "orlape_system").value("Displays/Resolution").toString(),
                 QString("1280*800"));
        QVERIFY(QFileInfo::exists(settings.path() + "/user/orlape/orlape_system.conf"));
        QVERIFY(QFileInfo(settings.shared_folder()).isDir());
    }
    QVERIFY(QDir(user_config.path()).isEmpty());
    QVERIFY(!QFileInfo::exists(folder));
}

QTEST_MAIN(EmulatorWindowTest)
#include "emulator_window_test.moc"
