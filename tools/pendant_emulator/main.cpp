// pendant-emulator: runs the teach pendant's plug-ins outside a pendant. See docs/emulator.md.

#include <QApplication>
#include <QDir>
#include <QTimer>
#include <cstdio>

#include "tools/pendant_emulator/emulator_options.h"
#include "tools/pendant_emulator/emulator_window.h"
#include "tools/pendant_emulator/event_wait.h"
#include "tools/pendant_emulator/message_file.h"
#include "tools/pendant_emulator/private_settings.h"
#include "tools/pendant_emulator/program_panel.h"
#include "tools/pendant_emulator/screenshot.h"
#include "tools/pendant_emulator/tour.h"

namespace {

bool offscreen_requested(int argc, char** argv) {
    bool offscreen = qgetenv("QT_QPA_PLATFORM").startsWith("offscreen");
    for (int i = 1; i + 1 < argc; ++i) {
        offscreen = offscreen || (QByteArray(argv[i]) == "-platform" &&
                                  QByteArray(argv[i + 1]).startsWith("offscreen"));
    }
    return offscreen;
}

// The offscreen platform has one 800x600 screen, smaller than any pendant's; the plug-ins
// size their pages by the screen they find. At scale 0.5 that screen holds 1600x1200 logical
// pixels, and the pictures are drawn at one image pixel per logical pixel all the same.
void enlarge_offscreen_screen(int argc, char** argv) {
    if (offscreen_requested(argc, argv) && !qEnvironmentVariableIsSet("QT_SCALE_FACTOR")) {
        qputenv("QT_SCALE_FACTOR", "0.5");
    }
}

int take_screenshot(EmulatorWindow& window, const QString& file) {
    QString error;
    wait_for_events([&] { return window.isVisible(); }, 2000);
    if (!Screenshot::save(&window, file, error)) {
        std::fprintf(stderr, "pendant-emulator: %s\n", qPrintable(error));
        return 1;
    }
    std::printf("Picture of the pendant's screen: %s\n", qPrintable(file));
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    enlarge_offscreen_screen(argc, argv);
    QApplication app(argc, argv);
    app.setApplicationName("pendant-emulator");
    EmulatorOptions options;
    QString error;
    if (!EmulatorOptions::parse(app.arguments(), options, error)) {
        std::fprintf(stderr, "pendant-emulator: %s (see --help)\n", qPrintable(error));
        return 2;
    }
    PrivateSettings settings;
    if (!settings.valid()) {
        std::fprintf(stderr, "pendant-emulator: cannot make a private settings folder\n");
        return 1;
    }
    settings.set_resolution(options.resolution);
    if (!options.tour_folder.isEmpty() && !QDir().mkpath(options.tour_folder)) {
        std::fprintf(stderr, "pendant-emulator: cannot make %s\n", qPrintable(options.tour_folder));
        return 1;
    }
    if (!options.tour_folder.isEmpty()) {
        MessageFile::install(QDir(options.tour_folder).filePath("messages.log"));
    }
    EmulatorWindow window(options);
    if (!window.start_grippers(options.tour_folder)) {
        std::fprintf(stderr, "pendant-emulator: %s\n",
                     qPrintable(window.transcript().lines().last()));
        return 1;
    }
    window.load_plugins(options.shared_path.isEmpty() ? settings.shared_folder()
                                                      : options.shared_path);
    if (!options.program_file.isEmpty()) {
        window.program().open_program(options.program_file);
    }
    window.show();
    if (!options.screenshot_file.isEmpty()) {
        return take_screenshot(window, options.screenshot_file);
    }
    if (options.tour_folder.isEmpty()) {
        return app.exec();
    }
    Tour tour(window, options.tour_folder, options.keep_open);
    QTimer::singleShot(0, &tour, &Tour::run);
    app.exec();
    return tour.exit_code();
}
