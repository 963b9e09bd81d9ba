// Automatic reconnect seen by a robot program and the Setting page, with the plug-in loaded as
// the pendant loads it. Gripper 1 speaks Modbus RTU on a pseudo-terminal reached through a
// symbolic link (as /dev/serial/by-id names are) and gets "Reconnect automatically" ticked;
// gripper 2 speaks frames over loopback TCP with the box clear. Both devices vanish, then come
// back under the same path and port.
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

#include "tests/test_support/plugin_host.h"
#include "tests/test_support/qt_log_capture.h"
#include "tests/test_support/script_thread.h"
#include "tools/gripper_simulator/simulator.h"

class PluginReconnectTest : public QObject {
    Q_OBJECT

private slots:
    void lostGripperEndsItsMoveAndReconnectsOnlyWhenTicked();
    void cleanupTestCase() {
        host_.plugin()->stopPlugin();
        send("gripper_disconnect|1");
        send("gripper_disconnect|2");
        delete page_;
    }

private:
    Reply send(const QString& line) { return send_script(host_.plugin(), line); }
    QString label() const { return page_->findChild<QLabel*>("label_status_")->text(); }

    const Reply no_{true, QStringLiteral("i | 0")};
    const Reply yes_{true, QStringLiteral("i | 1")};
    QTemporaryDir folder_;
    PluginHost host_;
    QWidget* page_ = nullptr;
    gripper_sim::Simulator simulator_;
};

void PluginReconnectTest::lostGripperEndsItsMoveAndReconnectsOnlyWhenTicked() {
    QtLogCapture::install();
    QSettings(QStringLiteral("orlape"), QStringLiteral("gripper_plugin")).clear();
    gripper_sim::GripperOptions options;
    options.init_ms = 50;
    options.full_stroke_ms = 3000;
    QCOMPARE(simulator_.add_modbus_pty(options), 1);
    options.position_max = 100;
    QCOMPARE(simulator_.add_custom_tcp(options), 2);
    QVERIFY2(host_.load(), qPrintable(host_.error()));
    page_ = host_.plugin()->createUI(nullptr);
    QVERIFY(page_);
    // Off and 100 ms by default; ticked for gripper 1 (the page's current one) and stored.
    QCheckBox* box = page_->findChild<QCheckBox*>("check_box_reconnect_");
    QComboBox* period = page_->findChild<QComboBox*>("combo_box_move_period_");
    QVERIFY(box && period && !box->isChecked());
    QCOMPARE(period->currentText(), QStringLiteral("100 ms"));
    QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, QPoint(4, box->height() / 2));
    QVERIFY(QSettings(QStringLiteral("orlape"), QStringLiteral("gripper_plugin"))
                .value(QStringLiteral("gripper_0/reconnect"))
                .toBool());
    const QString link = folder_.filePath(QStringLiteral("gripper1"));
    simulator_.set_link(1, link.toStdString());
    QCOMPARE(send(QStringLiteral("gripper_connect_tcp|2,127.0.0.1:%1").arg(simulator_.tcp_port(2))),
             no_);
    QCOMPARE(send(QStringLiteral("gripper_connect_usb|1,%1").arg(link)), no_);
    QVERIFY(host_.plugin()->initParms());
    QCOMPARE(send("gripper_active|1"), no_);
    QTRY_COMPARE_WITH_TIMEOUT(send("gripper_isActivate|1"), yes_, 10000);

    // The move waiting on gripper 1 ends as for a lost gripper; then the page says
    // "Reconnecting", the program sees it disconnected and its commands fail at once.
    ScriptThread move(host_.plugin(), QStringLiteral("set_gripper_position|1,100,true"));
    QTRY_COMPARE_WITH_TIMEOUT(simulator_.snapshot(1).motion_state, 0, 10000);
    QtLogCapture::clear();
    simulator_.set_fault(1, gripper_sim::Fault::vanish);
    simulator_.set_fault(2, gripper_sim::Fault::vanish);
    QVERIFY(move.wait());
    QVERIFY(QtLogCapture::contains("W !set_position(position)"));
    QTRY_VERIFY_WITH_TIMEOUT(label().startsWith(QStringLiteral("Reconnecting")), 10000);
    QCOMPARE(send("gripper_isConnect|1"), no_);
    QCOMPARE(send("set_gripper_force|1,50"), no_);
    QVERIFY(QtLogCapture::contains("W device->gripper_abstract_control_->reconnecting()"));
    QVERIFY(QtLogCapture::contains("W !set_force(force)"));
    QTRY_COMPARE_WITH_TIMEOUT(label(), QStringLiteral("Reconnecting (2)"), 10000);

    // Gripper 1 answers again as it is (activated); gripper 2 is left alone: no try reaches it.
    simulator_.set_fault(1, gripper_sim::Fault::none);
    simulator_.set_fault(2, gripper_sim::Fault::none);
    const long tcp_frames = simulator_.snapshot(2).frames_received;
    QTRY_COMPARE_WITH_TIMEOUT(send("gripper_isConnect|1"), yes_, 15000);
    QCOMPARE(send("gripper_isActivate|1"), yes_);
    QCOMPARE(send("gripper_isConnect|2"), no_);
    QCOMPARE(simulator_.snapshot(2).frames_received, tcp_frames);
}

QTEST_MAIN(PluginReconnectTest)
#include "plugin_reconnect_test.moc"
