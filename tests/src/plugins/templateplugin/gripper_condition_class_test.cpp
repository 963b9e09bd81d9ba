#include "src/plugins/templateplugin/gripper_condition_class.h"

#include <gtest/gtest.h>
#include <QJsonDocument>
#include <QJsonObject>

#include <memory>

#include "src/plugins/templateplugin/gripper_condition_info.h"
#include "tests/test_support/log_capture.h"

namespace {

std::unique_ptr<gripper_condition_class> rebuilt(const QString& json) {
    AbsCondInfo* record = gripper_condition_class::xmlInfo2CondInfo(QStringLiteral("step"), json);
    return std::unique_ptr<gripper_condition_class>(qobject_cast<gripper_condition_class*>(record));
}

QJsonObject object_of(const QString& json) {
    return QJsonDocument::fromJson(json.toUtf8()).object();
}

const QString kConfig = QStringLiteral(
    "{\"forceEnabled\":true,\"forceMax\":100,\"forceMin\":20,\"positionEnabled\":true,"
    "\"positionMax\":100,\"positionMin\":0,\"speedEnabled\":true,\"speedMax\":100,"
    "\"speedMin\":1}");

gripper_condition_class record_with(int position, int force, int speed) {
    return gripper_condition_class(QString(), QString(), QStringLiteral("Zanther2F"), 1, position,
                                   force, speed, true);
}

}  // namespace

// The editor's form (device id as a text of digits) and a number both read back as the number;
// the stored text is kept as it was.
TEST(GripperConditionClassTest, RebuildsARecordFromTheStoredText) {
    const QString stored = QStringLiteral(
        "{\"DeviceID\":\"3\",\"Force\":50,\"IsBlock\":false,\"PluginName\":\"Zanther2F\","
        "\"Position\":500,\"Speed\":80}");
    const auto record = rebuilt(stored);
    ASSERT_NE(nullptr, record);
    EXPECT_EQ(QStringLiteral("Zanther2F"), record->getCondType());
    EXPECT_EQ(QStringLiteral("step"), record->getAlias());
    EXPECT_EQ(stored, record->getXmlInfo());
    EXPECT_EQ(QStringLiteral("Zanther2F"), record->getPluginName());
    EXPECT_EQ(3, record->getDeviceID());
    EXPECT_EQ(500, record->getPosition());
    EXPECT_EQ(50, record->getForce());
    EXPECT_EQ(80, record->getSpeed());
    EXPECT_FALSE(record->isBlock());

    EXPECT_EQ(7, rebuilt(QStringLiteral("{\"DeviceID\":7}"))->getDeviceID());
}

// An old record names the device "Id": it is read from there and the text is rewritten with
// "DeviceID"; with both keys "DeviceID" wins and "Id" still goes.
TEST(GripperConditionClassTest, MigratesTheOldDeviceKey) {
    const auto old_record =
        rebuilt(QStringLiteral("{\"Id\": 2, \"PluginName\": \"Zanther2F\", \"Position\": 10, "
                               "\"Force\": 20, \"Speed\": 30, \"IsBlock\": false}"));
    EXPECT_EQ(2, old_record->getDeviceID());
    const QJsonObject migrated = object_of(old_record->getXmlInfo());
    EXPECT_FALSE(migrated.contains(QStringLiteral("Id")));
    EXPECT_EQ(2, migrated.value(QStringLiteral("DeviceID")).toInt());
    EXPECT_EQ(30, migrated.value(QStringLiteral("Speed")).toInt());
    EXPECT_FALSE(old_record->getXmlInfo().contains(QLatin1Char(' ')));

    const auto both = rebuilt(QStringLiteral("{\"DeviceID\":\"4\",\"Id\":9}"));
    EXPECT_EQ(4, both->getDeviceID());
    EXPECT_FALSE(object_of(both->getXmlInfo()).contains(QStringLiteral("Id")));
    EXPECT_EQ(4, object_of(both->getXmlInfo()).value(QStringLiteral("DeviceID")).toInt());
}

// Text that is not a JSON object gives a record of zeros that does not block; nothing breaks.
TEST(GripperConditionClassTest, BrokenTextGivesARecordOfZeros) {
    for (const QString& text : {QStringLiteral("{\"DeviceID\": 3,"), QStringLiteral("[1, 2]"),
                                QString(), QStringLiteral("\xe4\xb8\xad")}) {
        const auto record = rebuilt(text);
        ASSERT_NE(nullptr, record);
        EXPECT_EQ(text, record->getXmlInfo());
        EXPECT_TRUE(record->getPluginName().isEmpty());
        EXPECT_EQ(0, record->getDeviceID());
        EXPECT_EQ(0, record->getPosition());
        EXPECT_FALSE(record->isBlock());
    }
}

TEST(GripperConditionClassTest, WritesTheScriptLine) {
    const gripper_condition_class step(QStringLiteral("a"), QStringLiteral("{}"),
                                       QStringLiteral("Zanther2F"), 0, 500, 50, 80, true);
    EXPECT_EQ(
        QStringLiteral("script_common_interface(\"Zanther2F\", "
                       "\"set_2_finger_gripper_param|0, 500, 50, 80, true\")"),
        gripper_condition_class::condInfo2ScriptInfo(const_cast<gripper_condition_class*>(&step)));

    gripper_condition_class negative = step;
    negative.setPosition(-5);
    negative.setIsBlock(false);
    EXPECT_EQ(QStringLiteral("script_common_interface(\"Zanther2F\", "
                             "\"set_2_finger_gripper_param|0, -5, 50, 80, false\")"),
              gripper_condition_class::condInfo2ScriptInfo(&negative));

    gripper_condition_class empty;
    EXPECT_EQ(QStringLiteral("script_common_interface(\"\", "
                             "\"set_2_finger_gripper_param|0, 0, 0, 0, true\")"),
              gripper_condition_class::condInfo2ScriptInfo(&empty));
}

// A record of another plug-in's type, or none, gives an empty line and a warning.
TEST(GripperConditionClassTest, ForeignRecordsGiveNoScriptLine) {
    LogCapture log;
    AbsCondInfo foreign(QStringLiteral("Other"), QStringLiteral("a"), QStringLiteral("{}"),
                        QString());
    EXPECT_TRUE(gripper_condition_class::condInfo2ScriptInfo(&foreign).isEmpty());
    EXPECT_TRUE(gripper_condition_class::condInfo2ScriptInfo(nullptr).isEmpty());
    EXPECT_EQ(2, log.count("W NULL == condition"));
}

TEST(GripperConditionClassTest, CopiesCarryTheBaseTextsAndAllFields) {
    const gripper_condition_class source(QStringLiteral("alias"), QStringLiteral("{\"x\":1}"),
                                         QStringLiteral("Zanther2F"), 2, 40, 60, 70, false);
    const gripper_condition_class copy(source);
    gripper_condition_class assigned;
    assigned = source;
    for (const gripper_condition_class* record :
         {&copy, static_cast<const gripper_condition_class*>(&assigned)}) {
        EXPECT_EQ(QStringLiteral("Zanther2F"), record->getCondType());
        EXPECT_EQ(QStringLiteral("alias"), record->getAlias());
        EXPECT_EQ(QStringLiteral("{\"x\":1}"), record->getXmlInfo());
        EXPECT_EQ(QStringLiteral("Zanther2F"), record->getPluginName());
        EXPECT_EQ(2, record->getDeviceID());
        EXPECT_EQ(40, record->getPosition());
        EXPECT_EQ(60, record->getForce());
        EXPECT_EQ(70, record->getSpeed());
        EXPECT_FALSE(record->isBlock());
    }
}

// Position, then force, then speed; -1 fits only a quantity the gripper does not have.
TEST(GripperConditionInfoTest, ChecksEachQuantityAgainstItsRange) {
    const gripper_condition_Info info = gripper_condition_Info::fromJson(kConfig);
    QString error;
    EXPECT_TRUE(info.check(record_with(0, 20, 1), error));
    EXPECT_TRUE(info.check(record_with(100, 100, 100), error));
    EXPECT_TRUE(error.isEmpty());

    EXPECT_FALSE(info.check(record_with(101, 10, 0), error));
    EXPECT_EQ(QStringLiteral("position does not match the configuration information"), error);
    EXPECT_FALSE(info.check(record_with(50, 19, 0), error));
    EXPECT_EQ(QStringLiteral("force does not match the configuration information"), error);
    EXPECT_FALSE(info.check(record_with(50, 20, -1), error));
    EXPECT_EQ(QStringLiteral("speed does not match the configuration information"), error);

    gripper_condition_Info no_position = info;
    no_position.position.enabled = false;
    EXPECT_TRUE(no_position.check(record_with(-1, 20, 1), error));
    EXPECT_FALSE(no_position.check(record_with(0, 20, 1), error));
    EXPECT_FALSE(info.check(record_with(-1, 20, 1), error));

    EXPECT_FALSE(gripper_condition_Info().check(record_with(0, 20, 1), error));
    EXPECT_TRUE(gripper_condition_Info().check(record_with(-1, -1, -1), error));
}
