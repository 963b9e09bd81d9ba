#ifndef EXTENSIONSYSTEM_PLUGINMANAGER_H
#define EXTENSIONSYSTEM_PLUGINMANAGER_H

#include <QList>
#include <QObject>
#include <QString>

class AbsCondInfo;

namespace ExtensionSystem {

// The pendant's object pool and program-editor services, one per process. The pool may be used
// from any thread; the signals are emitted on the caller's thread.
class PluginManager : public QObject {
    Q_OBJECT

public:
    static PluginManager* instance();

    static void addObject(QObject* object);
    static void removeObject(QObject* object);
    static QList<QObject*> allObjects();
    // The pooled object whose objectName() is name, or null.
    static QObject* getObjectByName(const QString& name);

    // The plug-in name of the program step being edited; "" until set.
    static QString curCondType();
    static void setCurCondType(const QString& condType);
    // Hands a new step record to the program editor, which owns it from then on; a record that
    // nobody receives is deleted.
    static void saveCondInfo(AbsCondInfo* condInfo);
    static void removeCondItem();

signals:
    void objectAdded(QObject* object);
    void aboutToRemoveObject(QObject* object);
    void condInfoSaved(AbsCondInfo* condInfo);
    void condItemRemoved();

private:
    PluginManager();
};

}  // namespace ExtensionSystem

#endif
