#ifndef TOOLS_PENDANT_EMULATOR_EMULATOR_WINDOW_H
#define TOOLS_PENDANT_EMULATOR_EMULATOR_WINDOW_H

#include <QMainWindow>

#include "tools/pendant_emulator/emulated_grippers.h"
#include "tools/pendant_emulator/emulator_options.h"
#include "tools/pendant_emulator/language_catalogue.h"
#include "tools/pendant_emulator/plugin_folder_loader.h"
#include "tools/pendant_emulator/script_thread.h"
#include "tools/pendant_emulator/transcript.h"

class BenchPage;
class ProgramPanel;
class QLabel;
class QTabWidget;
class ScriptConsole;

// The pendant's screen: one tab per plug-in page, named after the plug-in, then the program
// panel, the script console and the emulator's own bench page. It owns the session: the
// grippers on the bench, the loaded plug-ins, the script thread and the transcript.
class EmulatorWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit EmulatorWindow(const EmulatorOptions& options, QWidget* parent = nullptr);
    ~EmulatorWindow() override;

    // Starts the simulated grippers (their logs go to log_folder, if given).
    bool start_grippers(const QString& log_folder);
    // Loads the plug-in folder and shows the page of each plug-in, as the pendant does at
    // start-up: language, message-box parent, shared file path, then createUI.
    void load_plugins(const QString& shared_path);
    // Stops a running program (which releases a step waiting for a move), then ends the script
    // thread and the simulators.
    void shutdown();

    ScriptThread& script() { return script_; }
    Transcript& transcript() { return transcript_; }
    ProgramPanel& program() { return *program_; }
    ScriptConsole& console() { return *console_; }
    BenchPage& bench() { return *bench_; }
    EmulatedGrippers& grippers() { return grippers_; }
    QTabWidget& tabs() { return *tabs_; }
    const PluginFolderLoader& loader() const { return loader_; }
    // The page a plug-in made, or null.
    QWidget* plugin_page(const QString& name) const;

private:
    void show_plugin(const LoadedPlugin& loaded, const QString& shared_path);
    void report(const QString& line);
    void install_language();
    QStringList suggestions() const;
    void on_program_state();

    const EmulatorOptions options_;
    ScriptThread script_;
    Transcript transcript_;
    EmulatedGrippers grippers_;
    PluginFolderLoader loader_;
    LanguageCatalogue language_;
    QTabWidget* tabs_ = nullptr;
    ProgramPanel* program_ = nullptr;
    ScriptConsole* console_ = nullptr;
    BenchPage* bench_ = nullptr;
    QLabel* state_ = nullptr;
    bool shut_down_ = false;
};

#endif
