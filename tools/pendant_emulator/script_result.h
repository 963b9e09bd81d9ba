#ifndef TOOLS_PENDANT_EMULATOR_SCRIPT_RESULT_H
#define TOOLS_PENDANT_EMULATOR_SCRIPT_RESULT_H

#include <QMetaType>
#include <QString>

#include "tools/pendant_emulator/script_line.h"

// One command of the script thread: what was sent, what the plug-in returned and answered, or
// why it could not be sent. Times are milliseconds of the emulator's clock.
struct ScriptResult {
    int number = 0;
    ScriptLine line;
    bool returned = false;
    QString answer;
    // Not empty when the command never reached a plug-in.
    QString error;
    qint64 started_ms = 0;
    qint64 finished_ms = 0;
};

Q_DECLARE_METATYPE(ScriptResult)

#endif
