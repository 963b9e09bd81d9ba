// The Setting tab and the tab page, driven by clicks against simulated grippers on real
// pseudo-terminals and loopback TCP. Uses "/tmp/pts" (the test holds a CTest resource lock).
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QSerialPortInfo>
#include <QStackedWidget>
#include <QTabWidget>
#include <QtTest>

#include <algorithm>
#include <thread>

#include "gripper/gripper_common/object_keeper/object_keeper.h"
#include "gripper_main/userinterface_logic/gripper_control_widget/gripper_control_widget.h"
#include "gripper_main/userinterface_logic/gripper_widget/gripper_widget.h"
#include "tests/gripper_main/userinterface_logic/page_test_support.h"
#include "tests/test_support/log_capture.h"
#include "tools/gripper_simulator/simulator.h"

using page_test::driver_of;
using page_test::items;
using page_test::on_script_thread;
using page_test::pick;

namespace {

const char PTS_FILE[] = "/tmp/pts";
const int MODBUS = 1;
const int TCP = 2;

void write_pts_file(const QByteArray& content) {
    QFile file(QString::fromLatin1(PTS_FILE));
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(content);
}

QStringList system_ports() {
    QStringList ports;
    for (const QSerialPortInfo& port : QSerialPortInfo::availablePorts()) {
        ports << QStringLiteral("/dev/") + port.portName();
    }
    return ports;
}

// Records the registry's list at every change.
class RegistryHistory : public GripperGlobal::NotifyInterface {
public:
    RegistryHistory() { GripperGlobal::instance().add_notify_interface(this); }
    ~RegistryHistory() { GripperGlobal::instance().remove_notify_interface(this); }
    void on_list_all_device_changed() override {
        lists.push_back(GripperGlobal::instance().vector_device());
    }
    void on_program_state_changed(GripperGlobal::ProgramState) override {}
    void on_program_startup() override {}

    std::vector<std::vector<GripperDevice*>> lists;
};

}  // namespace

class GripperSettingWidgetTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void cleanupTestCase();
    void tab_page_holds_both_pages_and_the_first_record();
    void scan_lists_the_announced_pty_first();
    void scan_without_a_path_lists_nothing();
    void usb_connect_activate_disconnect_by_clicking();
    void tcp_connect_by_clicking();
    void bad_address_stops_bad_port_goes_on();
    void count_4_to_2_removes_records_3_then_2();
    void script_usb_connect_uses_the_scanned_path();
    void whole_page_disabled_while_a_program_runs();
    void vanished_port_shows_write_exception();

private:
    template <typename T>
    T* find(const char* name) {
        T* found = setting_->findChild<T*>(QString::fromLatin1(name));
        Q_ASSERT(nullptr != found);
        return found;
    }
    void click(const char* button) { QTest::mouseClick(find<QPushButton>(button), Qt::LeftButton); }
    void type_into(const char* line_edit, const QString& text);
    void choose_type(const QString& type);
    QString status() { return find<QLabel>("label_status_")->text(); }

    QTemporaryDir folder_;
    gripper_sim::Simulator simulator_;
    GripperWidget* page_ = nullptr;
    GripperSettingWidget* setting_ = nullptr;
};

void GripperSettingWidgetTest::initTestCase() {
    page_test::use_design_resolution(folder_);
    gripper_sim::GripperOptions options;
    options.init_ms = 300;
    QCOMPARE(simulator_.add_modbus_pty(options), MODBUS);
    options.position_max = 100;
    QCOMPARE(simulator_.add_custom_tcp(options), TCP);
    page_ = new GripperWidget();
    page_->resize(1024, 768);
    page_->show();
    QVERIFY(QTest::qWaitForWindowExposed(page_));
    setting_ = GripperSettingWidget::instance();
    QCOMPARE(setting_->window(), static_cast<QWidget*>(page_));
    page_->findChild<QTabWidget*>("tab_widget_")->setCurrentIndex(1);
}

void GripperSettingWidgetTest::cleanup() {
    page_test::disconnect_all();
    GripperGlobal::instance().set_program_state(GripperGlobal::PS_STOPPED);
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

void GripperSettingWidgetTest::type_into(const char* line_edit, const QString& text) {
    QLineEdit* edit = find<QLineEdit>(line_edit);
    edit->clear();
    QTest::keyClicks(edit, text);
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
    QCOMPARE(tabs->count(), 2);
    QCOMPARE(tabs->tabText(0), QStringLiteral("Control"));
    QCOMPARE(tabs->tabText(1), QStringLiteral("Setting"));
    QCOMPARE(tabs->styleSheet(),
             QStringLiteral("QTabWidget::tab-bar {\n    alignment: center;\n}"));
    QCOMPARE(page_->windowTitle(), QStringLiteral("Form"));
    QVERIFY(nullptr != tabs->widget(0)->findChild<GripperControlWidget*>());
    QCOMPARE(setting_->parentWidget(), tabs->widget(1));
    QCOMPARE(GripperGlobal::instance().vector_device().size(), 4u);
    QVERIFY(!find<QLabel>("label_logo_")->pixmap(Qt::ReturnByValue).isNull());
    QCOMPARE(find<QLabel>("label_banner_")->text(), QStringLiteral("Zanther-Robotics Gripper"));
    QCOMPARE(find<QLabel>("label_banner_")->font().pointSize(), 24);
    QCOMPARE(find<QLineEdit>("line_edit_ip_")->whatsThis(), QStringLiteral("1"));
    QCOMPARE(find<QLineEdit>("line_edit_port_")->whatsThis(), QStringLiteral("1"));
    QCOMPARE(items(find<QComboBox>("combo_box_type_")), QStringList({"TCP Client", "USB"}));
    QCOMPARE(items(find<QComboBox>("combo_box_index_")), QStringList({"1", "2", "3", "4"}));
    QCOMPARE(items(find<QComboBox>("combo_box_node_")), QStringList({"1", "2", "3", "4"}));
    QCOMPARE(find<QComboBox>("combo_box_type_")->currentText(), QStringLiteral("USB"));
    QCOMPARE(find<QLineEdit>("line_edit_ip_")->text(), QStringLiteral("192.168.1.29"));
    QCOMPARE(find<QLineEdit>("line_edit_port_")->text(), QStringLiteral("8888"));
    QCOMPARE(find<QPushButton>("push_button_connect_")->font().pointSize(), 18);
    QCOMPARE(find<QLabel>("label_status_")->font().pointSize(), 16);
    QCOMPARE(status(), QStringLiteral("Disconnected"));
    QVERIFY(!find<QPushButton>("push_button_activate_")->isEnabled());
    QVERIFY(!find<QPushButton>("push_button_disconnect_")->isEnabled());
    type_into("line_edit_port_", QStringLiteral("80"));
    QVERIFY(!find<QLineEdit>("line_edit_port_")->hasAcceptableInput());
    type_into("line_edit_ip_", QStringLiteral("192.168.1.300"));
    QCOMPARE(find<QLineEdit>("line_edit_ip_")->text(), QStringLiteral("192.168.1.30"));
}

void GripperSettingWidgetTest::scan_lists_the_announced_pty_first() {
    LogCapture log;
    write_pts_file("PTY is /dev/pts/5\n");
    choose_type(QStringLiteral("USB"));
    click("push_button_scan_");
    QCOMPARE(items(find<QComboBox>("combo_box_usb_")),
             QStringList() << QStringLiteral("/dev/pts/5") << system_ports());
    QVERIFY(log.count("D pts_port = /dev/pts/5") == 1);
    QFile::remove(QString::fromLatin1(PTS_FILE));
    click("push_button_scan_");
    QCOMPARE(items(find<QComboBox>("combo_box_usb_")), system_ports());
    QVERIFY(log.contains("!pts_file.open(QIODevice::OpenModeFlag::ReadOnly"));
    QCOMPARE(find<QPushButton>("push_button_connect_")->isEnabled(), !system_ports().isEmpty());
}

void GripperSettingWidgetTest::scan_without_a_path_lists_nothing() {
    LogCapture log;
    write_pts_file("PTY on /dev/pts/5\n");
    choose_type(QStringLiteral("USB"));
    click("push_button_scan_");
    QVERIFY(items(find<QComboBox>("combo_box_usb_")).isEmpty());
    QCOMPARE(log.count("W 0 == pts_str.length()"), 1L);
    QVERIFY(!find<QPushButton>("push_button_connect_")->isEnabled());
}

void GripperSettingWidgetTest::usb_connect_activate_disconnect_by_clicking() {
    simulator_.set_announce_file(MODBUS, PTS_FILE);
    choose_type(QStringLiteral("USB"));
    click("push_button_scan_");
    QCOMPARE(find<QComboBox>("combo_box_usb_")->currentText(),
             QString::fromStdString(simulator_.endpoint(MODBUS)));
    page_test::LabelHistory history(find<QLabel>("label_status_"));
    click("push_button_connect_");
    QCOMPARE(status(), QStringLiteral("Connecting"));
    QCOMPARE(find<QLabel>("label_status_")->property("tone").toString(), QStringLiteral("busy"));
    QVERIFY(!find<QPushButton>("push_button_connect_")->isEnabled());
    QTRY_VERIFY(nullptr != driver_of(0));
    QTRY_VERIFY(find<QPushButton>("push_button_activate_")->isEnabled());
    QVERIFY(find<QPushButton>("push_button_disconnect_")->isEnabled());
    QVERIFY(!find<QPushButton>("push_button_connect_")->isEnabled());
    QVERIFY(!find<QComboBox>("combo_box_usb_")->isEnabled());
    QVERIFY(!find<QPushButton>("push_button_scan_")->isEnabled());
    click("push_button_activate_");
    QTRY_VERIFY(history.saw_in_order({"Activating", "Activated"}));
    QCOMPARE(find<QLabel>("label_status_")->property("tone").toString(), QStringLiteral("ok"));
    click("push_button_disconnect_");
    QCOMPARE(status(), QStringLiteral("Disconnecting"));
    QVERIFY(!find<QPushButton>("push_button_disconnect_")->isEnabled());
    QTRY_COMPARE(status(), QStringLiteral("Disconnected"));
    QVERIFY(nullptr == driver_of(0));
    QVERIFY(find<QPushButton>("push_button_connect_")->isEnabled());
    // The disconnected driver is destroyed, not kept until exit.
    QTRY_COMPARE(GripperLogicControl::live_count(), 0);
}

void GripperSettingWidgetTest::tcp_connect_by_clicking() {
    QVERIFY(pick(find<QComboBox>("combo_box_node_"), 1));
    choose_type(QStringLiteral("TCP Client"));
    type_into("line_edit_ip_", QStringLiteral("127.0.0.1"));
    type_into("line_edit_port_", QString::number(simulator_.tcp_port(TCP)));
    click("push_button_connect_");
    QTRY_VERIFY(nullptr != driver_of(1));
    QVERIFY(nullptr == driver_of(0));
    QCOMPARE(driver_of(1)->get_communication_connection(), GripperCommunication::CC_TCP_CLIENT);
    QTRY_VERIFY(QStringLiteral("Inactivate") == status() ||
                QStringLiteral("Activated") == status());
    click("push_button_activate_");
    QTRY_COMPARE(status(), QStringLiteral("Activated"));
    QVERIFY(pick(find<QComboBox>("combo_box_node_"), 0));
    QCOMPARE(status(), QStringLiteral("Disconnected"));
    QVERIFY(find<QPushButton>("push_button_connect_")->isEnabled());
}

void GripperSettingWidgetTest::bad_address_stops_bad_port_goes_on() {
    LogCapture log;
    choose_type(QStringLiteral("TCP Client"));
    type_into("line_edit_ip_", QStringLiteral("127.0.1"));
    click("push_button_connect_");
    QVERIFY(log.contains("!MiscellaneousUtility::is_valid_ip(ip)"));
    QVERIFY(log.contains("ip = 127.0.1"));
    QVERIFY(log.contains("!valid"));
    QCOMPARE(status(), QStringLiteral("Disconnected"));
    // Gripper 1 was last connected over USB: a rejected port asks for TCP with the USB list it
    // holds, which fails, and the USB link is not opened.
    type_into("line_edit_ip_", QStringLiteral("127.0.0.1"));
    find<QLineEdit>("line_edit_port_")->setText(QStringLiteral("80"));
    click("push_button_connect_");
    QTRY_VERIFY(log.contains("NULL == device->gripper_abstract_control_"));
    QVERIFY(log.contains("3 != list_parameters.size()"));
    QVERIFY(nullptr == driver_of(0));

    type_into("line_edit_ip_", QStringLiteral("127.0.0.1"));
    type_into("line_edit_port_", QString::number(simulator_.tcp_port(TCP)));
    click("push_button_connect_");
    QTRY_VERIFY(nullptr != driver_of(0));
    click("push_button_disconnect_");
    QTRY_VERIFY(nullptr == driver_of(0));
    // The validator keeps an operator from typing port 80; set, it still connects with the
    // parameters the device holds.
    log.clear();
    find<QLineEdit>("line_edit_port_")->setText(QStringLiteral("80"));
    click("push_button_connect_");
    QTRY_VERIFY(nullptr != driver_of(0));
    QCOMPARE(driver_of(0)->get_communication_connection(), GripperCommunication::CC_TCP_CLIENT);
    QVERIFY(log.contains("!MiscellaneousUtility::is_valid_port(port)"));
    QVERIFY(log.contains("port = 80"));
}

void GripperSettingWidgetTest::count_4_to_2_removes_records_3_then_2() {
    const std::vector<GripperDevice*> before = GripperGlobal::instance().vector_device();
    QCOMPARE(before.size(), 4u);
    QVERIFY(pick(find<QComboBox>("combo_box_node_"), 2));
    choose_type(QStringLiteral("TCP Client"));
    type_into("line_edit_ip_", QStringLiteral("127.0.0.1"));
    type_into("line_edit_port_", QString::number(simulator_.tcp_port(TCP)));
    click("push_button_connect_");
    QTRY_VERIFY(nullptr != driver_of(2));
    QVERIFY(pick(find<QComboBox>("combo_box_node_"), 3));
    // Held by this reader, the removed records stay allocated until the test ends.
    const ObjectKeeper::Section section;
    RegistryHistory history;
    QVERIFY(pick(find<QComboBox>("combo_box_index_"), 1));
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

void GripperSettingWidgetTest::script_usb_connect_uses_the_scanned_path() {
    simulator_.set_announce_file(MODBUS, PTS_FILE);
    QVERIFY(on_script_thread([&] { return setting_->scan_gripper(); }));
    QTRY_COMPARE(find<QComboBox>("combo_box_usb_")->itemText(0),
                 QString::fromStdString(simulator_.endpoint(MODBUS)));
    LogCapture log;
    QVERIFY(on_script_thread([&] {
        return setting_->connect_gripper(GripperCommunication::CC_USB_SERIALPORT,
                                         {"0", "/dev/pts/7"});
    }));
    QVERIFY(nullptr != driver_of(0));
    QVERIFY(log.contains(("serialport_ = " + simulator_.endpoint(MODBUS)).c_str()));
    QCOMPARE(find<QComboBox>("combo_box_type_")->currentText(), QStringLiteral("USB"));
    QCOMPARE(find<QComboBox>("combo_box_usb_")->currentText(),
             QString::fromStdString(simulator_.endpoint(MODBUS)));
}

void GripperSettingWidgetTest::whole_page_disabled_while_a_program_runs() {
    std::thread hook(
        [] { GripperGlobal::instance().set_program_state(GripperGlobal::PS_RUNNING); });
    hook.join();
    QTRY_VERIFY(!setting_->isEnabled());
    QVERIFY(!find<QPushButton>("push_button_connect_")->isEnabled());
    GripperGlobal::instance().set_program_state(GripperGlobal::PS_STOPPED);
    QTRY_VERIFY(setting_->isEnabled());
}

void GripperSettingWidgetTest::vanished_port_shows_write_exception() {
    simulator_.set_announce_file(MODBUS, PTS_FILE);
    choose_type(QStringLiteral("USB"));
    click("push_button_scan_");
    click("push_button_connect_");
    QTRY_VERIFY(nullptr != driver_of(0));
    simulator_.set_fault(MODBUS, gripper_sim::Fault::vanish);
    QTRY_COMPARE_WITH_TIMEOUT(status(), QStringLiteral("Write EXCP"), 10000);
    QCOMPARE(find<QLabel>("label_status_")->property("tone").toString(), QStringLiteral("fault"));
    QVERIFY(find<QPushButton>("push_button_disconnect_")->isEnabled());
    click("push_button_disconnect_");
    QTRY_COMPARE(status(), QStringLiteral("Disconnected"));
}

QTEST_MAIN(GripperSettingWidgetTest)
#include "gripper_setting_widget_test.moc"
