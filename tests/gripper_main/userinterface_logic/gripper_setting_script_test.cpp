// The Setting page's operations for script commands, called from a second thread while the
// interface thread runs its event loop (and once on the interface thread itself), against
// simulated grippers on loopback TCP and a real pseudo-terminal.
#include <QFile>
#include <QLineEdit>
#include <QtTest>

#include <atomic>
#include <thread>

#include "gripper_main/userinterface_logic/gripper_widget/gripper_widget.h"
#include "tests/gripper_main/userinterface_logic/page_test_support.h"
#include "tests/test_support/log_capture.h"
#include "tools/gripper_simulator/simulator.h"

using page_test::driver_of;
using page_test::on_script_thread;

namespace {

const int FIRST = 1;   // frames over TCP
const int SECOND = 2;  // frames over TCP
const int MODBUS = 3;  // Modbus on a pseudo-terminal

std::vector<std::string> tcp(int index, uint16_t port) {
    return {std::to_string(index), "127.0.0.1", std::to_string(port)};
}

}  // namespace

class GripperSettingScriptTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void connect_returns_once_the_driver_is_stored();
    void failed_connect_leaves_the_device_disconnected();
    void bad_parameter_lists_are_refused();
    void disconnect_by_index_disconnects_only_the_named_gripper();
    void debug_connect_uses_the_last_serial_port();
    void operations_on_the_interface_thread_run_in_place();
    void deleting_the_page_ends_a_waiting_connect_or_disconnect();

private:
    bool connect_on_script_thread(GripperCommunication::CommunicationConnection connection,
                                  const std::vector<std::string>& parameters) {
        return on_script_thread([&] {
            return GripperSettingWidget::instance()->connect_gripper(connection, parameters);
        });
    }
    QString link_to_modbus() const { return folder_.filePath(QStringLiteral("ttyGripper")); }

    QTemporaryDir folder_;
    gripper_sim::Simulator simulator_;
    GripperWidget* page_ = nullptr;
};

void GripperSettingScriptTest::initTestCase() {
    page_test::use_design_resolution(folder_);
    gripper_sim::GripperOptions options;
    options.position_max = 100;
    options.init_ms = 100;
    QCOMPARE(simulator_.add_custom_tcp(options), FIRST);
    QCOMPARE(simulator_.add_custom_tcp(options), SECOND);
    options.position_max = 1000;
    QCOMPARE(simulator_.add_modbus_pty(options), MODBUS);
    QVERIFY(QFile::link(QString::fromStdString(simulator_.endpoint(MODBUS)), link_to_modbus()));
    page_ = new GripperWidget();
    page_->show();
    QVERIFY(QTest::qWaitForWindowExposed(page_));
}

void GripperSettingScriptTest::cleanup() {
    page_test::disconnect_all();
    simulator_.set_fault(FIRST, gripper_sim::Fault::none);
}

void GripperSettingScriptTest::connect_returns_once_the_driver_is_stored() {
    GripperLogicControl* seen_at_return = nullptr;
    const bool connected = on_script_thread([&] {
        const bool result = GripperSettingWidget::instance()->connect_gripper(
            GripperCommunication::CC_TCP_CLIENT, tcp(0, simulator_.tcp_port(FIRST)));
        seen_at_return = driver_of(0);
        return result;
    });
    QVERIFY(connected);
    QVERIFY(nullptr != seen_at_return);
    QCOMPARE(seen_at_return->get_communication_status(), GripperCommunication::CS_CONNECTED);
    QCOMPARE(page_->findChild<QLineEdit*>("line_edit_ip_")->text(), QStringLiteral("127.0.0.1"));
    LogCapture log;
    QVERIFY(connect_on_script_thread(GripperCommunication::CC_TCP_CLIENT,
                                     tcp(0, simulator_.tcp_port(SECOND))));
    QVERIFY(log.contains("device->gripper_abstract_control_"));
    QCOMPARE(driver_of(0), seen_at_return);
    QVERIFY(
        on_script_thread([] { return GripperSettingWidget::instance()->disconnect_gripper(); }));
    QVERIFY(nullptr == driver_of(0));
    QVERIFY(
        !on_script_thread([] { return GripperSettingWidget::instance()->disconnect_gripper(); }));
}

void GripperSettingScriptTest::failed_connect_leaves_the_device_disconnected() {
    simulator_.set_fault(FIRST, gripper_sim::Fault::silent);
    const long frames_before = simulator_.snapshot(FIRST).frames_received;
    QVERIFY(connect_on_script_thread(GripperCommunication::CC_TCP_CLIENT,
                                     tcp(1, simulator_.tcp_port(FIRST))));
    QVERIFY(nullptr == driver_of(1));
    QVERIFY(simulator_.snapshot(FIRST).frames_received > frames_before);
    QCOMPARE(page_->findChild<QLabel*>("label_status_")->text(), QStringLiteral("Disconnected"));
    simulator_.set_fault(FIRST, gripper_sim::Fault::none);
    QVERIFY(connect_on_script_thread(GripperCommunication::CC_TCP_CLIENT,
                                     tcp(1, simulator_.tcp_port(FIRST))));
    QVERIFY(nullptr != driver_of(1));
}

void GripperSettingScriptTest::bad_parameter_lists_are_refused() {
    LogCapture log;
    GripperSettingWidget* setting = GripperSettingWidget::instance();
    QVERIFY(!on_script_thread(
        [&] { return setting->connect_gripper(GripperCommunication::CC_TCP_CLIENT, {}); }));
    QVERIFY(log.contains("list_parameters.empty()"));
    QVERIFY(!connect_on_script_thread(GripperCommunication::CC_TCP_CLIENT, {"0", "127.0.0.1"}));
    QVERIFY(log.contains("3 != list_parameters.size()"));
    QVERIFY(!connect_on_script_thread(GripperCommunication::CC_USB_SERIALPORT, {"0"}));
    QVERIFY(!connect_on_script_thread(GripperCommunication::CC_FIXED_PORT, {"0", "x"}));
    QVERIFY(!connect_on_script_thread(GripperCommunication::CC_TCP_CLIENT,
                                      tcp(4, simulator_.tcp_port(FIRST))));
    QVERIFY(log.contains("index = 4"));
    QVERIFY(!connect_on_script_thread(GripperCommunication::CC_TCP_CLIENT,
                                      {"one", "127.0.0.1", "8888"}));
    for (int index = 0; index < 4; ++index) {
        QVERIFY(nullptr == driver_of(index));
    }
}

void GripperSettingScriptTest::disconnect_by_index_disconnects_only_the_named_gripper() {
    QVERIFY(connect_on_script_thread(GripperCommunication::CC_TCP_CLIENT,
                                     tcp(0, simulator_.tcp_port(FIRST))));
    QVERIFY(connect_on_script_thread(GripperCommunication::CC_TCP_CLIENT,
                                     tcp(1, simulator_.tcp_port(SECOND))));
    QVERIFY(page_test::pick(page_->findChild<QComboBox*>("combo_box_node_"), 0));
    GripperSettingWidget* setting = GripperSettingWidget::instance();
    QVERIFY(on_script_thread([&] { return setting->disconnect_gripper(1); }));
    QVERIFY(nullptr == driver_of(1));
    QVERIFY(nullptr != driver_of(0));
    QCOMPARE(page_->findChild<QComboBox*>("combo_box_node_")->currentIndex(), 1);
    QVERIFY(!on_script_thread([&] { return setting->disconnect_gripper(1); }));
    QVERIFY(!on_script_thread([&] { return setting->disconnect_gripper(7); }));
    QVERIFY(!on_script_thread([&] { return setting->disconnect_gripper(-1); }));
    QVERIFY(nullptr != driver_of(0));
}

void GripperSettingScriptTest::debug_connect_uses_the_last_serial_port() {
    QVERIFY(connect_on_script_thread(GripperCommunication::CC_USB_SERIALPORT,
                                     {"2", link_to_modbus().toStdString()}));
    QVERIFY(nullptr != driver_of(2));
    QVERIFY(
        on_script_thread([] { return GripperSettingWidget::instance()->disconnect_gripper(); }));
    QVERIFY(nullptr == driver_of(2));
    QVERIFY(
        on_script_thread([] { return GripperSettingWidget::instance()->connect_gripper_debug(); }));
    QVERIFY(nullptr != driver_of(2));
    QCOMPARE(driver_of(2)->get_communication_connection(), GripperCommunication::CC_USB_SERIALPORT);
    QVERIFY(
        on_script_thread([] { return GripperSettingWidget::instance()->connect_gripper_debug(); }));
}

void GripperSettingScriptTest::operations_on_the_interface_thread_run_in_place() {
    GripperSettingWidget* setting = GripperSettingWidget::instance();
    QVERIFY(setting->connect_gripper(GripperCommunication::CC_TCP_CLIENT,
                                     tcp(3, simulator_.tcp_port(SECOND))));
    QVERIFY(nullptr != driver_of(3));
    QVERIFY(setting->disconnect_gripper(3));
    QVERIFY(nullptr == driver_of(3));
    QVERIFY(setting->scan_gripper());
}

// The host deletes the page while script commands wait on its operations: both return false and
// touch nothing of the freed page (the sanitizer builds watch).
void GripperSettingScriptTest::deleting_the_page_ends_a_waiting_connect_or_disconnect() {
    QVERIFY(connect_on_script_thread(GripperCommunication::CC_TCP_CLIENT,
                                     tcp(0, simulator_.tcp_port(SECOND))));
    simulator_.set_fault(FIRST, gripper_sim::Fault::silent);
    GripperSettingWidget* setting = GripperSettingWidget::instance();
    std::atomic<int> connected(-1);
    std::atomic<int> disconnected(-1);
    std::thread connect([&] {
        connected = setting->connect_gripper(GripperCommunication::CC_TCP_CLIENT,
                                             tcp(1, simulator_.tcp_port(FIRST)));
    });
    const QLabel* label = setting->findChild<QLabel*>("label_status_");
    QTRY_COMPARE(label->text(), QStringLiteral("Connecting"));
    // Queued behind the silent connect on the link worker.
    std::thread disconnect([&] { disconnected = setting->disconnect_gripper(0); });
    QTRY_COMPARE(label->text(), QStringLiteral("Disconnecting"));
    delete page_;
    page_ = nullptr;
    QTRY_VERIFY(-1 != connected && -1 != disconnected);
    connect.join();
    disconnect.join();
    QCOMPARE(connected.load(), 0);
    QCOMPARE(disconnected.load(), 0);
}

QTEST_MAIN(GripperSettingScriptTest)
#include "gripper_setting_script_test.moc"
