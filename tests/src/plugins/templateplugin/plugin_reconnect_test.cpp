// Automatic reconnect seen from a robot program and the Setting page, with the plug-in loaded as
// the pendant loads it. Gripper 1 speaks Modbus RTU on a pseudo-terminal reached through a
// symbolic link (as /dev/serial/by-id names are) and has "Reconnect automatically" ticked;
// gripper 2 speaks frames over loopback TCP and has not. Both devices vanish and come back.
#include <unistd.h>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QSettings>
#include <QtTest>

#include <memory>

#include "tests/src/plugins/templateplugin/plugin_host.h"
#include "tests/src/plugins/templateplugin/qt_log_capture.h"
#include "tests/src/plugins/templateplugin/script_thread.h"
#include "tools/gripper_simulator/simulator.h"

namespace {

const Reply kAccepted{true, QStringLiteral("i | 0")};
const Reply kYes{true, QStringLiteral("i | 1")};

gripper_sim::GripperOptions options_with_max(int position_max) {
    gripper_sim::GripperOptions options;
    options.init_ms = 50;
    options.full_stroke_ms = 3000;
    options.position_max = position_max;
    return options;
}

}  // namespace

class PluginReconnectTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void tickedBoxIsKeptAndGivenToTheConnectedGripper();
    void lostGripperEndsItsMoveAndFailsCommandsWhileReconnecting();
    void onlyTheTickedGripperIsConnectedAgain();
    void cleanupTestCase();

private:
    Reply send(const QString& line) { return send_script(host_.plugin(), line); }
    template <typename T>
    T* find(const char* name) const {
        return page_->findChild<T*>(QLatin1String(name));
    }
    QString label() const { return find<QLabel>("label_status_")->text(); }

    PluginHost host_;
    QWidget* page_ = nullptr;
    gripper_sim::Simulator simulator_;
    QString link_;
    int usb_ = 0;
    int tcp_ = 0;
};

void PluginReconnectTest::initTestCase() {
    QtLogCapture::install();
    QSettings(QStringLiteral("orlape"), QStringLiteral("gripper_plugin")).clear();
    usb_ = simulator_.add_modbus_pty(options_with_max(1000));
    tcp_ = simulator_.add_custom_tcp(options_with_max(100));
    QVERIFY(usb_ > 0 && tcp_ > 0);
    link_ = QStringLiteral("/tmp/gripper-reconnect-%1").arg(::getpid());
    simulator_.set_link(usb_, link_.toStdString());
    QVERIFY2(host_.load(), qPrintable(host_.error()));
    page_ = host_.plugin()->createUI(nullptr);
    QVERIFY(page_);
}

// The box and the period choice start off and at 100 ms; the ticked box is stored for gripper 1
// (kept across restarts) and goes with its connect.
void PluginReconnectTest::tickedBoxIsKeptAndGivenToTheConnectedGripper() {
    QCheckBox* box = find<QCheckBox>("check_box_reconnect_");
    QComboBox* period = find<QComboBox>("combo_box_move_period_");
    QVERIFY(box && period);
    QVERIFY(!box->isChecked());
    QCOMPARE(period->currentText(), QStringLiteral("100 ms"));
    QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, QPoint(4, box->height() / 2));
    QVERIFY(box->isChecked());
    QVERIFY(QSettings(QStringLiteral("orlape"), QStringLiteral("gripper_plugin"))
                .value(QStringLiteral("gripper_0/reconnect"))
                .toBool());
    QCOMPARE(
        send(QStringLiteral("gripper_connect_tcp|2,127.0.0.1:%1").arg(simulator_.tcp_port(tcp_))),
        kAccepted);
    QCOMPARE(send(QStringLiteral("gripper_connect_usb|1,%1").arg(link_)), kAccepted);
    QCOMPARE(send("gripper_isConnect|1"), kYes);
    QCOMPARE(send("gripper_isConnect|2"), kYes);
    QVERIFY(box->isChecked());
}

// The move waiting on gripper 1 ends as for a lost gripper; meanwhile the page says so, the
// gripper is not connected for the program and its commands fail at once.
void PluginReconnectTest::lostGripperEndsItsMoveAndFailsCommandsWhileReconnecting() {
    QVERIFY(host_.plugin()->initParms());
    QCOMPARE(send("gripper_active|1"), kAccepted);
    QTRY_COMPARE_WITH_TIMEOUT(send("gripper_isActivate|1"), kYes, 10000);
    ScriptThread move(host_.plugin(), QStringLiteral("set_gripper_position|1,100,true"));
    QTRY_COMPARE_WITH_TIMEOUT(simulator_.snapshot(usb_).motion_state, 0, 10000);
    QtLogCapture::clear();
    simulator_.set_fault(usb_, gripper_sim::Fault::vanish);
    simulator_.set_fault(tcp_, gripper_sim::Fault::vanish);
    QVERIFY(move.wait());
    QCOMPARE((Reply{move.ok(), move.answer()}), kAccepted);
    QVERIFY(QtLogCapture::contains("W !set_position(position)"));
    QTRY_VERIFY_WITH_TIMEOUT(label().startsWith(QStringLiteral("Reconnecting")), 10000);
    QCOMPARE(send("gripper_isConnect|1"), kAccepted);
    QCOMPARE(QtLogCapture::count("W link lost: reconnecting"), 1);
    QtLogCapture::clear();
    QCOMPARE(send("set_gripper_force|1,50"), kAccepted);
    QVERIFY(QtLogCapture::contains("W device->gripper_abstract_control_->reconnecting()"));
    QVERIFY(QtLogCapture::contains("W !set_force(force)"));
    QTRY_VERIFY_WITH_TIMEOUT(label() == QStringLiteral("Reconnecting (2)"), 10000);
}

// Gripper 1 answers again as it is (activated, arrived where it stopped); gripper 2 is left
// alone: no try reaches its device.
void PluginReconnectTest::onlyTheTickedGripperIsConnectedAgain() {
    simulator_.set_fault(usb_, gripper_sim::Fault::none);
    simulator_.set_fault(tcp_, gripper_sim::Fault::none);
    const long tcp_frames = simulator_.snapshot(tcp_).frames_received;
    QTRY_COMPARE_WITH_TIMEOUT(send("gripper_isConnect|1"), kYes, 15000);
    QCOMPARE(send("gripper_isActivate|1"), kYes);
    QCOMPARE(send("gripper_isConnect|2"), kAccepted);
    QCOMPARE(simulator_.snapshot(tcp_).frames_received, tcp_frames);
    QCOMPARE(send("set_gripper_position|1,0,true"), kAccepted);
    QCOMPARE(simulator_.snapshot(usb_).position, 0);
}

void PluginReconnectTest::cleanupTestCase() {
    host_.plugin()->stopPlugin();
    send("gripper_disconnect|1");
    send("gripper_disconnect|2");
    delete page_;
}

QTEST_MAIN(PluginReconnectTest)
#include "plugin_reconnect_test.moc"
