// Script transcripts against simulated grippers, as a robot program sends them: each command
// from a script thread of its own while this thread runs the interface's event loop. Gripper 1
// speaks Modbus RTU on a pseudo-terminal that a scan finds through "/tmp/pts"; gripper 2 speaks
// frames over loopback TCP.
#include <QApplication>
#include <QComboBox>
#include <QtTest>

#include <memory>

#include "tests/test_support/plugin_host.h"
#include "tests/test_support/qt_log_capture.h"
#include "tests/test_support/script_thread.h"
#include "tests/test_support/wait_until.h"
#include "tools/gripper_simulator/simulator.h"

namespace {

const Reply kAccepted{true, QStringLiteral("i | 0")};
const Reply kYes{true, QStringLiteral("i | 1")};
const int kStrokeMs = 3000;

gripper_sim::GripperOptions options_with_max(int position_max) {
    gripper_sim::GripperOptions options;
    options.init_ms = 50;
    options.full_stroke_ms = kStrokeMs;
    options.position_max = position_max;
    return options;
}

}  // namespace

class PluginScriptTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void connectsOverUsbAndTcpAndActivatesBoth();
    void blockingMovesReturnOnArrivalWithTheirFinalValues();
    void onlyAResumeOrAnArrivalEndsAWait();
    void stopEndsAWaitWhileTheGripperHangs();
    void disconnectsTheNamedGripperOnly();
    void cleanupTestCase();

private:
    Reply send(const QString& line) { return send_script(host_.plugin(), line); }
    std::unique_ptr<ScriptThread> start(const QString& line) {
        return std::unique_ptr<ScriptThread>(new ScriptThread(host_.plugin(), line));
    }
    bool moving(int gripper) const { return 0 == simulator_.snapshot(gripper).motion_state; }
    // What a started command answered once it returned within timeout_ms.
    static Reply finish(const ScriptThread& script, int timeout_ms = 15000) {
        return script.wait(timeout_ms) ? Reply{script.ok(), script.answer()} : Reply{false, ""};
    }
    QString tcp_line(const char* command) const {
        return QStringLiteral("%1|2,127.0.0.1:%2").arg(command).arg(simulator_.tcp_port(tcp_));
    }

    PluginHost host_;
    QWidget* page_ = nullptr;
    gripper_sim::Simulator simulator_;
    int usb_ = 0;
    int tcp_ = 0;
};

void PluginScriptTest::initTestCase() {
    QtLogCapture::install();
    usb_ = simulator_.add_modbus_pty(options_with_max(1000));
    tcp_ = simulator_.add_custom_tcp(options_with_max(100));
    QVERIFY(usb_ > 0 && tcp_ > 0);
    simulator_.set_announce_file(usb_, "/tmp/pts");
    QVERIFY2(host_.load(), qPrintable(host_.error()));
    page_ = host_.plugin()->createUI(nullptr);
    QVERIFY(page_);
}

// The scan is queued on the interface thread; once it has run, a USB connect to any
// pseudo-terminal path goes to the one the scan read from "/tmp/pts", and the page shows it.
// A second gripper connects over TCP; both are activated.
void PluginScriptTest::connectsOverUsbAndTcpAndActivatesBoth() {
    QCOMPARE(send("gripper_scan"), kAccepted);
    QCoreApplication::sendPostedEvents();
    QtLogCapture::clear();
    QCOMPARE(send("gripper_connect_usb|1,/dev/pts/999"), kAccepted);
    QCOMPARE(send("gripper_isConnect|1"), kYes);
    const QString scanned = QString::fromStdString(simulator_.endpoint(usb_));
    QVERIFY(QtLogCapture::contains("D serialport_ = " + scanned));
    QVERIFY(QtLogCapture::contains("W retValueOrError = i | 1"));
    QVERIFY(!QtLogCapture::contains("W !mode_connect(USB_SERIAL, connect_parameters)"));
    QCOMPARE(page_->findChild<QComboBox*>("combo_box_type_")->currentText(), QStringLiteral("USB"));
    QCOMPARE(page_->findChild<QComboBox*>("combo_box_usb_")->currentText(), scanned);
    QCOMPARE(send(tcp_line("gripper_connect_tcp")), kAccepted);
    QCOMPARE(send("gripper_isConnect|2"), kYes);
    QCOMPARE(send("gripper_isConnect|1"), kYes);
    QVERIFY(host_.plugin()->initParms());
    QCOMPARE(send("gripper_isActivate|1"), kAccepted);
    QCOMPARE(send("gripper_active|1"), kAccepted);
    QCOMPARE(send("gripper_active|2"), kAccepted);
    QTRY_COMPARE_WITH_TIMEOUT(send("gripper_isActivate|1"), kYes, 10000);
    QTRY_COMPARE_WITH_TIMEOUT(send("gripper_isActivate|2"), kYes, 10000);
}

// Both grippers move at once from two script threads; each command returns once its gripper
// has arrived, and a query right after it answers the position that move ended at. The block
// flag "false" waits as well. A move into an object returns once the object is detected.
void PluginScriptTest::blockingMovesReturnOnArrivalWithTheirFinalValues() {
    const auto first = start("set_gripper_position|1,50,true");
    const auto second = start("set_2_finger_gripper_param|2,30,40,80,false");
    QCOMPARE(finish(*first), kAccepted);
    QCOMPARE(send("get_gripper_position|1"), (Reply{true, QStringLiteral("i|50")}));
    QCOMPARE(simulator_.snapshot(usb_).position, 500);
    QCOMPARE(finish(*second), kAccepted);
    QCOMPARE(send("get_gripper_position|2"), (Reply{true, QStringLiteral("i|30")}));
    QCOMPARE(send("get_gripper_status|1"), kYes);
    QCOMPARE(send("gripper_isArrive|1"), kYes);
    QCOMPARE(send("gripper_isGrip|1"), kAccepted);
    simulator_.set_object(usb_, 300);
    QCOMPARE(send("set_gripper_position|1,0,true"), kAccepted);
    QCOMPARE(send("get_gripper_status|1"), (Reply{true, QStringLiteral("i | 2")}));
    QCOMPARE(send("gripper_isGrip|1"), kYes);
    QCOMPARE(send("get_gripper_position|1"), (Reply{true, QStringLiteral("i|30")}));
}

// While the program is paused the command waits whatever the gripper does: pushing on into the
// held object it reads "detected", then "dropped", which ends it on resume.
void PluginScriptTest::onlyAResumeOrAnArrivalEndsAWait() {
    QVERIFY(host_.plugin()->pausePlugin());
    const auto script = start("set_gripper_position|1,10,true");
    QTRY_COMPARE_WITH_TIMEOUT(simulator_.snapshot(usb_).target, 100, 10000);
    QTRY_COMPARE_WITH_TIMEOUT(send("get_gripper_status|1"), (Reply{true, "i | 2"}), 10000);
    simulator_.drop(usb_);
    QTRY_COMPARE_WITH_TIMEOUT(send("get_gripper_status|1"), (Reply{true, "i | 3"}), 10000);
    QVERIFY(!script->done());
    QVERIFY(host_.plugin()->continuePlugin());
    QCOMPARE(finish(*script, 2000), kAccepted);
    QCOMPARE(send("gripper_isDrop|1"), kYes);
    // A gripper that falls silent mid-move does not make the robot go on: the command waits until
    // the link answers again and reports the arrival.
    QtLogCapture::clear();
    const auto silent = start("set_gripper_position|1,100,true");
    QTRY_VERIFY_WITH_TIMEOUT(moving(usb_), 5000);
    simulator_.set_fault(usb_, gripper_sim::Fault::silent);
    QTRY_VERIFY_WITH_TIMEOUT(
        QtLogCapture::contains("D private_->communication_status_ = CS_READ_EXCEPTION"), 10000);
    QVERIFY(!silent->done());
    simulator_.set_fault(usb_, gripper_sim::Fault::none);
    QCOMPARE(finish(*silent), kAccepted);
    QCOMPARE(send("get_gripper_position|1"), (Reply{true, QStringLiteral("i|100")}));
}

// With the serial gripper silent mid-move, a stop ends the wait before the unanswered exchange
// sends its next request: the command's way out does not wait for the driver lock it holds.
// While stopped, a move is sent and not waited for.
void PluginScriptTest::stopEndsAWaitWhileTheGripperHangs() {
    const auto script = start("set_gripper_position|1,0,true");
    QTRY_VERIFY_WITH_TIMEOUT(moving(usb_), 5000);
    simulator_.set_fault(usb_, gripper_sim::Fault::silent);
    QtLogCapture::clear();
    const QRegularExpression pass_or_end(QStringLiteral("write_stream|!set_position"));
    QVERIFY(wait_until([&] { return !QtLogCapture::lines().filter(pass_or_end).isEmpty(); }));
    QVERIFY(host_.plugin()->stopPlugin());
    QCOMPARE(finish(*script, 5000), kAccepted);
    const QStringList order = QtLogCapture::lines().filter(pass_or_end);
    QVERIFY(order.size() >= 2);
    QVERIFY(order.at(0).startsWith(QStringLiteral("D write_stream")));
    QCOMPARE(order.at(1), QStringLiteral("W !set_position(position)"));
    simulator_.set_fault(usb_, gripper_sim::Fault::none);
    const QStringList stop_lines{
        "D TemplatePlugin::RobotScriptStatus::RSS_STOP == robot_script_status_",
        "W !set_position(position)"};
    QtLogCapture::clear();
    QCOMPARE(send("set_gripper_position|1,0,true"), kAccepted);
    QCOMPARE(QtLogCapture::lines().filter(QRegularExpression("RSS_STOP|set_position")), stop_lines);
    QVERIFY(host_.plugin()->initParms());
    QTRY_COMPARE_WITH_TIMEOUT(send("get_gripper_position|1"), (Reply{true, QStringLiteral("i|0")}),
                              10000);
}

// A disconnect leaves the driver without a state (GS_UNDEFINE), which ends the wait. The page
// shows gripper 2 after its connect; "gripper_disconnect|1" still disconnects 1, and the page
// then shows gripper 1.
void PluginScriptTest::disconnectsTheNamedGripperOnly() {
    const auto script = start("set_gripper_position|2,100,true");
    QTRY_VERIFY_WITH_TIMEOUT(moving(tcp_), 5000);
    QtLogCapture::clear();
    QCOMPARE(send("gripper_disconnect|2"), kAccepted);
    QCOMPARE(finish(*script, 2000), kAccepted);
    QVERIFY(QtLogCapture::contains("W !set_position(position)"));
    QCOMPARE(send("gripper_isConnect|2"), kAccepted);
    QCOMPARE(send("gripper_isActivate|1"), kYes);
    QCOMPARE(send(tcp_line("gripper_connect_tcp")), kAccepted);
    QCOMPARE(send("gripper_isConnect|2"), kYes);
    QCOMPARE(page_->findChild<QComboBox*>("combo_box_node_")->currentIndex(), 1);
    QCOMPARE(send("gripper_disconnect|1"), kAccepted);
    QCOMPARE(page_->findChild<QComboBox*>("combo_box_node_")->currentIndex(), 0);
    QCOMPARE(send("gripper_isConnect|1"), kAccepted);
    QCOMPARE(send("gripper_isConnect|2"), kYes);
}

void PluginScriptTest::cleanupTestCase() {
    host_.plugin()->stopPlugin();
    send("gripper_disconnect|1");
    send("gripper_disconnect|2");
    delete page_;
}

QTEST_MAIN(PluginScriptTest)
#include "plugin_script_test.moc"
