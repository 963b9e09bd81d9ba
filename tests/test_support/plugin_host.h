#ifndef TESTS_TEST_SUPPORT_PLUGIN_HOST_H
#define TESTS_TEST_SUPPORT_PLUGIN_HOST_H

#include <QGenericArgument>
#include <QJsonObject>
#include <QMetaObject>
#include <QPluginLoader>
#include <QString>
#include <QWidget>

#include "platform/abscondinfo.h"
#include "platform/iplugin.h"
#include "platform/pluginmanager.h"

// Loads the built plug-in as the pendant does: by file, through the plug-in loader, named after
// its metadata and added to the plug-in manager. Calls the program-step hooks by name through
// the meta-object, as the pendant's program editor does.
class PluginHost {
public:
    // Loads, checks the cast and registers; false (with the reason in error()) on failure.
    bool load() {
        loader_.setFileName(QStringLiteral(ZANTHER2F_LIBRARY));
        QObject* instance = loader_.instance();
        plugin_ = qobject_cast<ExtensionSystem::IPlugin*>(instance);
        if (nullptr == plugin_) {
            return false;
        }
        plugin_->setObjectName(metaData().value(QStringLiteral("Name")).toString());
        ExtensionSystem::PluginManager::addObject(plugin_);
        return true;
    }

    QString error() const { return loader_.errorString(); }
    ExtensionSystem::IPlugin* plugin() const { return plugin_; }
    QJsonObject rawMetaData() const { return loader_.metaData(); }
    QJsonObject metaData() const {
        return loader_.metaData().value(QStringLiteral("MetaData")).toObject();
    }

    QWidget* createCondUI(QWidget* parent) {
        QWidget* result = nullptr;
        invoke("createCondUI", Q_RETURN_ARG(QWidget*, result), Q_ARG(QWidget*, parent));
        return result;
    }

    void updateCondForm(AbsCondInfo* record) {
        invoke("updateCondForm", QGenericReturnArgument(), Q_ARG(AbsCondInfo*, record));
    }

    AbsCondInfo* copyAbsCond(AbsCondInfo* record) {
        AbsCondInfo* result = nullptr;
        invoke("copyAbsCond", Q_RETURN_ARG(AbsCondInfo*, result), Q_ARG(AbsCondInfo*, record));
        return result;
    }

    bool checkCondInfo(AbsCondInfo* record, QString& error) {
        bool result = false;
        invoke("checkCondInfo", Q_RETURN_ARG(bool, result), Q_ARG(AbsCondInfo*, record),
               Q_ARG(QString&, error));
        return result;
    }

    AbsCondInfo* xmlInfoToCondInfo(const QString& alias, const QString& xml) {
        AbsCondInfo* result = nullptr;
        invoke("xmlInfoToCondInfo", Q_RETURN_ARG(AbsCondInfo*, result), Q_ARG(QString, alias),
               Q_ARG(QString, xml));
        return result;
    }

    QString condInfo2ScriptInfo(AbsCondInfo* record) {
        QString result;
        invoke("condInfo2ScriptInfo", Q_RETURN_ARG(QString, result), Q_ARG(AbsCondInfo*, record));
        return result;
    }

    // Counts the failed invocations; a method missing from the meta-object fails.
    int failed_invocations() const { return failed_invocations_; }

private:
    void invoke(const char* name, QGenericReturnArgument result,
                QGenericArgument first = QGenericArgument(),
                QGenericArgument second = QGenericArgument()) {
        if (!QMetaObject::invokeMethod(plugin_, name, Qt::DirectConnection, result, first,
                                       second)) {
            ++failed_invocations_;
        }
    }

    QPluginLoader loader_;
    ExtensionSystem::IPlugin* plugin_ = nullptr;
    int failed_invocations_ = 0;
};

#endif
