// The program-step editor made by the loaded plug-in, driven by clicks: ranges from the
// configuration answer, press-and-hold, the device id field, showing, checking, saving and
// removing a step through the plug-in manager, and trying the values on a simulated gripper.
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

#include <memory>

#include "tests/test_support/message_box_answerer.h"
#include "tests/test_support/plugin_host.h"
#include "tests/test_support/script_thread.h"
#include "tools/gripper_simulator/simulator.h"

namespace {

// Stands in for a plug-in whose script interface refuses every command.
class RefusingPlugin : public ExtensionSystem::IPlugin {
public:
    bool pluginCommonInterface(const QString&, QString& out) override {
        out = QStringLiteral("refused by the stand-in");
        return false;
    }
    bool initParms() override { return true; }
    bool pausePlugin() override { return true; }
    bool continuePlugin() override { return true; }
    bool stopPlugin() override { return true; }
    QWidget* createUI(QWidget*) override { return nullptr; }
    void setPluginSharedFilePath(const QString&) override {}
    void setPluginMessageBoxParentWidget(QWidget*) override {}
    void loadTranslator(const QString&) override {}
    void enableEdit(const bool&) override {}
};

}  // namespace

class PluginConditionEditorTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void takesItsRangesAndStepsAndSavesARecord();
    void triesTheValuesOnAGripperOrWarns();
    void cleanupTestCase();

private:
    template <typename T>
    T* child(const char* name) const {
        T* widget = editor_->findChild<T*>(QString::fromLatin1(name));
        if (nullptr == widget) {
            qFatal("no child %s", name);
        }
        return widget;
    }
    QLineEdit* field(const char* name) const { return child<QLineEdit>(name); }
    void type_into(const char* name, const QString& text) {
        field(name)->clear();
        QTest::keyClicks(field(name), text);
    }
    void click(const char* name) { QTest::mouseClick(child<QPushButton>(name), Qt::LeftButton); }

    PluginHost host_;
    QWidget* page_ = nullptr;
    QWidget* editor_ = nullptr;
};

void PluginConditionEditorTest::initTestCase() {
    qRegisterMetaType<AbsCondInfo*>();
    QVERIFY2(host_.load(), qPrintable(host_.error()));
    page_ = host_.plugin()->createUI(nullptr);
    editor_ = host_.createCondUI(nullptr);
    QVERIFY(editor_);
    editor_->show();
    QVERIFY(QTest::qWaitForWindowExposed(editor_));
}

// The fields start at the lower bounds, the labels show the ranges of the configuration
// answer, and each field takes only what it may hold. The buttons step once on pressing (an
// empty field counts from 0, a field at its bound stays), more every 20 ms while held up to the
// bound, none after release.
void PluginConditionEditorTest::takesItsRangesAndStepsAndSavesARecord() {
    QCOMPARE(child<QComboBox>("cmb_pluginName")->count(), 1);
    QCOMPARE(child<QComboBox>("cmb_pluginName")->currentText(), QStringLiteral("Zanther2F"));
    const char* const shown[][3] = {{"le_deviceID", "1", ""},
                                    {"le_position", "0", "  0 ~ 100"},
                                    {"le_force", "20", "  20 ~ 100"},
                                    {"le_speed", "1", "  1 ~ 100"}};
    for (const auto& row : shown) {
        QCOMPARE(field(row[0])->text(), QString::fromLatin1(row[1]));
        QCOMPARE(field(row[0])->whatsThis(), QStringLiteral("1"));
        const QString range = QString::fromLatin1(row[0] + 3).prepend("lbl_") + "Range";
        QVERIFY(!*row[2] || child<QLabel>(range.toLatin1())->text() == row[2]);
    }
    const char* const typed[][3] = {{"le_force", "4x-", "4"},      {"le_deviceID", "256", "25"},
                                    {"le_deviceID", "01", "0"},    {"le_deviceID", "255", "255"},
                                    {"le_deviceID", "199", "199"}, {"le_deviceID", "1a", "1"}};
    for (const auto& row : typed) {
        type_into(row[0], row[1]);
        QCOMPARE(field(row[0])->text(), QString::fromLatin1(row[2]));
    }
    QTimer* hold_timer = editor_->findChild<QTimer*>("hold_timer_");
    const char* const rows[][5] = {{"le_position", "pbn_positionAdd", "100", "100", "100"},
                                   {"le_position", "pbn_positionAdd", "", "1", "100"},
                                   {"le_force", "pbn_forceSub", "22", "21", "20"}};
    for (const auto& row : rows) {
        field(row[0])->setText(row[2]);
        QTest::mousePress(child<QPushButton>(row[1]), Qt::LeftButton);
        QCOMPARE(field(row[0])->text(), QString::fromLatin1(row[3]));
        QTRY_VERIFY(hold_timer->isActive());
        QTRY_COMPARE_WITH_TIMEOUT(field(row[0])->text(), QString::fromLatin1(row[4]), 10000);
        QTest::mouseRelease(child<QPushButton>(row[1]), Qt::LeftButton);
        QVERIFY(!hold_timer->isActive());
    }
    // A record shows in the fields; the check takes the editor's ranges for this plug-in's records
    // and refuses another plug-in's. While the pendant edits another plug-in's step nothing is
    // saved; with its own, the record (device id written as text) goes to the pendant and the
    // operator is told. Remove asks the pendant to remove the step.
    const QString json = QStringLiteral(
        "{\"DeviceID\":\"3\",\"PluginName\":\"%1\",\"Position\":%2,\"Force\":50,\"Speed\":60,"
        "\"IsBlock\":false}");
    std::unique_ptr<AbsCondInfo> record(
        host_.xmlInfoToCondInfo("step 7", json.arg("Zanther2F").arg(40)));
    host_.updateCondForm(record.get());
    QCOMPARE(QStringList({field("le_deviceID")->text(), field("le_position")->text(),
                          field("le_force")->text(), field("le_speed")->text()}),
             QStringList({"3", "40", "50", "60"}));
    QVERIFY(!child<QCheckBox>("chk_isBlock")->isChecked());
    QString error;
    QVERIFY(host_.checkCondInfo(record.get(), error));
    std::unique_ptr<AbsCondInfo> foreign(host_.xmlInfoToCondInfo("9", json.arg("Other").arg(1)));
    QVERIFY(!host_.checkCondInfo(foreign.get(), error));
    using ExtensionSystem::PluginManager;
    QSignalSpy saved(PluginManager::instance(), &PluginManager::condInfoSaved);
    const char* const confirms[][2] = {{"Other", "Warning: Condition type is not match"},
                                       {"Zanther2F", "Information: Condition saved."}};
    for (const auto& row : confirms) {
        PluginManager::setCurCondType(row[0]);
        MessageBoxAnswerer answerer;
        click("pbn_confirm");
        QCOMPARE(answerer.boxes(), QStringList{row[1]});
        QCOMPARE(saved.size(), static_cast<int>(&row - confirms));
    }
    record.reset(saved.first().first().value<AbsCondInfo*>());
    QCOMPARE(record->getAlias(), QStringLiteral("step 7"));
    QCOMPARE(QJsonDocument::fromJson(record->getXmlInfo().toUtf8()).object(),
             QJsonDocument::fromJson("{\"DeviceID\":\"3\",\"Force\":50,\"IsBlock\":false,"
                                     "\"PluginName\":\"Zanther2F\",\"Position\":40,\"Speed\":60}")
                 .object());
    QSignalSpy removed(PluginManager::instance(), &PluginManager::condItemRemoved);
    click("pbn_remove");
    QCOMPARE(removed.size(), 1);
}

// The try runs off the interface thread and never blocks: the simulated gripper receives the
// force and the position. Without the plug-in, or when it refuses, the operator is warned.
void PluginConditionEditorTest::triesTheValuesOnAGripperOrWarns() {
    gripper_sim::Simulator simulator;
    gripper_sim::GripperOptions options;
    options.init_ms = 50;
    options.position_max = 100;
    const int gripper = simulator.add_custom_tcp(options);
    const QString connect_line =
        QStringLiteral("gripper_connect_tcp|1,127.0.0.1:%1").arg(simulator.tcp_port(gripper));
    QCOMPARE(send_script(host_.plugin(), connect_line).ok, true);
    QCOMPARE(send_script(host_.plugin(), "gripper_active|1").ok, true);
    QTRY_COMPARE_WITH_TIMEOUT(send_script(host_.plugin(), "gripper_isActivate|1").answer,
                              QStringLiteral("i | 1"), 10000);

    type_into("le_deviceID", "1");
    field("le_position")->setText("60");
    field("le_force")->setText("45");
    MessageBoxAnswerer answerer;
    click("pbn_controlGripper");
    QTRY_COMPARE_WITH_TIMEOUT(simulator.snapshot(gripper).target, 60, 10000);
    QCOMPARE(simulator.snapshot(gripper).force, 45);
    QVERIFY(answerer.boxes().isEmpty());
    QCOMPARE(send_script(host_.plugin(), "gripper_disconnect|1").ok, true);
    ExtensionSystem::PluginManager::removeObject(host_.plugin());
    click("pbn_controlGripper");
    QCOMPARE(answerer.boxes(), QStringList{"Warning: Zanther2F plugin does not exist"});
    RefusingPlugin stand_in;
    stand_in.setObjectName("Zanther2F");
    ExtensionSystem::PluginManager::addObject(&stand_in);
    QTest::mousePress(child<QPushButton>("pbn_speedAdd"), Qt::LeftButton);
    click("pbn_controlGripper");
    QTRY_COMPARE(answerer.boxes().size(), 2);
    QCOMPARE(answerer.boxes().last(),
             QStringLiteral("Warning: Call plugin interface failed!                            "
                            "\nFunction name : set_2_finger_gripper_param,                   "
                            "         \nerror info : refused by the stand-in"));
    QVERIFY(!editor_->findChild<QTimer*>("hold_timer_")->isActive());
    QTest::mouseRelease(child<QPushButton>("pbn_speedAdd"), Qt::LeftButton);
    ExtensionSystem::PluginManager::removeObject(&stand_in);
    ExtensionSystem::PluginManager::addObject(host_.plugin());
}

void PluginConditionEditorTest::cleanupTestCase() {
    delete editor_;
    delete page_;
}

QTEST_MAIN(PluginConditionEditorTest)
#include "plugin_condition_editor_test.moc"
