// The Setting page's operations for script commands, called from a second thread while the
// interface thread runs its event loop (and once on the interface thread itself), against
// simulated grippers on loopback TCP and a real pseudo-terminal.
#include <QtTest>

#include <atomic>
#include <thread>

#include "tests/test_support/log_capture.h"
#include "tests/test_support/page_test_support.h"

using page_test::driver_of;
using page_test::on_script_thread;

namespace {

const int FIRST = 1;   // frames over TCP
const int SECOND = 2;  // frames over TCP
const int MODBUS = 3;  // Modbus on a pseudo-terminal

typedef std::vector<std::string> Parameters;

}  // namespace

Q_DECLARE_METATYPE(Parameters)
Q_DECLARE_METATYPE(GripperCommunication::CommunicationConnection)

class GripperSettingScriptTest : public page_test::PageTest {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void connect_waits_for_the_driver_and_runs_in_place_on_the_ui_thread();
    void failed_connect_leaves_the_device_disconnected();
    void bad_parameter_lists_are_refused_data();
    void bad_parameter_lists_are_refused();
    void debug_connect_uses_the_last_serial_port();
    void deleting_the_page_ends_a_waiting_connect_or_disconnect();

private:
    Parameters tcp(int index, int gripper) const {
        return {std::to_string(index), "127.0.0.1", std::to_string(simulator_.tcp_port(gripper))};
    }
    bool script(const std::function<bool(GripperSettingWidget*)>& call) {
        return on_script_thread([&] { return call(GripperSettingWidget::instance()); });
    }
    bool connect_tcp(int index, int gripper) {
        const Parameters parameters = tcp(index, gripper);
        return script([&](GripperSettingWidget* page) {
            return page->connect_gripper(GripperCommunication::CC_TCP_CLIENT, parameters);
        });
    }
    bool disconnect() {
        return script([](GripperSettingWidget* page) { return page->disconnect_gripper(); });
    }
};

void GripperSettingScriptTest::initTestCase() {
    gripper_sim::GripperOptions options;
    options.position_max = 100;
    options.init_ms = 100;
    QCOMPARE(simulator_.add_custom_tcp(options), FIRST);
    QCOMPARE(simulator_.add_custom_tcp(options), SECOND);
    options.position_max = 1000;
    QCOMPARE(simulator_.add_modbus_pty(options), MODBUS);
    QVERIFY(show_page());
    scope_ = page_;
}

void GripperSettingScriptTest::cleanup() {
    page_test::disconnect_all();
    simulator_.set_fault(FIRST, gripper_sim::Fault::none);
}

void GripperSettingScriptTest::connect_waits_for_the_driver_and_runs_in_place_on_the_ui_thread() {
    GripperLogicControl* seen_at_return = nullptr;
    QVERIFY(script([&](GripperSettingWidget* page) {
        const bool result =
            page->connect_gripper(GripperCommunication::CC_TCP_CLIENT, tcp(0, FIRST));
        seen_at_return = driver_of(0);
        return result;
    }));
    QVERIFY(nullptr != seen_at_return);
    QCOMPARE(seen_at_return->get_communication_status(), GripperCommunication::CS_CONNECTED);
    QCOMPARE(find<QLineEdit>("line_edit_ip_")->text(), QStringLiteral("127.0.0.1"));
    LogCapture log;
    QVERIFY(connect_tcp(0, SECOND));
    QVERIFY(log.contains("device->gripper_abstract_control_"));
    QCOMPARE(driver_of(0), seen_at_return);
    QVERIFY(disconnect() && nullptr == driver_of(0));
    QVERIFY(!disconnect());
    GripperSettingWidget* setting = GripperSettingWidget::instance();
    QVERIFY(setting->connect_gripper(GripperCommunication::CC_TCP_CLIENT, tcp(3, SECOND)) &&
            nullptr != driver_of(3));
    QVERIFY(setting->disconnect_gripper(3) && nullptr == driver_of(3));
    QVERIFY(setting->scan_gripper());
}

// The status's tool tip tells why, in the words of the log line; a connect that works clears it.
void GripperSettingScriptTest::failed_connect_leaves_the_device_disconnected() {
    LogCapture log;
    simulator_.set_fault(FIRST, gripper_sim::Fault::silent);
    const long frames_before = simulator_.snapshot(FIRST).frames_received;
    QVERIFY(connect_tcp(1, FIRST) && nullptr == driver_of(1));
    QVERIFY(simulator_.snapshot(FIRST).frames_received > frames_before);
    QLabel* status = find<QLabel>("label_status_");
    QCOMPARE(status->text(), QStringLiteral("Disconnected"));
    QVERIFY(!status->toolTip().isEmpty() && log.contains(status->toolTip().toStdString()));
    simulator_.set_fault(FIRST, gripper_sim::Fault::none);
    QVERIFY(connect_tcp(1, FIRST) && nullptr != driver_of(1));
    QCOMPARE(status->toolTip(), QString());
}

void GripperSettingScriptTest::bad_parameter_lists_are_refused_data() {
    QTest::addColumn<GripperCommunication::CommunicationConnection>("connection");
    QTest::addColumn<Parameters>("parameters");
    QTest::addColumn<QString>("line");
    const auto tcp = GripperCommunication::CC_TCP_CLIENT;
    QTest::newRow("none") << tcp << Parameters() << "W list_parameters.empty()";
    QTest::newRow("no port") << tcp << Parameters{"0", "127.0.0.1"}
                             << "W 3 != list_parameters.size()";
    QTest::newRow("no path") << GripperCommunication::CC_USB_SERIALPORT << Parameters{"0"}
                             << "W 2 > list_parameters.size()";
    QTest::newRow("fixed port") << GripperCommunication::CC_FIXED_PORT << Parameters{"0", "x"}
                                << QString();
    QTest::newRow("index 4") << tcp << Parameters{"4", "127.0.0.1", "8888"} << "W index = 4";
    QTest::newRow("index one") << tcp << Parameters{"one", "127.0.0.1", "8888"}
                               << "W list_parameters[0] = one";
}

void GripperSettingScriptTest::bad_parameter_lists_are_refused() {
    QFETCH(GripperCommunication::CommunicationConnection, connection);
    QFETCH(Parameters, parameters);
    QFETCH(QString, line);
    LogCapture log;
    QVERIFY(!script(
        [&](GripperSettingWidget* page) { return page->connect_gripper(connection, parameters); }));
    QVERIFY(line.isEmpty() || log.count(line.toStdString()) == 1);
    for (int index = 0; index < 4; ++index) {
        QVERIFY(nullptr == driver_of(index));
    }
}

void GripperSettingScriptTest::debug_connect_uses_the_last_serial_port() {
    QVERIFY(connect_gripper(2, MODBUS));
    QVERIFY(disconnect() && nullptr == driver_of(2));
    for (int call = 0; call < 2; ++call) {
        QVERIFY(script([](GripperSettingWidget* page) { return page->connect_gripper_debug(); }) &&
                nullptr != driver_of(2));
        QCOMPARE(driver_of(2)->get_communication_connection(),
                 GripperCommunication::CC_USB_SERIALPORT);
    }
}

// The host deletes the page while script commands wait on its operations: both return false and
// touch nothing of the freed page (the sanitizer builds watch).
void GripperSettingScriptTest::deleting_the_page_ends_a_waiting_connect_or_disconnect() {
    QVERIFY(connect_tcp(0, SECOND));
    simulator_.set_fault(FIRST, gripper_sim::Fault::silent);
    GripperSettingWidget* setting = GripperSettingWidget::instance();
    std::atomic<int> connected(-1);
    std::atomic<int> disconnected(-1);
    std::thread connect([&] {
        connected = setting->connect_gripper(GripperCommunication::CC_TCP_CLIENT, tcp(1, FIRST));
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
