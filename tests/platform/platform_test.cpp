// The pendant's interfaces as the plug-in uses them: the object pool, the program-step editor's
// services and the step record.
#include <gtest/gtest.h>
#include <QObject>
#include <QPointer>

#include <thread>
#include <vector>

#include "platform/abscondinfo.h"
#include "platform/pluginmanager.h"

using ExtensionSystem::PluginManager;

TEST(PluginManagerTest, PoolFindsObjectsByNameAndTellsAboutChanges) {
    QObject plugin;
    plugin.setObjectName(QStringLiteral("Zanther2F"));
    std::vector<QObject*> added;
    std::vector<QObject*> removing;
    const QMetaObject::Connection on_add =
        QObject::connect(PluginManager::instance(), &PluginManager::objectAdded,
                         [&](QObject* object) { added.push_back(object); });
    const QMetaObject::Connection on_remove = QObject::connect(
        PluginManager::instance(), &PluginManager::aboutToRemoveObject, [&](QObject* object) {
            removing.push_back(object);
            EXPECT_EQ(object, PluginManager::getObjectByName(QStringLiteral("Zanther2F")));
        });
    EXPECT_EQ(nullptr, PluginManager::getObjectByName(QStringLiteral("Zanther2F")));
    PluginManager::addObject(&plugin);
    PluginManager::addObject(&plugin);
    PluginManager::addObject(nullptr);
    EXPECT_EQ(&plugin, PluginManager::getObjectByName(QStringLiteral("Zanther2F")));
    EXPECT_EQ(1, PluginManager::allObjects().count(&plugin));
    PluginManager::removeObject(&plugin);
    PluginManager::removeObject(&plugin);
    EXPECT_EQ(nullptr, PluginManager::getObjectByName(QStringLiteral("Zanther2F")));
    EXPECT_EQ(std::vector<QObject*>{&plugin}, added);
    EXPECT_EQ(std::vector<QObject*>{&plugin}, removing);
    QObject::disconnect(on_add);
    QObject::disconnect(on_remove);
}

TEST(PluginManagerTest, PoolIsSafeFromSeveralThreads) {
    std::vector<QObject> objects(64);
    std::vector<std::thread> threads;
    for (int part = 0; part < 4; ++part) {
        threads.emplace_back([&objects, part] {
            for (int index = part; index < 64; index += 4) {
                objects[index].setObjectName(QString::number(index));
                PluginManager::addObject(&objects[index]);
                PluginManager::getObjectByName(QString::number(index));
                PluginManager::removeObject(&objects[index]);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_TRUE(PluginManager::allObjects().isEmpty());
}

TEST(PluginManagerTest, StepRecordGoesToTheEditorOrIsDeleted) {
    EXPECT_EQ(QString(), PluginManager::curCondType());
    PluginManager::setCurCondType(QStringLiteral("Zanther2F"));
    EXPECT_EQ(QStringLiteral("Zanther2F"), PluginManager::curCondType());

    QPointer<AbsCondInfo> unheard(
        new AbsCondInfo(QStringLiteral("Zanther2F"), QString(), QString(), QString()));
    PluginManager::saveCondInfo(unheard.data());
    EXPECT_TRUE(unheard.isNull());

    AbsCondInfo* received = nullptr;
    int removed = 0;
    const QMetaObject::Connection on_save =
        QObject::connect(PluginManager::instance(), &PluginManager::condInfoSaved,
                         [&](AbsCondInfo* record) { received = record; });
    const QMetaObject::Connection on_remove = QObject::connect(
        PluginManager::instance(), &PluginManager::condItemRemoved, [&] { ++removed; });
    AbsCondInfo* record = new AbsCondInfo(QStringLiteral("Zanther2F"), QStringLiteral("grip"),
                                          QStringLiteral("{}"), QStringLiteral("close"));
    PluginManager::saveCondInfo(record);
    PluginManager::removeCondItem();
    EXPECT_EQ(record, received);
    EXPECT_EQ(1, removed);
    delete received;
    QObject::disconnect(on_save);
    QObject::disconnect(on_remove);
    PluginManager::setCurCondType(QString());
}

TEST(AbsCondInfoTest, CopiesCarryTheFourTextsAndNoParent) {
    QObject owner;
    AbsCondInfo record(QStringLiteral("Zanther2F"), QStringLiteral("grip"),
                       QStringLiteral("{\"DeviceID\":1}"), QStringLiteral("close on a part"),
                       &owner);
    const AbsCondInfo copy(record);
    EXPECT_EQ(nullptr, copy.parent());
    EXPECT_EQ(QStringLiteral("Zanther2F"), copy.getCondType());
    EXPECT_EQ(QStringLiteral("grip"), copy.getAlias());
    EXPECT_EQ(QStringLiteral("{\"DeviceID\":1}"), copy.getXmlInfo());
    EXPECT_EQ(QStringLiteral("close on a part"), copy.getDescription());
    AbsCondInfo assigned;
    assigned = record;
    EXPECT_EQ(QStringLiteral("Zanther2F"), assigned.getCondType());
    assigned.setAlias(QStringLiteral("release"));
    assigned.setXmlInfo(QStringLiteral("{}"));
    assigned.setDescription(QStringLiteral("open"));
    EXPECT_EQ(QStringLiteral("grip"), record.getAlias());
    EXPECT_EQ(QStringLiteral("release"), assigned.getAlias());
    EXPECT_EQ(QStringLiteral("{}"), assigned.getXmlInfo());
    EXPECT_EQ(QStringLiteral("open"), assigned.getDescription());
    EXPECT_EQ(&owner, record.parent());
}
