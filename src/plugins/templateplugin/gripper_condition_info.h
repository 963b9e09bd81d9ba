#ifndef TEMPLATEPLUGIN_GRIPPER_CONDITION_INFO_H
#define TEMPLATEPLUGIN_GRIPPER_CONDITION_INFO_H

#include <QString>

class gripper_condition_class;

// Whether a plug-in's gripper has one quantity (position, force or speed), and its range.
struct gripper_condition_Range {
    bool enabled = false;
    int min = 0;
    int max = 0;

    // -1 stands for "not used" and fits only a quantity the gripper does not have.
    bool accepts(int value) const;
};

// The parameter ranges a plug-in reports in its configuration answer. A default one has every
// quantity disabled with the ranges 0, which is what an unknown plug-in gets.
class gripper_condition_Info {
public:
    static gripper_condition_Info fromJson(const QString& json);

    // Checks position, then force, then speed; the first that does not fit names the error.
    bool check(const gripper_condition_class& record, QString& errorInfo) const;

    gripper_condition_Range position;
    gripper_condition_Range force;
    gripper_condition_Range speed;
};

#endif
