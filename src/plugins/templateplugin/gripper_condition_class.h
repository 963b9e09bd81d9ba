#ifndef TEMPLATEPLUGIN_GRIPPER_CONDITION_CLASS_H
#define TEMPLATEPLUGIN_GRIPPER_CONDITION_CLASS_H

#include <QString>

#include "platform/abscondinfo.h"

// The plug-in's record of one gripper program step: which gripper, the target position, force
// and speed, and whether the robot program waits for the move. The pendant stores its parameters
// as one JSON object and asks for the script line that performs the step.
class gripper_condition_class : public AbsCondInfo {
    Q_OBJECT

public:
    gripper_condition_class();
    gripper_condition_class(const QString& alias, const QString& xmlInfo, const QString& pluginName,
                            const int& deviceId, const int& position, const int& force,
                            const int& speed, const bool& isBlock);
    gripper_condition_class(const gripper_condition_class& other);
    gripper_condition_class& operator=(const gripper_condition_class& other);
    ~gripper_condition_class() override;

    QString getPluginName() const;
    void setPluginName(const QString& pluginName);
    int getDeviceID() const;
    void setDeviceID(int deviceId);
    int getPosition() const;
    void setPosition(const int& position);
    int getForce() const;
    void setForce(int force);
    int getSpeed() const;
    void setSpeed(int speed);
    bool isBlock() const;
    void setIsBlock(bool isBlock);

    // A new record, owned by the caller, rebuilt from the stored JSON text. An old text that
    // names the device "Id" is rewritten with "DeviceID".
    static AbsCondInfo* xmlInfo2CondInfo(const QString& alias, const QString& xmlInfo);
    // The script line of a record of this type; an empty text for anything else.
    static QString condInfo2ScriptInfo(AbsCondInfo* absCondInfo);

private:
    void copyOthertoSelf(const gripper_condition_class& other);

    QString plugin_name_;
    int device_id_;
    int position_;
    int force_;
    int speed_;
    bool is_block_;
};

#endif
