// The plug-in loaded as the pendant loads it, without grippers: metadata, the invokables, the
// lifecycle hooks, the program-step hooks and script lines that need no gripper.
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTranslator>
#include <QtTest>

#include <memory>

#include "tests/test_support/plugin_host.h"
#include "tests/test_support/qt_log_capture.h"
#include "tests/test_support/script_thread.h"

namespace {

const QString kConfig = QStringLiteral(
    "{\"forceEnabled\":true,\"forceMax\":100,\"forceMin\":20,\"positionEnabled\":true,"
    "\"positionMax\":100,\"positionMin\":0,\"speedEnabled\":true,\"speedMax\":100,"
    "\"speedMin\":1}");

const Reply kAccepted{true, QStringLiteral("i | 0")};

// A program step whose force lies below the configured range.
const QString kWeakStep = QStringLiteral(
    "{\"DeviceID\":\"1\",\"PluginName\":\"Zanther2F\",\"Position\":100,\"Force\":19,"
    "\"Speed\":1,\"IsBlock\":true}");

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

}  // namespace

class PluginHostTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void loadsWithItsMetadataCataloguesAndLog();
    void answersScriptLinesThatNeedNoGripper_data();
    void answersScriptLinesThatNeedNoGripper();
    void rebuildsAndWritesProgramSteps();
    void followsACatalogueAndLocksTheSettingTabWhileAProgramRuns();
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

// The metadata the pendant reads; the catalogues (all three are loaded by the catalogue test)
// translate the plug-in's category, though the plug-in itself loads none of them. The plug-in
// works in the application's directory, where its log file grows; every message also reaches the
// handler installed before the plug-in.
void PluginHostTest::loadsWithItsMetadataCataloguesAndLog() {
    const QJsonObject raw = host_.rawMetaData();
    QCOMPARE(raw.value("IID").toString(), QStringLiteral("com.qt-project.Orla.TeachPendantPlugin"));
    QCOMPARE(raw.value("className").toString(), QStringLiteral("TemplatePlugin"));
    QCOMPARE(raw.value("debug").toBool(), false);
    QCOMPARE(host_.metaData(),
             QJsonDocument::fromJson(
                 "{\"Name\":\"Zanther2F\",\"Version\":\"4.2.6\",\"CompatVersion\":\"4.2.6\","
                 "\"Vendor\":\"Zanther Robotics\",\"Copyright\":\"(C) Zanther Robotics\","
                 "\"Category\":\"Extensions/Peripheral,Programming/Condition/Peripheral\","
                 "\"Description\":\"Zanther_2_Finger_Gripper_Plugin\",\"Dependencies\":[]}")
                 .object());

    QPluginLoader second(QStringLiteral(ZANTHER2F_LIBRARY));
    QCOMPARE(second.instance(), static_cast<QObject*>(host_.plugin()));

    QTranslator translator;
    QVERIFY(translator.load(QStringLiteral(":/Translations/zh_CN_template_plugin.qm")));
    QCOMPARE(translator.translate("TemplatePlugin", "Peripheral"), QString::fromUtf8("外设"));
    host_.plugin()->loadTranslator(QStringLiteral("zh_CN"));
    QCOMPARE(QCoreApplication::translate("TemplatePlugin", "Peripheral"),
             QStringLiteral("Peripheral"));
    QCOMPARE(QDir::currentPath(), QCoreApplication::applicationDirPath());
    qWarning("a message of the host");
    QFile log(QCoreApplication::applicationDirPath() + "/zanther_gripper_log.log");
    QVERIFY(log.open(QIODevice::ReadOnly));
    QVERIFY(log.readAll().contains("[WARN] - a message of the host\r\n"));

    // Before createUI there is no page, no registry entry and no logging back end: hooks and
    // commands answer and change nothing.
    QVERIFY(host_.plugin()->continuePlugin() && host_.plugin()->pausePlugin());
    QVERIFY(host_.plugin()->initParms() && host_.plugin()->stopPlugin());
    host_.plugin()->enableEdit(false);
    host_.plugin()->setPluginSharedFilePath(QStringLiteral("/tmp/shared"));
    host_.plugin()->setPluginMessageBoxParentWidget(nullptr);
    for (const char* line : {"gripper_scan", "gripper_connect_usb|1,/dev/pts/0",
                             "gripper_connect_tcp|1,127.0.0.1:5020", "gripper_disconnect|1",
                             "set_gripper_position|1,50,true"}) {
        QCOMPARE(send(line), kAccepted);
    }
    QVERIFY(QtLogCapture::lines().isEmpty());
}

void PluginHostTest::answersScriptLinesThatNeedNoGripper_data() {
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("log");
    const QString no = QStringLiteral("i | 0");
    const QString no_driver = QStringLiteral("W NULL == device->gripper_abstract_control_");
    const QString no_device = QStringLiteral("W NULL == device");
    const QString flag = QStringLiteral("W \"true\" != block_str");
    const QString not_connected = no_device + "\nW retValueOrError = i | 0";
    const auto row = [](const QString& line, bool ok, const QString& answer, const QString& log) {
        QTest::newRow(qPrintable(line.left(40))) << line << ok << answer << log;
    };
    row("get_2_finger_gripper_config_info", true, kConfig, "");
    row("set_gripper_speed|1,80", true, no, "");
    row("get_gripper_status|1", true, no, no_driver);
    row("get_gripper_position|1", true, "i|0", no_driver);
    row("gripper_isActivate|1", true, no, no_driver);
    row("gripper_isGrip|1", true, no, no_driver);
    row("gripper_isArrive|1", true, no, no_driver);
    row("gripper_isDrop|1", true, no, no_driver);
    row("gripper_active|1", true, no, no_driver + "\nW !set_activate()");
    row("set_gripper_force|1,50", true, no, no_driver + "\nW !set_force(force)");
    row("set_2_finger_gripper_param|1,50,30,80,true", true, no, no_driver + "\nW set_force(force)");
    row(" set_gripper_position | 1 , 50 , true ", true, no,
        no_driver + "\nW !set_position(position)");
    row("gripper_disconnect|1", true, no, no_driver + "\nW !mode_disconnect(deviceId)");
    // Unknown names and bad block flags are refused.
    row("foo|1", false, no, "");
    row("", false, no, "");
    row("set_gripper_position|1,50,yes", false, no, flag);
    row("set_gripper_position|1,50", false, no, flag);
    row("set_2_finger_gripper_param|1,50,30,80,TRUE", false, no, flag);
    // A bad id, missing fields, a huge line and text outside ASCII: as a missing gripper.
    row("gripper_isConnect|0", true, no, not_connected);
    row("gripper_isConnect|-2147483648", true, no, not_connected);
    row("gripper_active", true, no, no_device + "\nW !set_activate()");
    row("get_gripper_status|" + QString(10240, QLatin1Char('9')), true, no, no_device);
    row(QString::fromUtf8("get_gripper_status|１"), true, no, no_device);
    row(QString::fromUtf8("get_gripper_status|1,é,\u00ff|x|y"), true, no, no_driver);
    row("gripper_connect_tcp|9,1.2.3.4:1", true, no,
        "D deviceId = 8\n" + no_device + "\nW !mode_connect(TCP_CLIENT, connect_parameters)");
}

// With the page made and no gripper connected; nothing crashes or hangs.
void PluginHostTest::answersScriptLinesThatNeedNoGripper() {
    QFETCH(QString, line);
    QFETCH(bool, ok);
    QFETCH(QString, answer);
    QFETCH(QString, log);
    if (page_.isNull()) {
        page_ = host_.plugin()->createUI(nullptr);
    }
    QtLogCapture::clear();
    QCOMPARE(send(line), (Reply{ok, answer}));
    QCOMPARE(plugin_lines(), log.split(QLatin1Char('\n'), Qt::SkipEmptyParts));
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
    QCOMPARE(copy->getXmlInfo(), record->getXmlInfo());

    // Without an open editor the plug-in's own ranges apply.
    QString error;
    QVERIFY(host_.checkCondInfo(record.get(), error));
    QVERIFY(error.isEmpty());
    std::unique_ptr<AbsCondInfo> weak(host_.xmlInfoToCondInfo("step 2", kWeakStep));
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

    // Records of another type, or none, are refused with a warning instead of being cast blindly.
    QtLogCapture::clear();
    AbsCondInfo foreign(QStringLiteral("Other"), QStringLiteral("a"), QStringLiteral("{}"),
                        QString());
    error.clear();
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

// A catalogue of the library's resources installed after createUI translates the shown page,
// an open editor and the validation texts; removed, they read the source texts again.
void PluginHostTest::followsACatalogueAndLocksTheSettingTabWhileAProgramRuns() {
    const struct {
        const char* language;
        // Both tabs, the Setting status, the first link type, scan, the editor's force label,
        // the validation text of a force below the range.
        QStringList texts;
    } rows[] = {
        {"zh_CN",
         {"控制", "设置", "已断开", "TCP 客户端", "扫描", "夹持力", "夹持力与配置信息不符"}},
        {"zh_TW",
         {"控制", "設定", "已斷線", "TCP 用戶端", "掃描", "夾持力", "夾持力與組態資訊不符"}},
        {"en_GB",
         {"Control", "Setting", "Disconnected", "TCP Client", "Scan", "Force",
          "Force does not match the configuration"}},
        {"",
         {"Control", "Setting", "Disconnected", "TCP Client", "scan", "Force",
          "force does not match the configuration information"}},
    };
    std::unique_ptr<QWidget> editor(host_.createCondUI(nullptr));
    std::unique_ptr<AbsCondInfo> weak(host_.xmlInfoToCondInfo("step", kWeakStep));
    QTabWidget* tabs = page_->findChild<QTabWidget*>();
    const auto shown = [&] {
        QString error;
        host_.checkCondInfo(weak.get(), error);
        return QStringList{tabs->tabText(0),
                           tabs->tabText(1),
                           tabs->widget(1)->findChild<QLabel*>("label_status_")->text(),
                           page_->findChild<QComboBox*>("combo_box_type_")->itemText(0),
                           page_->findChild<QPushButton*>("push_button_scan_")->text(),
                           editor->findChild<QLabel*>("label_force")->text(),
                           error};
    };
    for (const auto& row : rows) {
        QTranslator translator;
        if (*row.language) {
            QVERIFY(translator.load(
                QStringLiteral(":/Translations/%1_template_plugin.qm").arg(row.language)));
            QCoreApplication::installTranslator(&translator);
        }
        QTRY_COMPARE(shown(), row.texts);
        // Texts set in code stay.
        QCOMPARE(editor->findChild<QLabel*>("lbl_forceRange")->text(),
                 QStringLiteral("  20 ~ 100"));
        QCoreApplication::removeTranslator(&translator);
    }
    // The page has these two tabs; enableEdit switches it, and does nothing once the host has
    // deleted it. The program state follows start and stop, not pause and resume: the Setting
    // tab is locked while a program runs and stays unlocked when a stopped program is resumed.
    QCOMPARE(tabs->count(), 2);
    host_.plugin()->enableEdit(false);
    QVERIFY(!page_->isEnabled());
    host_.plugin()->enableEdit(true);
    QVERIFY(page_->isEnabled());
    QPushButton* scan = tabs->widget(1)->findChild<QPushButton*>("push_button_scan_");
    QVERIFY(host_.plugin()->initParms());
    QTRY_VERIFY(!scan->isEnabled());
    QVERIFY(host_.plugin()->pausePlugin() && host_.plugin()->stopPlugin());
    QTRY_VERIFY(scan->isEnabled());
    QVERIFY(host_.plugin()->continuePlugin());
    QCoreApplication::sendPostedEvents();
    QVERIFY(scan->isEnabled());
}

void PluginHostTest::cleanupTestCase() {
    delete page_;
    QtLogCapture::clear();
    host_.plugin()->enableEdit(true);
    QCOMPARE(QtLogCapture::lines(), QStringList{"W NULL == widget_"});
}

QTEST_MAIN(PluginHostTest)
#include "plugin_host_test.moc"
