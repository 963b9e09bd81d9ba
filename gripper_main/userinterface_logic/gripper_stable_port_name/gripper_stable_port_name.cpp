#include "gripper_main/userinterface_logic/gripper_stable_port_name/gripper_stable_port_name.h"

#include <QDir>
#include <QFileInfo>

QString GripperStablePortName::of(const QString& path, const QString& folder) {
    const QString device = QFileInfo(path).canonicalFilePath();
    if (device.isEmpty()) {
        return path;
    }
    const QFileInfoList links = QDir(folder).entryInfoList(
        QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo& link : links) {
        if (link.isSymLink() && QFileInfo(link.symLinkTarget()).canonicalFilePath() == device) {
            return link.absoluteFilePath();
        }
    }
    return path;
}
