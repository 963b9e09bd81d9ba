#ifndef TOOLS_PENDANT_EMULATOR_CONDITION_INTERFACE_H
#define TOOLS_PENDANT_EMULATOR_CONDITION_INTERFACE_H

#include <QString>

class AbsCondInfo;
class QObject;
class QWidget;

// The program-step methods of a plug-in object, called by name through its meta-object as the
// pendant's program editor calls them. A method the object does not have makes the call fail
// (null, false or an empty text) and leaves its name in last_error().
class ConditionInterface {
public:
    explicit ConditionInterface(QObject* plugin);

    QWidget* create_cond_ui(QWidget* parent);
    bool update_cond_form(AbsCondInfo* record);
    AbsCondInfo* copy_abs_cond(AbsCondInfo* record);
    // True only when the call worked and the plug-in accepted the record; error_info holds the
    // plug-in's text otherwise.
    bool check_cond_info(AbsCondInfo* record, QString& error_info);
    AbsCondInfo* xml_info_to_cond_info(const QString& alias, const QString& xml_info);
    QString cond_info_to_script_info(AbsCondInfo* record);

    const QString& last_error() const { return last_error_; }

private:
    bool called(bool invoked, const char* method);

    QObject* plugin_;
    QString last_error_;
};

#endif
