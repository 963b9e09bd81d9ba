#include "platform/pluginmanager.h"

#include <QMetaMethod>
#include <QMutex>
#include <QMutexLocker>

#include "platform/abscondinfo.h"

namespace ExtensionSystem {
namespace {

struct Pool {
    QMutex mutex;
    QList<QObject*> objects;
    QString cond_type;
};

Pool& pool() {
    static Pool the_pool;
    return the_pool;
}

}  // namespace

PluginManager::PluginManager() = default;

PluginManager* PluginManager::instance() {
    static PluginManager the_manager;
    return &the_manager;
}

void PluginManager::addObject(QObject* object) {
    if (object == nullptr) {
        return;
    }
    {
        QMutexLocker locker(&pool().mutex);
        if (pool().objects.contains(object)) {
            return;
        }
        pool().objects.append(object);
    }
    emit instance()->objectAdded(object);
}

void PluginManager::removeObject(QObject* object) {
    {
        QMutexLocker locker(&pool().mutex);
        if (!pool().objects.contains(object)) {
            return;
        }
    }
    emit instance()->aboutToRemoveObject(object);
    QMutexLocker locker(&pool().mutex);
    pool().objects.removeAll(object);
}

QList<QObject*> PluginManager::allObjects() {
    QMutexLocker locker(&pool().mutex);
    return pool().objects;
}

QObject* PluginManager::getObjectByName(const QString& name) {
    QMutexLocker locker(&pool().mutex);
    for (QObject* object : pool().objects) {
        if (object->objectName() == name) {
            return object;
        }
    }
    return nullptr;
}

QString PluginManager::curCondType() {
    QMutexLocker locker(&pool().mutex);
    return pool().cond_type;
}

void PluginManager::setCurCondType(const QString& condType) {
    QMutexLocker locker(&pool().mutex);
    pool().cond_type = condType;
}

void PluginManager::saveCondInfo(AbsCondInfo* condInfo) {
    static const QMetaMethod saved = QMetaMethod::fromSignal(&PluginManager::condInfoSaved);
    if (!instance()->isSignalConnected(saved)) {
        delete condInfo;
        return;
    }
    emit instance()->condInfoSaved(condInfo);
}

void PluginManager::removeCondItem() {
    emit instance()->condItemRemoved();
}

}  // namespace ExtensionSystem
