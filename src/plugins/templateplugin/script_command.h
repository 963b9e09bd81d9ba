#ifndef TEMPLATEPLUGIN_SCRIPT_COMMAND_H
#define TEMPLATEPLUGIN_SCRIPT_COMMAND_H

#include <QString>

// One script command line taken apart: the name before the first "|" and the fields between the
// first and the second "|", separated by ",". White space anywhere in the line is ignored.
class ScriptCommand {
public:
    explicit ScriptCommand(const QString& line);

    const QString& name() const { return name_; }
    // Field k, empty when missing.
    QString field(int k) const;
    // Field k as a base-10 integer; 0 when it is not one.
    int number(int k) const;
    // The registry index named by field 0: the 1-based device id minus one. The lowest id wraps
    // to the highest index instead of overflowing; neither names a registry entry.
    int device_index() const;

private:
    QString name_;
    QString arguments_;
};

#endif
