#include "src/plugins/templateplugin/gripper_condition_class.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

#include "gripper/gripper_common/simple_logger/simple_logger.h"

namespace {

const char kConditionType[] = "Zanther2F";

// The editor writes the device id as a text of digits; older records hold a number.
int device_id_of(const QJsonValue& value) {
    return value.isString() ? value.toString().toInt() : value.toInt();
}

// Reads the device id and drops an old "Id" key in favour of "DeviceID".
int take_device_id(QJsonObject& object, bool& migrated) {
    const int device_id = object.contains(QStringLiteral("DeviceID"))
                              ? device_id_of(object.value(QStringLiteral("DeviceID")))
                              : device_id_of(object.value(QStringLiteral("Id")));
    migrated = object.contains(QStringLiteral("Id"));
    if (migrated) {
        object.remove(QStringLiteral("Id"));
        object.insert(QStringLiteral("DeviceID"), device_id);
    }
    return device_id;
}

}  // namespace

gripper_condition_class::gripper_condition_class()
    : device_id_(0), position_(0), force_(0), speed_(0), is_block_(true) {}

gripper_condition_class::gripper_condition_class(const QString& alias, const QString& xmlInfo,
                                                 const QString& pluginName, const int& deviceId,
                                                 const int& position, const int& force,
                                                 const int& speed, const bool& isBlock)
    : AbsCondInfo(QString::fromLatin1(kConditionType), alias, xmlInfo, QString()),
      plugin_name_(pluginName),
      device_id_(deviceId),
      position_(position),
      force_(force),
      speed_(speed),
      is_block_(isBlock) {}

gripper_condition_class::gripper_condition_class(const gripper_condition_class& other)
    : AbsCondInfo(other) {
    copyOthertoSelf(other);
}

gripper_condition_class& gripper_condition_class::operator=(const gripper_condition_class& other) {
    AbsCondInfo::operator=(other);
    copyOthertoSelf(other);
    return *this;
}

gripper_condition_class::~gripper_condition_class() = default;

void gripper_condition_class::copyOthertoSelf(const gripper_condition_class& other) {
    plugin_name_ = other.plugin_name_;
    device_id_ = other.device_id_;
    position_ = other.position_;
    force_ = other.force_;
    speed_ = other.speed_;
    is_block_ = other.is_block_;
}

QString gripper_condition_class::getPluginName() const {
    return plugin_name_;
}

void gripper_condition_class::setPluginName(const QString& pluginName) {
    plugin_name_ = pluginName;
}

int gripper_condition_class::getDeviceID() const {
    return device_id_;
}

void gripper_condition_class::setDeviceID(int deviceId) {
    device_id_ = deviceId;
}

int gripper_condition_class::getPosition() const {
    return position_;
}

void gripper_condition_class::setPosition(const int& position) {
    position_ = position;
}

int gripper_condition_class::getForce() const {
    return force_;
}

void gripper_condition_class::setForce(int force) {
    force_ = force;
}

int gripper_condition_class::getSpeed() const {
    return speed_;
}

void gripper_condition_class::setSpeed(int speed) {
    speed_ = speed;
}

bool gripper_condition_class::isBlock() const {
    return is_block_;
}

void gripper_condition_class::setIsBlock(bool isBlock) {
    is_block_ = isBlock;
}

AbsCondInfo* gripper_condition_class::xmlInfo2CondInfo(const QString& alias,
                                                       const QString& xmlInfo) {
    QJsonObject object = QJsonDocument::fromJson(xmlInfo.toUtf8()).object();
    bool migrated = false;
    const int device_id = take_device_id(object, migrated);
    const QString json_text =
        migrated ? QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact))
                 : xmlInfo;
    return new gripper_condition_class(alias, json_text,
                                       object.value(QStringLiteral("PluginName")).toString(),
                                       device_id, object.value(QStringLiteral("Position")).toInt(),
                                       object.value(QStringLiteral("Force")).toInt(),
                                       object.value(QStringLiteral("Speed")).toInt(),
                                       object.value(QStringLiteral("IsBlock")).toBool());
}

QString gripper_condition_class::condInfo2ScriptInfo(AbsCondInfo* absCondInfo) {
    const gripper_condition_class* condition = qobject_cast<gripper_condition_class*>(absCondInfo);
    if (nullptr == condition) {
        GRIPPER_LOG("W", "NULL == condition");
        return QString();
    }
    return QStringLiteral("script_common_interface(\"%1\", ").arg(condition->plugin_name_) +
           QStringLiteral("\"set_2_finger_gripper_param|") +
           QStringLiteral("%1, %2, %3, %4, %5\")")
               .arg(condition->device_id_)
               .arg(condition->position_)
               .arg(condition->force_)
               .arg(condition->speed_)
               .arg(condition->is_block_ ? QStringLiteral("true") : QStringLiteral("false"));
}
