#include "gripper_main/userinterface_logic/gripper_status_text/gripper_status_text.h"

#include <QCoreApplication>
#include <QLabel>
#include <QStyle>
#include <QVariant>

#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control.h"

namespace {

const char* const UNDEFINE = QT_TRANSLATE_NOOP("GripperStatusText", "Undefine");
const char* const DISCONNECTED = QT_TRANSLATE_NOOP("GripperStatusText", "Disconnected");

const char* const COMMUNICATION_TEXTS[] = {
    UNDEFINE,
    QT_TRANSLATE_NOOP("GripperStatusText", "Unconnected"),
    QT_TRANSLATE_NOOP("GripperStatusText", "Failure"),
    QT_TRANSLATE_NOOP("GripperStatusText", "Connected"),
    DISCONNECTED,
    QT_TRANSLATE_NOOP("GripperStatusText", "Write EXCP"),
    QT_TRANSLATE_NOOP("GripperStatusText", "Read EXCP"),
    QT_TRANSLATE_NOOP("GripperStatusText", "Alive EXCP"),
    QT_TRANSLATE_NOOP("GripperStatusText", "Version EXCP"),
    QT_TRANSLATE_NOOP("GripperStatusText", "Device EXCP"),
};

const char* const GRIPPER_TEXTS[] = {
    UNDEFINE,
    QT_TRANSLATE_NOOP("GripperStatusText", "Inactivate"),
    QT_TRANSLATE_NOOP("GripperStatusText", "Activating"),
    QT_TRANSLATE_NOOP("GripperStatusText", "Activated"),
    QT_TRANSLATE_NOOP("GripperStatusText", "Moving"),
    QT_TRANSLATE_NOOP("GripperStatusText", "Turning"),
    QT_TRANSLATE_NOOP("GripperStatusText", "Arrived"),
    QT_TRANSLATE_NOOP("GripperStatusText", "Detected"),
    QT_TRANSLATE_NOOP("GripperStatusText", "Dropped"),
};

template <size_t N>
QString text_at(const char* const (&texts)[N], int status) {
    if (status < 1 || status >= static_cast<int>(N)) {
        return GripperStatusText::tr(UNDEFINE);
    }
    return GripperStatusText::tr(texts[status]);
}

}  // namespace

QString GripperStatusText::of(GripperLogicControl* driver) {
    if (nullptr == driver) {
        return tr(DISCONNECTED);
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
