#include "tools/pendant_emulator/emulator_window.h"

#include <QDir>
#include <QLabel>
#include <QStatusBar>
#include <QTabWidget>

#include "platform/iplugin.h"
#include "platform/pluginmanager.h"
#include "tools/pendant_emulator/bench_page.h"
#include "tools/pendant_emulator/program_panel.h"
#include "tools/pendant_emulator/script_console.h"

namespace {

const int SHUTDOWN_TIMEOUT_MS = 10000;

}  // namespace

EmulatorWindow::EmulatorWindow(const EmulatorOptions& options, QWidget* parent)
    : QMainWindow(parent), options_(options), transcript_(script_.clock()) {
    setObjectName("pendant_emulator");
    setWindowTitle(QString("Pendant emulator - %1x%2")
                       .arg(options.resolution.width())
                       .arg(options.resolution.height()));
    tabs_ = new QTabWidget(this);
    tabs_->setObjectName("pendant_tabs");
    setCentralWidget(tabs_);
    // The transcript hears of a finished command before the program runner acts on it.
    connect(&script_, &ScriptThread::command_finished, &transcript_, &Transcript::command);
    program_ = new ProgramPanel(script_, this);
    console_ = new ScriptConsole(script_, transcript_, this);
    bench_ = new BenchPage(grippers_, this);
    state_ = new QLabel("Program: Stopped", this);
    statusBar()->addWidget(state_);
    connect(program_, &ProgramPanel::status_changed, this,
            [this](const QString& text) { transcript_.note("program: " + text); });
    connect(&program_->runner(), &ProgramRunner::state_changed, this,
            &EmulatorWindow::on_program_state);
    resize(options.resolution);
}

EmulatorWindow::~EmulatorWindow() {
    shutdown();
}

bool EmulatorWindow::start_grippers(const QString& log_folder) {
    QString error;
    if (!grippers_.start(options_, log_folder, error)) {
        report("Grippers: " + error);
        return false;
    }
    for (const BenchGripper& gripper : grippers_.grippers()) {
        report(QString("Gripper %1: %2 %3%4")
                   .arg(gripper.id)
                   .arg(gripper.usb ? "USB serial" : "TCP", gripper.address,
                        gripper.simulator ? " (simulated)" : " (real)"));
    }
    if (grippers_.grippers().isEmpty()) {
        report("Grippers: none on the bench");
    }
    bench_->list_simulators();
    return true;
}

void EmulatorWindow::load_plugins(const QString& shared_path) {
    report(QString("Screen: %1x%2 (\"Displays/Resolution\" in the emulator's own settings)")
               .arg(options_.resolution.width())
               .arg(options_.resolution.height()));
    loader_.load_folder(options_.plugin_folder);
    report(QString("Plug-in folder: %1").arg(options_.plugin_folder));
    for (const LoadFailure& failure : loader_.failures()) {
        report(QString("Not loaded: %1: %2").arg(failure.file, failure.reason));
    }
    install_language();
    for (const LoadedPlugin& loaded : loader_.plugins()) {
        show_plugin(loaded, shared_path);
    }
    tabs_->addTab(program_, "Program");
    tabs_->addTab(console_, "Script");
    tabs_->addTab(bench_, "Emulator");
    program_->set_plugins(loader_.plugins());
    if (!loader_.plugins().isEmpty()) {
        console_->set_default_plugin(loader_.plugins().first().name);
    }
    console_->set_suggestions(suggestions());
    report(QString("Shared file path: %1").arg(shared_path));
    report(QString("Working directory (plug-in logs): %1").arg(QDir::currentPath()));
}

void EmulatorWindow::shutdown() {
    if (shut_down_) {
        return;
    }
    shut_down_ = true;
    program_->runner().stop();
    if (!script_.finish(SHUTDOWN_TIMEOUT_MS)) {
        report("The script thread did not end");
    }
    grippers_.stop();
}

QWidget* EmulatorWindow::plugin_page(const QString& name) const {
    for (int i = 0; i < tabs_->count(); ++i) {
        if (tabs_->tabText(i) == name) {
            return tabs_->widget(i);
        }
    }
    return nullptr;
}

void EmulatorWindow::show_plugin(const LoadedPlugin& loaded, const QString& shared_path) {
    ExtensionSystem::IPlugin* plugin = loaded.plugin;
    plugin->setPluginMessageBoxParentWidget(this);
    plugin->setPluginSharedFilePath(shared_path);
    plugin->loadTranslator(options_.language);
    QWidget* page = plugin->createUI(tabs_);
    report(QString("Loaded: %1 %2 from %3").arg(loaded.name, loaded.version, loaded.file));
    if (page == nullptr) {
        report(QString("%1 made no page").arg(loaded.name));
        return;
    }
    tabs_->addTab(page, loaded.name);
}

void EmulatorWindow::report(const QString& line) {
    bench_->add_report(line);
    transcript_.note(line);
}

void EmulatorWindow::install_language() {
    if (options_.language.isEmpty()) {
        return;
    }
    QString error;
    if (language_.install(options_.language, error)) {
        report(QString("Language: %1").arg(language_.file()));
    } else {
        report(QString("Language %1 not installed: %2").arg(options_.language, error));
    }
}

QStringList EmulatorWindow::suggestions() const {
    QStringList commands{"gripper_scan"};
    for (const BenchGripper& gripper : grippers_.grippers()) {
        commands << gripper.connect_command();
    }
    for (const BenchGripper& gripper : grippers_.grippers()) {
        const QString id = QString::number(gripper.id);
        commands << "gripper_active|" + id << "gripper_isConnect|" + id
                 << "gripper_isActivate|" + id << "get_gripper_status|" + id
                 << "get_gripper_position|" + id << "set_gripper_position|" + id + ",100,true"
                 << "set_gripper_position|" + id + ",0,true"
                 << "set_2_finger_gripper_param|" + id + ",50,60,80,true"
                 << "gripper_disconnect|" + id;
    }
    commands << "get_2_finger_gripper_config_info";
    return commands;
}

void EmulatorWindow::on_program_state() {
    const QString state = ProgramRunner::state_name(program_->runner().state());
    state_->setText("Program: " + state);
    transcript_.note("program state: " + state);
}
