#ifndef TOOLS_PENDANT_EMULATOR_EMULATOR_OPTIONS_H
#define TOOLS_PENDANT_EMULATOR_EMULATOR_OPTIONS_H

#include <QSize>
#include <QString>
#include <QStringList>

// What the command line asks for. Paths are absolute once parsed (a plug-in may change the
// process's working directory when it loads).
struct EmulatorOptions {
    QString plugin_folder;
    // The pendant's screen: the window size and the "Displays/Resolution" setting.
    QSize resolution{1024, 768};
    // A catalogue name such as "zh_CN" (looked up in the plug-ins' resources) or a .qm file.
    QString language;
    // Real grippers instead of simulated ones: gripper 1 on a serial device, gripper 2 at
    // host:port. Each replaces that gripper's simulator.
    QString usb_device;
    QString tcp_address;
    bool simulators = true;
    QString simulator_program;
    QString shared_path;
    QString program_file;
    // Run the tour and write its pictures and transcript here.
    QString tour_folder;
    bool keep_open = false;
    // Save a picture of the window once the plug-ins are loaded, then quit.
    QString screenshot_file;

    // Reads the arguments of the emulator's own program (arguments[0] is the program); on
    // failure error says why. --help prints the options and ends the process.
    static bool parse(const QStringList& arguments, EmulatorOptions& options, QString& error);
};

#endif
