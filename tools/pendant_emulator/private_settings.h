#ifndef TOOLS_PENDANT_EMULATOR_PRIVATE_SETTINGS_H
#define TOOLS_PENDANT_EMULATOR_PRIVATE_SETTINGS_H

#include <QSize>
#include <QString>
#include <QTemporaryDir>

// A settings store of the emulator's own, removed at exit: every QSettings of the process
// (the plug-ins' included) reads and writes below a temporary folder, so the pendant's screen
// set here never touches the user's own settings. Must exist before the first QSettings.
class PrivateSettings {
public:
    PrivateSettings();

    bool valid() const { return folder_.isValid(); }
    QString path() const { return folder_.path(); }
    // Writes the pendant's "Displays/Resolution" ("1280*800") to ("orlape", "orlape_system").
    void set_resolution(const QSize& resolution);
    // A folder for the plug-ins' shared files, inside the private one.
    QString shared_folder() const;

private:
    QTemporaryDir folder_;
};

#endif
