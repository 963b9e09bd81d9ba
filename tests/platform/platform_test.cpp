// The pendant's interfaces as the plug-in uses them: the object pool, the program-step editor's
// services and the step record.
#include <gtest/gtest.h>
#include <QObject>
#include <QPointer>
#include <QStringList>

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
    QObject listening;
    QObject::connect(PluginManager::instance(), &PluginManager::objectAdded, &listening,
                     [&](QObject* object) { added.push_back(object); });
    QObject::connect(PluginManager::instance(), &PluginManager::aboutToRemoveObject, &listening,
                     [&](QObject* object) {
                         removing.push_back(object);
                         EXPECT_EQ(object, PluginManager::getObjectByName("Zanther2F"));
                     });
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

    QPointer<AbsCondInfo> unheard(new AbsCondInfo());
    PluginManager::saveCondInfo(unheard.data());
    EXPECT_TRUE(unheard.isNull());

    AbsCondInfo* received = nullptr;
    int removed = 0;
    QObject listening;
    QObject::connect(PluginManager::instance(), &PluginManager::condInfoSaved, &listening,
                     [&](AbsCondInfo* record) { received = record; });
    QObject::connect(PluginManager::instance(), &PluginManager::condItemRemoved, &listening,
                     [&] { ++removed; });
    AbsCondInfo* record = new AbsCondInfo();
    PluginManager::saveCondInfo(record);
    PluginManager::removeCondItem();
    EXPECT_EQ(record, received);
    EXPECT_EQ(1, removed);
    delete received;
    PluginManager::setCurCondType(QString());
}

// A copy carries the four texts and no parent; changing it leaves the source as it was.
TEST(AbsCondInfoTest, CopiesCarryTheFourTextsAndNoParent) {
    QObject owner;
    AbsCondInfo record(QStringLiteral("Zanther2F"), QStringLiteral("grip"),
                       QStringLiteral("{\"DeviceID\":1}"), QStringLiteral("close on a part"),
                       &owner);
    AbsCondInfo assigned;
    assigned = record;
    for (const AbsCondInfo& copy : {AbsCondInfo(record), assigned}) {
        EXPECT_EQ(nullptr, copy.parent());
        EXPECT_EQ(QStringList({"Zanther2F", "grip", "{\"DeviceID\":1}", "close on a part"}),
                  QStringList({copy.getCondType(), copy.getAlias(), copy.getXmlInfo(),
                               copy.getDescription()}));
    }
    assigned.setAlias(QStringLiteral("release"));
    EXPECT_EQ(QStringLiteral("grip"), record.getAlias());
    EXPECT_EQ(&owner, record.parent());
}
