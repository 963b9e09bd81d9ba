#ifndef GRIPPER_STATUS_TEXT_H
#define GRIPPER_STATUS_TEXT_H

#include <QCoreApplication>
#include <QString>

class GripperLogicControl;
class QLabel;

// The state texts of the pages: "Reconnecting" with the count of tries while a driver reconnects
// by itself, for a driver with a link fault the text of its communication status, otherwise the
// text of its gripper status; "Disconnected" without a driver. Reads only the driver's lock-free
// statuses. The texts are translated in the context "GripperStatusText" by the catalogue
// installed when they are asked for.
class GripperStatusText {
    Q_DECLARE_TR_FUNCTIONS(GripperStatusText)

public:
    static QString of(GripperLogicControl* driver);
    // How the pages colour the state: "idle" without a driver, "fault" with a link fault, "ok".
    static QString tone(GripperLogicControl* driver);
    // Shows text in label, coloured by tone through the label's "tone" property.
    static void show(QLabel* label, const QString& text, const QString& tone);
    static QString reconnecting(int tries);
    static QString communication(int status);
    static QString gripper(int status);
};

#endif
