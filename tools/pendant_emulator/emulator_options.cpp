#include "tools/pendant_emulator/emulator_options.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace {

QString absolute(const QString& path) {
    return path.isEmpty() ? path : QFileInfo(path).absoluteFilePath();
}

// A default path: the installed one relative to this program's folder (bin/ -> lib/gripper/plugins,
// bin/gripper-sim) when it exists, else the one in the build (build/tools/pendant_emulator/ ->
// build/plugins, build/tools/gripper_simulator/gripper-sim).
QString default_path(const QString& installed, const QString& in_build) {
    const QDir program_folder(QCoreApplication::applicationDirPath());
    const QString path = program_folder.absoluteFilePath(installed);
    return QDir::cleanPath(QFileInfo::exists(path) ? path
                                                   : program_folder.absoluteFilePath(in_build));
}

bool parse_resolution(const QString& text, QSize& size) {
    const QRegularExpressionMatch match =
        QRegularExpression("^(\\d{3,5})[x*](\\d{3,5})$").match(text);
    if (!match.hasMatch()) {
        return false;
    }
    size = QSize(match.captured(1).toInt(), match.captured(2).toInt());
    return true;
}

bool valid_tcp_address(const QString& text) {
    const int colon = text.lastIndexOf(':');
    bool ok = false;
    const int port = text.mid(colon + 1).toInt(&ok);
    return colon > 0 && ok && port > 0 && port < 65536;
}

void add_options(QCommandLineParser& parser) {
    parser.setApplicationDescription(
        "Loads the teach pendant's plug-ins from a folder and runs them as the pendant does, "
        "with a program panel, a script console and simulated grippers.");
    parser.addHelpOption();
    parser.addOptions({
        {"plugins", "Plug-in folder (default: the installed one, else the build's).", "dir"},
        {"resolution", "Pendant screen, WIDTHxHEIGHT (default 1024x768).", "size"},
        {"language", "Language catalogue: a name such as zh_CN, or a .qm file.", "lang"},
        {"usb", "Gripper 1 is a real gripper on this serial device (no simulator).", "device"},
        {"tcp", "Gripper 2 is a real gripper at HOST:PORT (no simulator).", "address"},
        {"no-simulators", "Start no simulated gripper."},
        {"simulator", "The gripper-sim program (default: the installed one, else the build's).",
         "path"},
        {"shared-path", "Shared file path handed to the plug-ins.", "dir"},
        {"program", "Open this program file at start.", "file"},
        {"tour", "Run the scripted tour; write pictures and transcript into dir.", "dir"},
        {"keep-open", "After the tour, keep the window open."},
        {"screenshot", "Save a picture of the window after loading, then quit.", "file"},
    });
}

bool read_values(const QCommandLineParser& parser, EmulatorOptions& options, QString& error) {
    if (parser.isSet("resolution") &&
        !parse_resolution(parser.value("resolution"), options.resolution)) {
        error = QString("--resolution %1 is not WIDTHxHEIGHT").arg(parser.value("resolution"));
        return false;
    }
    options.tcp_address = parser.value("tcp");
    if (!options.tcp_address.isEmpty() && !valid_tcp_address(options.tcp_address)) {
        error = QString("--tcp %1 is not HOST:PORT").arg(options.tcp_address);
        return false;
    }
    options.plugin_folder =
        absolute(parser.isSet("plugins") ? parser.value("plugins")
                                         : default_path(INSTALLED_PLUGIN_FOLDER, "../../plugins"));
    options.simulator_program = absolute(
        parser.isSet("simulator")
            ? parser.value("simulator")
            : default_path(INSTALLED_SIMULATOR, "../../tools/gripper_simulator/gripper-sim"));
    options.language = parser.value("language");
    if (options.language.endsWith(".qm")) {
        options.language = absolute(options.language);
    }
    options.usb_device = parser.value("usb");
    options.simulators = !parser.isSet("no-simulators");
    options.shared_path = absolute(parser.value("shared-path"));
    options.program_file = absolute(parser.value("program"));
    options.tour_folder = absolute(parser.value("tour"));
    options.keep_open = parser.isSet("keep-open");
    options.screenshot_file = absolute(parser.value("screenshot"));
    return true;
}

}  // namespace

bool EmulatorOptions::parse(const QStringList& arguments, EmulatorOptions& options,
                            QString& error) {
    QCommandLineParser parser;
    add_options(parser);
    if (!parser.parse(arguments)) {
        error = parser.errorText();
        return false;
    }
    if (parser.isSet("help")) {
        parser.showHelp();  // prints the options and ends the process with status 0
    }
    if (!parser.positionalArguments().isEmpty()) {
        error = QString("unexpected argument %1").arg(parser.positionalArguments().first());
        return false;
    }
    if (parser.isSet("tour") && parser.isSet("screenshot")) {
        error = "--tour and --screenshot exclude each other";
        return false;
    }
    return read_values(parser, options, error);
}
