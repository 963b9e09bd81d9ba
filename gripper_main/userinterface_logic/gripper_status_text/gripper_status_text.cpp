#include "gripper_main/userinterface_logic/gripper_status_text/gripper_status_text.h"

#include <QCoreApplication>
#include <QLabel>
#include <QStyle>
#include <QVariant>

#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control.h"

namespace {

const char* const UNDEFINE = "Undefine";

const char* const COMMUNICATION_TEXTS[] = {
    UNDEFINE,     "Unconnected", "Failure",    "Connected",    "Disconnected",
    "Write EXCP", "Read EXCP",   "Alive EXCP", "Version EXCP", "Device EXCP",
};

const char* const GRIPPER_TEXTS[] = {
    UNDEFINE,  "Inactivate", "Activating", "Activated", "Moving",
    "Turning", "Arrived",    "Detected",   "Dropped",
};

template <size_t N>
QString text_at(const char* const (&texts)[N], int status) {
    if (status < 1 || status >= static_cast<int>(N)) {
        return QString::fromLatin1(UNDEFINE);
    }
    return QString::fromLatin1(texts[status]);
}

}  // namespace

QString GripperStatusText::of(GripperLogicControl* driver) {
    if (nullptr == driver) {
        return QStringLiteral("Disconnected");
    }
    if (driver->reconnecting()) {
        return reconnecting(driver->reconnect_tries());
    }
    if (driver->occur_exception()) {
        return communication(driver->get_communication_status());
    }
    return gripper(driver->get_gripper_status());
}

// Before the first try, without its count.
QString GripperStatusText::reconnecting(int tries) {
    if (tries < 1) {
        return QCoreApplication::translate("GripperStatusText", "Reconnecting");
    }
    return QCoreApplication::translate("GripperStatusText", "Reconnecting (%1)").arg(tries);
}

QString GripperStatusText::tone(GripperLogicControl* driver) {
    if (nullptr == driver) {
        return QStringLiteral("idle");
    }
    if (driver->reconnecting()) {
        return QStringLiteral("busy");
    }
    return driver->occur_exception() ? QStringLiteral("fault") : QStringLiteral("ok");
}

void GripperStatusText::show(QLabel* label, const QString& text, const QString& tone) {
    label->setText(text);
    if (label->property("tone").toString() != tone) {
        label->setProperty("tone", tone);
        label->style()->unpolish(label);
        label->style()->polish(label);
    }
}

QString GripperStatusText::communication(int status) {
    return text_at(COMMUNICATION_TEXTS, status);
}

QString GripperStatusText::gripper(int status) {
    return text_at(GRIPPER_TEXTS, status);
}
