// step-editor-picture: a picture of the plug-in's program-step editor for the documentation, in
// a language and at a pendant resolution, opened as the emulator opens it:
//   step-editor-picture FILE RESOLUTION [LANGUAGE]    (e.g. editor.png 1280x800 zh_TW)
// Run it on a screen at least as large as the resolution (e.g. under xvfb-run).
#include <QApplication>
#include <cstdio>

#include "tools/pendant_emulator/emulator_options.h"
#include "tools/pendant_emulator/emulator_window.h"
#include "tools/pendant_emulator/event_wait.h"
#include "tools/pendant_emulator/private_settings.h"
#include "tools/pendant_emulator/program_panel.h"
#include "tools/pendant_emulator/screenshot.h"
#include "tools/pendant_emulator/step_editor_dialog.h"

namespace {

const char* const PLUGIN = "Zanther2F";
// Time for the layouts to settle after the editor is shown.
const int SETTLE_MS = 300;

int failed(const QString& why) {
    std::fprintf(stderr, "step-editor-picture: %s\n", qPrintable(why));
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    if (argc < 3 || argc > 4) {
        std::fprintf(stderr, "usage: %s FILE RESOLUTION [LANGUAGE]\n", argv[0]);
        return 2;
    }
    QStringList arguments{app.applicationFilePath(), "--no-simulators", "--resolution", argv[2]};
    if (argc == 4) {
        arguments << "--language" << argv[3];
    }
    EmulatorOptions options;
    QString error;
    if (!EmulatorOptions::parse(arguments, options, error)) {
        return failed(error);
    }
    PrivateSettings settings;
    settings.set_resolution(options.resolution);
    EmulatorWindow window(options);
    window.load_plugins(settings.shared_folder());
    window.show();
    if (!window.program().insert_step(PLUGIN)) {
        return failed(window.program().status());
    }
    StepEditorDialog* dialog = window.program().editor(PLUGIN);
    wait_for_events([&] { return dialog->isVisible(); }, 5000);
    wait_for_events([] { return false; }, SETTLE_MS);
    if (!Screenshot::save(dialog, QString::fromLocal8Bit(argv[1]), error)) {
        return failed(error);
    }
    std::printf("wrote %s\n", argv[1]);
    return 0;
}
