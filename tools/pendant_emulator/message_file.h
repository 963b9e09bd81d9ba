#ifndef TOOLS_PENDANT_EMULATOR_MESSAGE_FILE_H
#define TOOLS_PENDANT_EMULATOR_MESSAGE_FILE_H

#include <QString>

// Sends the process's Qt messages (the plug-ins' log lines among them, which their own handlers
// pass on) to a file instead of the terminal, so that a tour's output stays readable.
class MessageFile {
public:
    // Installs the handler; false when the file cannot be opened (messages stay on stderr).
    static bool install(const QString& path);
};

#endif
