#ifndef GRIPPER_STABLE_PORT_NAME_H
#define GRIPPER_STABLE_PORT_NAME_H

#include <QString>

// The name of a serial port that survives re-enumeration: the /dev/serial/by-id link that leads
// to it (ttyUSB0 may come back as ttyUSB1, its by-id name stays), or the path itself when there
// is none. A configured by-id path reaches the same adapter after it is plugged in again.
class GripperStablePortName {
public:
    static QString of(const QString& path,
                      const QString& folder = QStringLiteral("/dev/serial/by-id"));
};

#endif
