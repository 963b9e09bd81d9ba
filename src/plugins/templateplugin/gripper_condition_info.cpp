#include "src/plugins/templateplugin/gripper_condition_info.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>

#include "src/plugins/templateplugin/gripper_condition_class.h"

namespace {

gripper_condition_Range range_of(const QJsonObject& config, const QString& quantity) {
    gripper_condition_Range range;
    range.enabled = config.value(quantity + QStringLiteral("Enabled")).toBool();
    range.min = config.value(quantity + QStringLiteral("Min")).toInt();
    range.max = config.value(quantity + QStringLiteral("Max")).toInt();
    return range;
}

}  // namespace

bool gripper_condition_Range::accepts(int value) const {
    if (-1 == value) {
        return !enabled;
    }
    return enabled && min <= value && value <= max;
}

gripper_condition_Info gripper_condition_Info::fromJson(const QString& json) {
    const QJsonObject config = QJsonDocument::fromJson(json.toUtf8()).object();
    gripper_condition_Info info;
    info.position = range_of(config, QStringLiteral("position"));
    info.force = range_of(config, QStringLiteral("force"));
    info.speed = range_of(config, QStringLiteral("speed"));
    return info;
}

bool gripper_condition_Info::check(const gripper_condition_class& record,
                                   QString& errorInfo) const {
    if (!position.accepts(record.getPosition())) {
        errorInfo =
            QCoreApplication::translate("gripper_peripheral_condition",
                                        "position does not match the configuration information");
        return false;
    }
    if (!force.accepts(record.getForce())) {
        errorInfo = QCoreApplication::translate(
            "gripper_peripheral_condition", "force does not match the configuration information");
        return false;
    }
    if (!speed.accepts(record.getSpeed())) {
        errorInfo = QCoreApplication::translate(
            "gripper_peripheral_condition", "speed does not match the configuration information");
        return false;
    }
    return true;
}
