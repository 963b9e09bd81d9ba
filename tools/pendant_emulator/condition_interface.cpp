#include "tools/pendant_emulator/condition_interface.h"

#include <QMetaObject>
#include <QWidget>

#include "platform/abscondinfo.h"

ConditionInterface::ConditionInterface(QObject* plugin) : plugin_(plugin) {}

QWidget* ConditionInterface::create_cond_ui(QWidget* parent) {
    QWidget* widget = nullptr;
    called(QMetaObject::invokeMethod(plugin_, "createCondUI", Qt::DirectConnection,
                                     Q_RETURN_ARG(QWidget*, widget), Q_ARG(QWidget*, parent)),
           "createCondUI");
    return widget;
}

bool ConditionInterface::update_cond_form(AbsCondInfo* record) {
    return called(QMetaObject::invokeMethod(plugin_, "updateCondForm", Qt::DirectConnection,
                                            Q_ARG(AbsCondInfo*, record)),
                  "updateCondForm");
}

AbsCondInfo* ConditionInterface::copy_abs_cond(AbsCondInfo* record) {
    AbsCondInfo* copy = nullptr;
    called(QMetaObject::invokeMethod(plugin_, "copyAbsCond", Qt::DirectConnection,
                                     Q_RETURN_ARG(AbsCondInfo*, copy), Q_ARG(AbsCondInfo*, record)),
           "copyAbsCond");
    return copy;
}

bool ConditionInterface::check_cond_info(AbsCondInfo* record, QString& error_info) {
    bool valid = false;
    const bool invoked =
        called(QMetaObject::invokeMethod(plugin_, "checkCondInfo", Qt::DirectConnection,
                                         Q_RETURN_ARG(bool, valid), Q_ARG(AbsCondInfo*, record),
                                         Q_ARG(QString&, error_info)),
               "checkCondInfo");
    return invoked && valid;
}

AbsCondInfo* ConditionInterface::xml_info_to_cond_info(const QString& alias,
                                                       const QString& xml_info) {
    AbsCondInfo* record = nullptr;
    called(QMetaObject::invokeMethod(plugin_, "xmlInfoToCondInfo", Qt::DirectConnection,
                                     Q_RETURN_ARG(AbsCondInfo*, record), Q_ARG(QString, alias),
                                     Q_ARG(QString, xml_info)),
           "xmlInfoToCondInfo");
    return record;
}

QString ConditionInterface::cond_info_to_script_info(AbsCondInfo* record) {
    QString script;
    called(QMetaObject::invokeMethod(plugin_, "condInfo2ScriptInfo", Qt::DirectConnection,
                                     Q_RETURN_ARG(QString, script), Q_ARG(AbsCondInfo*, record)),
           "condInfo2ScriptInfo");
    return script;
}

bool ConditionInterface::called(bool invoked, const char* method) {
    last_error_ = invoked ? QString()
                          : QString("the plug-in \"%1\" has no invokable %2 of the pendant's form")
                                .arg(plugin_->objectName(), method);
    return invoked;
}
