#include "tools/pendant_emulator/private_settings.h"

#include <QDir>
#include <QSettings>

PrivateSettings::PrivateSettings() : folder_(QDir::tempPath() + "/pendant-emulator-XXXXXX") {
    if (!folder_.isValid()) {
        return;
    }
    for (QSettings::Format format : {QSettings::NativeFormat, QSettings::IniFormat}) {
        QSettings::setPath(format, QSettings::UserScope, folder_.filePath("user"));
        QSettings::setPath(format, QSettings::SystemScope, folder_.filePath("system"));
    }
}

void PrivateSettings::set_resolution(const QSize& resolution) {
    QSettings settings("orlape", "orlape_system");
    settings.setValue("Displays/Resolution",
                      QString("%1*%2").arg(resolution.width()).arg(resolution.height()));
    settings.sync();
}

QString PrivateSettings::shared_folder() const {
    const QString path = folder_.filePath("shared");
    QDir().mkpath(path);
    return path;
}
