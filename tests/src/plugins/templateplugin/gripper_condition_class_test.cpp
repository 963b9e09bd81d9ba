#include "src/plugins/templateplugin/gripper_condition_class.h"

#include <gtest/gtest.h>
#include <QJsonDocument>
#include <QJsonObject>

#include <memory>

#include "src/plugins/templateplugin/gripper_condition_info.h"

// The loaded plug-in's tests rebuild, copy, check and write records through the pendant's
// calls; these cover the odd stored texts and the range rules those do not reach.
namespace {

std::unique_ptr<gripper_condition_class> rebuilt(const QString& json) {
    AbsCondInfo* record = gripper_condition_class::xmlInfo2CondInfo(QStringLiteral("step"), json);
    return std::unique_ptr<gripper_condition_class>(qobject_cast<gripper_condition_class*>(record));
}

gripper_condition_class record_with(int position, int force, int speed) {
    return gripper_condition_class(QString(), QString(), QStringLiteral("Zanther2F"), 1, position,
                                   force, speed, true);
}

}  // namespace

// A device id as a number or a text of digits; with both keys "DeviceID" wins and "Id" goes.
TEST(GripperConditionClassTest, ReadsTheDeviceFromEitherKeyAndBrokenTextAsZeros) {
    EXPECT_EQ(7, rebuilt(QStringLiteral("{\"DeviceID\":7}"))->getDeviceID());
    const auto both = rebuilt(QStringLiteral("{\"DeviceID\":\"4\", \"Id\":9}"));
    EXPECT_EQ(4, both->getDeviceID());
    const QJsonObject stored = QJsonDocument::fromJson(both->getXmlInfo().toUtf8()).object();
    EXPECT_FALSE(stored.contains(QStringLiteral("Id")));
    EXPECT_EQ(4, stored.value(QStringLiteral("DeviceID")).toInt());
    EXPECT_FALSE(both->getXmlInfo().contains(QLatin1Char(' ')));
    // Text that is not a JSON object gives a record of zeros that does not block.
    for (const QString& text : {QStringLiteral("{\"DeviceID\": 3,"), QStringLiteral("[1, 2]"),
                                QString(), QStringLiteral("\xe4\xb8\xad")}) {
        const auto record = rebuilt(text);
        ASSERT_NE(nullptr, record);
        EXPECT_EQ(text, record->getXmlInfo());
        EXPECT_TRUE(record->getPluginName().isEmpty());
        EXPECT_EQ(0, record->getDeviceID() + record->getPosition());
        EXPECT_FALSE(record->isBlock());
    }
}

// Position, then force, then speed; -1 fits only a quantity the gripper does not have, and is
// written as it is.
TEST(GripperConditionInfoTest, ChecksEachQuantityAgainstItsRangeAndWritesMinusOneAsItIs) {
    gripper_condition_class negative = record_with(-1, 50, 80);
    EXPECT_EQ(QStringLiteral("script_common_interface(\"Zanther2F\", "
                             "\"set_2_finger_gripper_param|1, -1, 50, 80, true\")"),
              gripper_condition_class::condInfo2ScriptInfo(&negative));
    const gripper_condition_Info info = gripper_condition_Info::fromJson(QStringLiteral(
        "{\"forceEnabled\":true,\"forceMax\":100,\"forceMin\":20,\"positionEnabled\":true,"
        "\"positionMax\":100,\"positionMin\":0,\"speedEnabled\":true,\"speedMax\":100,"
        "\"speedMin\":1}"));
    gripper_condition_Info no_position = info;
    no_position.position.enabled = false;
    const struct {
        gripper_condition_Info info;
        gripper_condition_class record;
        const char* error;
    } rows[] = {
        {info, record_with(0, 20, 1), ""},
        {info, record_with(100, 100, 100), ""},
        {info, record_with(101, 10, 0), "position"},
        {info, record_with(50, 19, 0), "force"},
        {info, record_with(50, 20, -1), "speed"},
        {info, record_with(-1, 20, 1), "position"},
        {no_position, record_with(-1, 20, 1), ""},
        {no_position, record_with(0, 20, 1), "position"},
    };
    for (const auto& row : rows) {
        QString error;
        EXPECT_EQ(0 == *row.error, row.info.check(row.record, error)) << row.error;
        EXPECT_EQ(0 == *row.error ? QString()
                                  : QString::fromLatin1(row.error) +
                                        " does not match the configuration information",
                  error);
    }
}
