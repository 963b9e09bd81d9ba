// The Setting tab and the tab page, driven by clicks against simulated grippers on real
// pseudo-terminals and loopback TCP. Uses "/tmp/pts" (the test holds a CTest resource lock).
#include <QPushButton>
#include <QSerialPortInfo>
#include <QStackedWidget>
#include <QTabWidget>
#include <QtTest>

#include "gripper/gripper_common/object_keeper/object_keeper.h"
#include "gripper_main/userinterface_logic/gripper_control_widget/gripper_control_widget.h"
#include "tests/test_support/log_capture.h"
#include "tests/test_support/page_test_support.h"
#include "tests/test_support/registry_journal.h"

using page_test::driver_of;
using page_test::items;
using page_test::pick;

namespace {

const char PTS_FILE[] = "/tmp/pts";
const int MODBUS = 1;
const int TCP = 2;

QStringList system_ports() {
    QStringList ports;
    for (const QSerialPortInfo& port : QSerialPortInfo::availablePorts()) {
        ports << QStringLiteral("/dev/") + port.portName();
    }
    return ports;
}

}  // namespace

class GripperSettingWidgetTest : public page_test::PageTest {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void cleanupTestCase();
    void tab_page_holds_both_pages_and_the_first_record();
    void scan_lists_the_announced_pty_first_data();
    void scan_lists_the_announced_pty_first();
    void usb_connect_activate_fault_disconnect_by_clicking();
    void tcp_connect_by_clicking_bad_address_stops_bad_port_goes_on();
    void count_4_to_2_removes_records_3_then_2();

private:
    void choose_type(const QString& type);
    QLabel* status() { return find<QLabel>("label_status_"); }
    QString tone() { return status()->property("tone").toString(); }
    bool enabled(const char* widget) { return find<QWidget>(widget)->isEnabled(); }

    GripperSettingWidget* setting_ = nullptr;
};

void GripperSettingWidgetTest::initTestCase() {
    gripper_sim::GripperOptions options;
    options.init_ms = 300;
    QCOMPARE(simulator_.add_modbus_pty(options), MODBUS);
    options.position_max = 100;
    QCOMPARE(simulator_.add_custom_tcp(options), TCP);
    QVERIFY(show_page());
    scope_ = setting_ = GripperSettingWidget::instance();
    QCOMPARE(setting_->window(), static_cast<QWidget*>(page_));
    page_->findChild<QTabWidget*>("tab_widget_")->setCurrentIndex(1);
}

void GripperSettingWidgetTest::cleanup() {
    page_test::disconnect_all();
    simulator_.set_announce_file(MODBUS, std::string());
    simulator_.set_fault(MODBUS, gripper_sim::Fault::none);
    pick(find<QComboBox>("combo_box_index_"), 3);
    pick(find<QComboBox>("combo_box_node_"), 0);
    QFile::remove(QString::fromLatin1(PTS_FILE));
}

// The page leaves the registry, the manager and its drivers when it goes.
void GripperSettingWidgetTest::cleanupTestCase() {
    delete page_;
}

void GripperSettingWidgetTest::choose_type(const QString& type) {
    QComboBox* combo = find<QComboBox>("combo_box_type_");
    QVERIFY(pick(combo, combo->findText(type)));
    QCOMPARE(find<QStackedWidget>("stacked_widget_")->currentWidget()->objectName(),
             QStringLiteral("USB") == type ? QStringLiteral("widget_usb_")
                                           : QStringLiteral("widget_tcp_client_"));
}

void GripperSettingWidgetTest::tab_page_holds_both_pages_and_the_first_record() {
    QTabWidget* tabs = page_->findChild<QTabWidget*>("tab_widget_");
    QCOMPARE(QStringList({tabs->tabText(0), tabs->tabText(1)}),
             QStringList({"Control", "Setting"}));
    QCOMPARE(tabs->styleSheet(),
             QStringLiteral("QTabWidget::tab-bar {\n    alignment: center;\n}"));
    QCOMPARE(page_->windowTitle(), QStringLiteral("Form"));
    QVERIFY(nullptr != tabs->widget(0)->findChild<GripperControlWidget*>());
    QCOMPARE(setting_->parentWidget(), tabs->widget(1));
    QCOMPARE(GripperGlobal::instance().vector_device().size(), 4u);
    QVERIFY(!find<QLabel>("label_logo_")->pixmap(Qt::ReturnByValue).isNull());
    QCOMPARE(find<QLabel>("label_banner_")->text(), QStringLiteral("Zanther-Robotics Gripper"));
    QCOMPARE(find<QLabel>("label_banner_")->font().pointSize(), 24);
    QCOMPARE(find<QPushButton>("push_button_connect_")->font().pointSize(), 18);
    QCOMPARE(status()->font().pointSize(), 16);
    QVERIFY("1" == find<QLineEdit>("line_edit_ip_")->whatsThis() &&
            "1" == find<QLineEdit>("line_edit_port_")->whatsThis());
    QCOMPARE(items(find<QComboBox>("combo_box_type_")), QStringList({"TCP Client", "USB"}));
    QCOMPARE(items(find<QComboBox>("combo_box_index_")), QStringList({"1", "2", "3", "4"}));
    QCOMPARE(items(find<QComboBox>("combo_box_node_")), QStringList({"1", "2", "3", "4"}));
    QCOMPARE(find<QComboBox>("combo_box_type_")->currentText(), QStringLiteral("USB"));
    QCOMPARE(find<QLineEdit>("line_edit_ip_")->text(), QStringLiteral("192.168.1.29"));
    QCOMPARE(find<QLineEdit>("line_edit_port_")->text(), QStringLiteral("8888"));
    QCOMPARE(status()->text(), QStringLiteral("Disconnected"));
    QVERIFY(!enabled("push_button_activate_") && !enabled("push_button_disconnect_"));
    type_into("line_edit_port_", QStringLiteral("80"));
    QVERIFY(!find<QLineEdit>("line_edit_port_")->hasAcceptableInput());
    type_into("line_edit_ip_", QStringLiteral("192.168.1.300"));
    QCOMPARE(find<QLineEdit>("line_edit_ip_")->text(), QStringLiteral("192.168.1.30"));
}

void GripperSettingWidgetTest::scan_lists_the_announced_pty_first_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("listed");
    QTest::addColumn<QString>("line");
    QTest::newRow("announced") << QByteArray("PTY is /dev/pts/5\n")
                               << (QStringList("/dev/pts/5") << system_ports())
                               << "D pts_port = /dev/pts/5";
    QTest::newRow("no file") << QByteArray() << system_ports()
                             << "W !pts_file.open(QIODevice::OpenModeFlag::ReadOnly";
    QTest::newRow("no path") << QByteArray("PTY on /dev/pts/5\n") << QStringList()
                             << "W 0 == pts_str.length()";
}

void GripperSettingWidgetTest::scan_lists_the_announced_pty_first() {
    QFETCH(QByteArray, file);
    QFETCH(QStringList, listed);
    QFETCH(QString, line);
    LogCapture log;
    if (!file.isEmpty()) {
        QFile pts(QString::fromLatin1(PTS_FILE));
        QVERIFY(pts.open(QIODevice::WriteOnly | QIODevice::Truncate));
        pts.write(file);
    }
    choose_type(QStringLiteral("USB"));
    click("push_button_scan_");
    QCOMPARE(items(find<QComboBox>("combo_box_usb_")), listed);
    QCOMPARE(log.count(line.toStdString()), 1L);
    QCOMPARE(enabled("push_button_connect_"), !listed.isEmpty());
}

// A vanished port shows as a fault, its tool tip the sentence of the link's last failure, as
// its log line has it.
void GripperSettingWidgetTest::usb_connect_activate_fault_disconnect_by_clicking() {
    LogCapture log;
    page_test::LabelHistory history(status());
    simulator_.set_announce_file(MODBUS, PTS_FILE);
    choose_type(QStringLiteral("USB"));
    click("push_button_scan_");
    QCOMPARE(find<QComboBox>("combo_box_usb_")->currentText(),
             QString::fromStdString(simulator_.endpoint(MODBUS)));
    click("push_button_connect_");
    QCOMPARE(status()->text(), QStringLiteral("Connecting"));
    QCOMPARE(tone(), QStringLiteral("busy"));
    QVERIFY(!enabled("push_button_connect_"));
    QTRY_VERIFY(nullptr != driver_of(0) && enabled("push_button_activate_"));
    QVERIFY(enabled("push_button_disconnect_") && !enabled("push_button_connect_") &&
            !enabled("combo_box_usb_") && !enabled("push_button_scan_"));
    click("push_button_activate_");
    QTRY_VERIFY(history.saw_in_order({"Activating", "Activated"}));
    QCOMPARE(tone(), QStringLiteral("ok"));
    simulator_.set_fault(MODBUS, gripper_sim::Fault::vanish);
    QTRY_COMPARE_WITH_TIMEOUT(status()->text(), QStringLiteral("Write EXCP"), 10000);
    QCOMPARE(tone(), QStringLiteral("fault"));
    QVERIFY(!status()->toolTip().isEmpty() && log.contains(status()->toolTip().toStdString()));
    click("push_button_disconnect_");
    QCOMPARE(status()->text(), QStringLiteral("Disconnecting"));
    QVERIFY(!enabled("push_button_disconnect_"));
    QTRY_COMPARE(status()->text(), QStringLiteral("Disconnected"));
    QVERIFY(nullptr == driver_of(0) && enabled("push_button_connect_"));
    // The disconnected driver is destroyed, not kept until exit.
    QTRY_COMPARE(GripperLogicControl::live_count(), 0);
}

void GripperSettingWidgetTest::tcp_connect_by_clicking_bad_address_stops_bad_port_goes_on() {
    LogCapture log;
    // Gripper 1 was last connected over USB: a rejected port asks for TCP with the USB list it
    // holds, which fails, and the USB link is not opened.
    choose_type(QStringLiteral("TCP Client"));
    type_into("line_edit_ip_", QStringLiteral("127.0.0.1"));
    find<QLineEdit>("line_edit_port_")->setText(QStringLiteral("80"));
    click("push_button_connect_");
    QTRY_VERIFY(log.contains("NULL == device->gripper_abstract_control_"));
    QVERIFY(log.contains("3 != list_parameters.size()") && nullptr == driver_of(0));
    QVERIFY(pick(find<QComboBox>("combo_box_node_"), 1));
    choose_type(QStringLiteral("TCP Client"));
    type_into("line_edit_ip_", QStringLiteral("127.0.1"));
    click("push_button_connect_");
    QVERIFY(log.contains("!MiscellaneousUtility::is_valid_ip(ip)") &&
            log.contains("ip = 127.0.1") && log.contains("!valid"));
    QCOMPARE(status()->text(), QStringLiteral("Disconnected"));
    type_into("line_edit_ip_", QStringLiteral("127.0.0.1"));
    type_into("line_edit_port_", QString::number(simulator_.tcp_port(TCP)));
    click("push_button_connect_");
    QTRY_VERIFY(nullptr != driver_of(1));
    QCOMPARE(driver_of(1)->get_communication_connection(), GripperCommunication::CC_TCP_CLIENT);
    QTRY_VERIFY(QStringLiteral("Inactivate") == status()->text() ||
                QStringLiteral("Activated") == status()->text());
    click("push_button_disconnect_");
    QTRY_VERIFY(nullptr == driver_of(1));
    // The validator keeps an operator from typing port 80; set, it still connects with the
    // parameters the device holds.
    find<QLineEdit>("line_edit_port_")->setText(QStringLiteral("80"));
    click("push_button_connect_");
    QTRY_VERIFY(nullptr != driver_of(1));
    QCOMPARE(driver_of(1)->get_communication_connection(), GripperCommunication::CC_TCP_CLIENT);
    QVERIFY(log.contains("!MiscellaneousUtility::is_valid_port(port)") &&
            log.contains("port = 80"));
    QVERIFY(pick(find<QComboBox>("combo_box_node_"), 0));
    QCOMPARE(status()->text(), QStringLiteral("Disconnected"));
    QVERIFY(enabled("push_button_connect_"));
}

void GripperSettingWidgetTest::count_4_to_2_removes_records_3_then_2() {
    const std::vector<GripperDevice*> before = GripperGlobal::instance().vector_device();
    QVERIFY(connect_gripper(2, TCP));
    QVERIFY(pick(find<QComboBox>("combo_box_node_"), 3));
    // Held by this reader, the removed records stay allocated until the test ends.
    const ObjectKeeper::Section section;
    std::vector<std::string> journal;
    RegistryJournal history("registry", journal);
    GripperGlobal::instance().add_notify_interface(&history);
    QVERIFY(pick(find<QComboBox>("combo_box_index_"), 1));
    GripperGlobal::instance().remove_notify_interface(&history);
    QCOMPARE(history.lists.size(), 2u);
    QCOMPARE(history.lists[0], std::vector<GripperDevice*>(before.begin(), before.begin() + 3));
    QCOMPARE(history.lists[1], std::vector<GripperDevice*>(before.begin(), before.begin() + 2));
    QCOMPARE(items(find<QComboBox>("combo_box_node_")), QStringList({"1", "2"}));
    QCOMPARE(find<QComboBox>("combo_box_node_")->currentIndex(), 1);
    // A removed gripper that was connected is disconnected; its record stays valid.
    QTRY_VERIFY(nullptr == before[2]->gripper_abstract_control_);
    QCOMPARE(page_->findChild<QComboBox*>("combo_box_node_2")->count(), 2);
    QVERIFY(pick(find<QComboBox>("combo_box_index_"), 3));
    QCOMPARE(GripperGlobal::instance().vector_device().size(), 4u);
    QCOMPARE(items(find<QComboBox>("combo_box_node_")), QStringList({"1", "2", "3", "4"}));
    QTRY_COMPARE(page_->findChild<QComboBox*>("combo_box_node_2")->count(), 4);
}

QTEST_MAIN(GripperSettingWidgetTest)
#include "gripper_setting_widget_test.moc"
