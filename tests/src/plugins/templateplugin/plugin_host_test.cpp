// The plug-in loaded as the pendant loads it, without grippers: metadata, the invokables, the
// lifecycle hooks, the program-step hooks and script lines that need no gripper.
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMetaMethod>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTranslator>
#include <QtTest>

#include <memory>

#include "tests/src/plugins/templateplugin/plugin_host.h"
#include "tests/src/plugins/templateplugin/qt_log_capture.h"
#include "tests/src/plugins/templateplugin/script_thread.h"

namespace {

const QString kConfig = QStringLiteral(
    "{\"forceEnabled\":true,\"forceMax\":100,\"forceMin\":20,\"positionEnabled\":true,"
    "\"positionMax\":100,\"positionMin\":0,\"speedEnabled\":true,\"speedMax\":100,"
    "\"speedMin\":1}");

const Reply kAccepted{true, QStringLiteral("i | 0")};

// The plug-in's own lines, without the registry's report of an index it does not hold.
QStringList plugin_lines() {
    static const QRegularExpression registry_line(
        QStringLiteral("^W (vector_device_|static_cast<unsigned long long>\\(index\\))"));
    QStringList lines = QtLogCapture::lines();
    for (auto line = lines.begin(); line != lines.end();) {
        line = registry_line.match(*line).hasMatch() ? lines.erase(line) : line + 1;
    }
    return lines;
}
const Reply kRefused{false, QStringLiteral("i | 0")};

}  // namespace

class PluginHostTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void loadsWithItsMetadataAsThePendantExpects();
    void offersTheSixInvokablesInOrder();
    void carriesTheCataloguesInItsResources();
    void writesItsLogBesideTheApplication();
    void hooksWorkBeforeThePageExists();
    void answersScriptLinesThatNeedNoGripper();
    void refusesBadScriptLines();
    void rebuildsAndWritesProgramSteps();
    void refusesRecordsOfAnotherType();
    void makesThePageAndSwitchesItsEditing();
    void locksTheSettingTabWhileAProgramRuns();
    void cleanupTestCase();

private:
    Reply send(const QString& line) { return send_script(host_.plugin(), line); }

    PluginHost host_;
    QPointer<QWidget> page_;
};

void PluginHostTest::initTestCase() {
    QFile::remove(QCoreApplication::applicationDirPath() + "/zanther_gripper_log.log");
    QtLogCapture::install();
    QVERIFY2(host_.load(), qPrintable(host_.error()));
}

void PluginHostTest::loadsWithItsMetadataAsThePendantExpects() {
    const QJsonObject raw = host_.rawMetaData();
    QCOMPARE(raw.value("IID").toString(), QStringLiteral("com.qt-project.Orla.TeachPendantPlugin"));
    QCOMPARE(raw.value("className").toString(), QStringLiteral("TemplatePlugin"));
    QCOMPARE(raw.value("debug").toBool(), false);
    const QJsonObject meta = host_.metaData();
    QCOMPARE(meta.value("Name").toString(), QStringLiteral("Zanther2F"));
    QCOMPARE(meta.value("Version").toString(), QStringLiteral("4.2.6"));
    QCOMPARE(meta.value("CompatVersion").toString(), QStringLiteral("4.2.6"));
    QCOMPARE(meta.value("Category").toString(),
             QStringLiteral("Extensions/Peripheral,Programming/Condition/Peripheral"));
    QCOMPARE(meta.value("Description").toString(),
             QStringLiteral("Zanther_2_Finger_Gripper_Plugin"));
    QVERIFY(meta.value("Dependencies").isArray());
    QVERIFY(meta.value("Dependencies").toArray().isEmpty());
    QCOMPARE(meta.size(), 8);

    QCOMPARE(host_.plugin()->metaObject()->className(), "TemplatePlugin");
    QCOMPARE(ExtensionSystem::PluginManager::getObjectByName("Zanther2F"),
             static_cast<QObject*>(host_.plugin()));
    QPluginLoader second(QStringLiteral(ZANTHER2F_LIBRARY));
    QCOMPARE(second.instance(), static_cast<QObject*>(host_.plugin()));
}

void PluginHostTest::offersTheSixInvokablesInOrder() {
    const QMetaObject* meta = host_.plugin()->metaObject();
    QStringList signatures;
    QList<QList<QByteArray>> names;
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
        const QMetaMethod method = meta->method(i);
        if (QMetaMethod::Method == method.methodType() && QMetaMethod::Public == method.access()) {
            signatures << QString::fromLatin1(method.methodSignature());
            names << method.parameterNames();
        }
    }
    QCOMPARE(
        signatures,
        (QStringList{"createCondUI(QWidget*)", "updateCondForm(AbsCondInfo*)",
                     "copyAbsCond(AbsCondInfo*)", "checkCondInfo(AbsCondInfo*,QString&)",
                     "xmlInfoToCondInfo(QString,QString)", "condInfo2ScriptInfo(AbsCondInfo*)"}));
    QCOMPARE(names, (QList<QList<QByteArray>>{{"parent"},
                                              {"absCond"},
                                              {"srcAbsCond"},
                                              {"absCondInfo", "errorInfo"},
                                              {"alias", "xmlInfo"},
                                              {"absCondInfo"}}));
    const int index = meta->indexOfMethod("createCondUI(QWidget*)");
    QCOMPARE(QString(meta->method(index).typeName()), QStringLiteral("QWidget*"));
}

// The catalogues are present and translate the two texts the plug-in marks, though the plug-in
// itself loads none of them.
void PluginHostTest::carriesTheCataloguesInItsResources() {
    for (const char* language : {"en_GB", "zh_TW", "zh_CN"}) {
        QVERIFY2(
            QFile::exists(QStringLiteral(":/Translations/%1_template_plugin.qm").arg(language)),
            language);
    }
    QTranslator translator;
    QVERIFY(translator.load(QStringLiteral(":/Translations/zh_CN_template_plugin.qm")));
    QCOMPARE(translator.translate("TemplatePlugin", "Peripheral"), QString::fromUtf8("外设"));
    QVERIFY(translator.translate("TemplatePlugin", "Zanther2F") == QStringLiteral("Zanther2F"));
    host_.plugin()->loadTranslator(QStringLiteral("zh_CN"));
    QCOMPARE(QCoreApplication::translate("TemplatePlugin", "Peripheral"),
             QStringLiteral("Peripheral"));
}

// The plug-in works in the application's directory, where its log file grows; every message
// also reaches the handler installed before the plug-in.
void PluginHostTest::writesItsLogBesideTheApplication() {
    QCOMPARE(QDir::currentPath(), QCoreApplication::applicationDirPath());
    qWarning("a message of the host");
    QFile log(QCoreApplication::applicationDirPath() + "/zanther_gripper_log.log");
    QVERIFY(log.open(QIODevice::ReadOnly));
    QVERIFY(log.readAll().contains("[WARN] - a message of the host\r\n"));
}

// Before createUI there is no page, no registry entry and no logging back end: hooks and
// commands answer and change nothing.
void PluginHostTest::hooksWorkBeforeThePageExists() {
    QVERIFY(host_.plugin()->stopPlugin());
    QVERIFY(host_.plugin()->continuePlugin());
    QVERIFY(host_.plugin()->pausePlugin());
    QVERIFY(host_.plugin()->initParms());
    QVERIFY(host_.plugin()->stopPlugin());
    host_.plugin()->enableEdit(false);
    host_.plugin()->setPluginSharedFilePath(QStringLiteral("/tmp/shared"));
    host_.plugin()->setPluginMessageBoxParentWidget(nullptr);
    QCOMPARE(send("gripper_scan"), kAccepted);
    QCOMPARE(send("gripper_connect_usb|1,/dev/pts/0"), kAccepted);
    QCOMPARE(send("gripper_connect_tcp|1,127.0.0.1:5020"), kAccepted);
    QCOMPARE(send("gripper_disconnect|1"), kAccepted);
    QCOMPARE(send("set_gripper_position|1,50,true"), kAccepted);
    QVERIFY(QtLogCapture::lines().isEmpty());
}

void PluginHostTest::answersScriptLinesThatNeedNoGripper() {
    page_ = host_.plugin()->createUI(nullptr);
    QVERIFY(page_);
    QtLogCapture::clear();
    QCOMPARE(send("get_2_finger_gripper_config_info"), (Reply{true, kConfig}));
    QCOMPARE(send("get_2_finger_gripper_config_info|"), (Reply{true, kConfig}));
    QCOMPARE(send("set_gripper_speed|1,80"), kAccepted);
    QCOMPARE(send("get_gripper_status|1"), kAccepted);
    QCOMPARE(send("get_gripper_position|1"), (Reply{true, QStringLiteral("i|0")}));
    QCOMPARE(send("gripper_isActivate|1"), kAccepted);
    QCOMPARE(send("gripper_isGrip|1"), kAccepted);
    QCOMPARE(send("gripper_isArrive|1"), kAccepted);
    QCOMPARE(send("gripper_isDrop|1"), kAccepted);
    QCOMPARE(send("gripper_active|1"), kAccepted);
    QCOMPARE(send("set_gripper_force|1,50"), kAccepted);
    QCOMPARE(send("set_2_finger_gripper_param|1,50,30,80,true"), kAccepted);
    QCOMPARE(send(" set_gripper_position | 1 , 50 , true "), kAccepted);
    QCOMPARE(send("gripper_disconnect|1"), kAccepted);
    QCOMPARE(QtLogCapture::lines(),
             (QStringList{
                 "W NULL == device->gripper_abstract_control_",
                 "W NULL == device->gripper_abstract_control_",
                 "W NULL == device->gripper_abstract_control_",
                 "W NULL == device->gripper_abstract_control_",
                 "W NULL == device->gripper_abstract_control_",
                 "W NULL == device->gripper_abstract_control_",
                 "W NULL == device->gripper_abstract_control_", "W !set_activate()",
                 "W NULL == device->gripper_abstract_control_", "W !set_force(force)",
                 "W NULL == device->gripper_abstract_control_", "W set_force(force)",
                 "W NULL == device->gripper_abstract_control_", "W !set_position(position)",
                 "W NULL == device->gripper_abstract_control_", "W !mode_disconnect(deviceId)"}));
}

// Unknown names and bad block flags are refused; a bad id, missing fields, a huge line and
// text outside ASCII are answered like a missing gripper. Nothing crashes or hangs.
void PluginHostTest::refusesBadScriptLines() {
    QtLogCapture::clear();
    QCOMPARE(send("foo|1"), kRefused);
    QCOMPARE(send("Get_gripper_status|1"), kRefused);
    QCOMPARE(send(""), kRefused);
    QCOMPARE(send(QString::fromUtf8("夹爪|1")), kRefused);
    QCOMPARE(send(QString(10240, QLatin1Char('x'))), kRefused);
    QVERIFY(QtLogCapture::lines().isEmpty());

    QCOMPARE(send("set_gripper_position|1,50,yes"), kRefused);
    QCOMPARE(send("set_gripper_position|1,50"), kRefused);
    QCOMPARE(send("set_2_finger_gripper_param|1,50,30,80,TRUE"), kRefused);
    QCOMPARE(plugin_lines(), (QStringList{"W \"true\" != block_str", "W \"true\" != block_str",
                                          "W \"true\" != block_str"}));

    QtLogCapture::clear();
    QCOMPARE(send("gripper_isConnect|0"), kAccepted);
    QCOMPARE(send("gripper_isConnect|-7"), kAccepted);
    QCOMPARE(send("gripper_isConnect|-2147483648"), kAccepted);
    QCOMPARE(plugin_lines(), (QStringList{"W NULL == device", "W retValueOrError = i | 0",
                                          "W NULL == device", "W retValueOrError = i | 0",
                                          "W NULL == device", "W retValueOrError = i | 0"}));

    QtLogCapture::clear();
    QCOMPARE(send("gripper_active"), kAccepted);
    QCOMPARE(send("get_gripper_status|" + QString(10240, QLatin1Char('9'))), kAccepted);
    QCOMPARE(send(QString::fromUtf8("get_gripper_status|１")), kAccepted);
    QCOMPARE(send(QString::fromUtf8("get_gripper_status|1,é,\u00ff|x|y")), kAccepted);
    QCOMPARE(send("gripper_connect_tcp|9,1.2.3.4:1"), kAccepted);
    QCOMPARE(plugin_lines(),
             (QStringList{"W NULL == device", "W !set_activate()", "W NULL == device",
                          "W NULL == device", "W NULL == device->gripper_abstract_control_",
                          "D deviceId = 8", "W NULL == device",
                          "W !mode_connect(TCP_CLIENT, connect_parameters)"}));
}

void PluginHostTest::rebuildsAndWritesProgramSteps() {
    std::unique_ptr<AbsCondInfo> record(host_.xmlInfoToCondInfo(
        "step 1",
        "{\"Id\":2,\"PluginName\":\"Zanther2F\",\"Position\":10,\"Force\":20,"
        "\"Speed\":30,\"IsBlock\":false}"));
    QVERIFY(record);
    QCOMPARE(record->getCondType(), QStringLiteral("Zanther2F"));
    QCOMPARE(record->getAlias(), QStringLiteral("step 1"));
    QVERIFY(!record->getXmlInfo().contains("\"Id\""));
    QCOMPARE(host_.condInfo2ScriptInfo(record.get()),
             QStringLiteral("script_common_interface(\"Zanther2F\", "
                            "\"set_2_finger_gripper_param|2, 10, 20, 30, false\")"));

    std::unique_ptr<AbsCondInfo> copy(host_.copyAbsCond(record.get()));
    QVERIFY(copy && copy.get() != record.get());
    QCOMPARE(host_.condInfo2ScriptInfo(copy.get()), host_.condInfo2ScriptInfo(record.get()));
    QCOMPARE(copy->getXmlInfo(), record->getXmlInfo());

    // Without an open editor the plug-in's own ranges apply.
    QString error;
    QVERIFY(host_.checkCondInfo(record.get(), error));
    QVERIFY(error.isEmpty());
    std::unique_ptr<AbsCondInfo> weak(
        host_.xmlInfoToCondInfo("step 2",
                                "{\"DeviceID\":\"1\",\"PluginName\":\"Zanther2F\",\"Position\":100,"
                                "\"Force\":19,\"Speed\":1,\"IsBlock\":true}"));
    QVERIFY(!host_.checkCondInfo(weak.get(), error));
    QCOMPARE(error, QStringLiteral("force does not match the configuration information"));
    // A host that names the object otherwise gets the steps checked all the same, with and
    // without an open editor.
    host_.plugin()->setObjectName(QStringLiteral("gripper"));
    QVERIFY(host_.checkCondInfo(record.get(), error));
    std::unique_ptr<QWidget> editor(host_.createCondUI(nullptr));
    QVERIFY(host_.checkCondInfo(record.get(), error));
    QVERIFY(!host_.checkCondInfo(weak.get(), error));
    editor.reset();
    host_.plugin()->setObjectName(QStringLiteral("Zanther2F"));
    QCOMPARE(host_.failed_invocations(), 0);
}

// Records of another type, or none, are refused with a warning instead of being cast blindly.
void PluginHostTest::refusesRecordsOfAnotherType() {
    QtLogCapture::clear();
    AbsCondInfo foreign(QStringLiteral("Other"), QStringLiteral("a"), QStringLiteral("{}"),
                        QString());
    QString error;
    QCOMPARE(host_.copyAbsCond(&foreign), static_cast<AbsCondInfo*>(nullptr));
    QCOMPARE(host_.copyAbsCond(nullptr), static_cast<AbsCondInfo*>(nullptr));
    QVERIFY(!host_.checkCondInfo(&foreign, error));
    QVERIFY(!host_.checkCondInfo(nullptr, error));
    QVERIFY(error.isEmpty());
    QVERIFY(host_.condInfo2ScriptInfo(&foreign).isEmpty());
    host_.updateCondForm(&foreign);
    QCOMPARE(
        QtLogCapture::lines(),
        (QStringList{"W NULL == source", "W NULL == source", "W NULL == record", "W NULL == record",
                     "W NULL == condition", "W NULL == gripper_peripheral_condition::instance()"}));
    QCOMPARE(host_.failed_invocations(), 0);
}

// The page made by createUI has the two tabs; enableEdit switches it, and does nothing once the
// host has deleted it.
void PluginHostTest::makesThePageAndSwitchesItsEditing() {
    QVERIFY(page_);
    QCOMPARE(page_->metaObject()->className(), "GripperWidget");
    QTabWidget* tabs = page_->findChild<QTabWidget*>();
    QVERIFY(tabs);
    QCOMPARE(tabs->count(), 2);
    QCOMPARE(tabs->tabText(0), QStringLiteral("Control"));
    QCOMPARE(tabs->tabText(1), QStringLiteral("Setting"));
    host_.plugin()->enableEdit(false);
    QVERIFY(!page_->isEnabled());
    host_.plugin()->enableEdit(true);
    QVERIFY(page_->isEnabled());
}

// The program state follows start and stop, not pause and resume: the Setting tab is locked
// while a program runs and stays unlocked when a stopped program is resumed.
void PluginHostTest::locksTheSettingTabWhileAProgramRuns() {
    QWidget* setting = page_->findChild<QTabWidget*>()->widget(1);
    QVERIFY(setting);
    QVERIFY(host_.plugin()->initParms());
    QTRY_VERIFY(!setting->findChild<QPushButton*>("push_button_scan_")->isEnabled());
    QVERIFY(host_.plugin()->pausePlugin());
    QVERIFY(host_.plugin()->stopPlugin());
    QTRY_VERIFY(setting->findChild<QPushButton*>("push_button_scan_")->isEnabled());
    QVERIFY(host_.plugin()->continuePlugin());
    QCoreApplication::sendPostedEvents();
    QVERIFY(setting->findChild<QPushButton*>("push_button_scan_")->isEnabled());
}

void PluginHostTest::cleanupTestCase() {
    delete page_;
    QtLogCapture::clear();
    host_.plugin()->enableEdit(true);
    QCOMPARE(QtLogCapture::lines(), QStringList{"W NULL == widget_"});
}

QTEST_MAIN(PluginHostTest)
#include "plugin_host_test.moc"
