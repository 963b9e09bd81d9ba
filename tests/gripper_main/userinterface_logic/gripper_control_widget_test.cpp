// The Control tab against simulated Modbus grippers on real pseudo-terminals, driven by clicks.
#include <QPushButton>
#include <QRadioButton>
#include <QtTest>

#include <cmath>
#include <thread>

#include "gripper_main/userinterface_logic/gripper_control_widget/gripper_control_widget.h"
#include "tests/test_support/page_test_support.h"

using page_test::driver_of;

namespace {

const int QUICK = 1;  // gripper 1: activates in 150 ms
const int SLOW = 2;   // gripper 2: activates in 1.5 s

// The register value of a position in percent of the stroke (Modbus: 0.1 % per step).
int register_of(double position) {
    return static_cast<int>(std::lround(position * 10.0));
}

}  // namespace

class GripperControlWidgetTest : public page_test::PageTest {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void status_follows_the_gripper();
    void controls_disabled_while_activating_or_turning();
    void clicks_and_holds_step_the_gripper();

private:
    bool move_to(double position);
    // Every control enabled or disabled, with the clamp and loosen images of that state.
    bool controls_shown(bool enabled);
    QTimer* repeat_timer();
    QLineEdit* position_field() { return find<QLineEdit>("line_edit_position_"); }

    GripperControlWidget* control_ = nullptr;
    QLabel* status_ = nullptr;
};

void GripperControlWidgetTest::initTestCase() {
    gripper_sim::GripperOptions options;
    options.init_ms = 150;
    options.full_stroke_ms = 400;
    QCOMPARE(simulator_.add_modbus_pty(options), QUICK);
    options.init_ms = 1500;
    QCOMPARE(simulator_.add_modbus_pty(options), SLOW);
    QVERIFY(show_page());
    scope_ = control_ = page_->findChild<GripperControlWidget*>();
    QVERIFY(nullptr != control_);
    status_ = find<QLabel>("label_status_");
}

// Gripper 1 connected as device 0 and shown.
void GripperControlWidgetTest::init() {
    QVERIFY(connect_gripper(0, QUICK));
    QTRY_VERIFY(status_->text() != QStringLiteral("Disconnected"));
}

void GripperControlWidgetTest::cleanup() {
    page_test::disconnect_all();
    QTRY_COMPARE(status_->text(), QStringLiteral("Disconnected"));
    GripperGlobal::instance().set_program_state(GripperGlobal::PS_STOPPED);
    for (int gripper = QUICK; gripper <= SLOW; ++gripper) {
        simulator_.set_fault(gripper, gripper_sim::Fault::none);
        simulator_.set_object(gripper, -1);
    }
    page_test::pick(find<QComboBox>("combo_box_node_2"), 0);
}

bool GripperControlWidgetTest::move_to(double position) {
    return driver_of(0)->set_position(static_cast<float>(position)) && QTest::qWaitFor([&] {
               const gripper_sim::GripperSnapshot state = simulator_.snapshot(QUICK);
               return register_of(position) == state.position && 1 == state.motion_state;
           }) &&
           QTest::qWaitFor(
               [&] { return position_field()->text() == QString::number(position, 'f', 1); });
}

bool GripperControlWidgetTest::controls_shown(bool enabled) {
    for (const char* group : {"position", "force", "speed"}) {
        for (const char* part : {"push_button_%1_min_", "push_button_%1_decrease_", "line_edit_%1_",
                                 "push_button_%1_increase_", "push_button_%1_max_"}) {
            const QString name = QString::fromLatin1(part).arg(QLatin1String(group));
            if (control_->findChild<QWidget*>(name)->isEnabled() != enabled) {
                return false;
            }
        }
    }
    const char* state = enabled ? "OFF" : "ON";
    const auto shows = [this](const char* button, const QString& image) {
        const QSize size(87, 63);
        return find<QPushButton>(button)->icon().pixmap(size).toImage() ==
               QIcon(QPixmap(QStringLiteral(":/Image/Image/") + image)).pixmap(size).toImage();
    };
    return find<QWidget>("radio_button_object_detected_")->isEnabled() == enabled &&
           shows("push_button_position_min_", QStringLiteral("B_Clamp_%1.png").arg(state)) &&
           shows("push_button_position_max_", QStringLiteral("B_Loosen_%1.png").arg(state));
}

QTimer* GripperControlWidgetTest::repeat_timer() {
    for (QTimer* timer : control_->findChildren<QTimer*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (GripperControlWidget::REPEAT_INTERVAL_MS == timer->interval()) {
            return timer;
        }
    }
    return nullptr;
}

// The status, the detection indicator and the fields follow the gripper.
void GripperControlWidgetTest::status_follows_the_gripper() {
    page_test::LabelHistory history(status_);
    QTest::mouseClick(page_->findChild<QPushButton*>("push_button_activate_"), Qt::LeftButton);
    QTRY_VERIFY(history.saw_in_order({"Activating", "Activated"}));
    // The indicator shows a state: clicks never change it, and it takes no focus.
    QRadioButton* indicator = find<QRadioButton>("radio_button_object_detected_");
    QTRY_VERIFY(indicator->isEnabled());
    QTest::mouseClick(indicator, Qt::LeftButton);
    QVERIFY(!indicator->isChecked());
    QCOMPARE(indicator->focusPolicy(), Qt::NoFocus);
    history.clear();
    click("push_button_position_max_");
    QTRY_VERIFY(history.saw_in_order({"Moving", "Arrived"}));
    QTRY_COMPARE(position_field()->text(), QStringLiteral("100.0"));
    QCOMPARE(find<QLineEdit>("line_edit_speed_")->text(), QStringLiteral("100"));
    simulator_.set_object(QUICK, 400);
    history.clear();
    click("push_button_position_min_");
    QTRY_VERIFY(history.saw_in_order({"Moving", "Detected"}));
    QTRY_VERIFY(indicator->isChecked());
    QTest::mouseClick(indicator, Qt::LeftButton);
    QVERIFY(indicator->isChecked());
    QTRY_COMPARE(position_field()->text(), QStringLiteral("40.0"));
    simulator_.drop(QUICK);
    QTRY_COMPARE(status_->text(), QStringLiteral("Dropped"));
    QVERIFY(!indicator->isChecked());
    QCOMPARE(status_->property("tone").toString(), QStringLiteral("ok"));
    // A silent gripper leaves the status as it was; a vanished port shows as a fault.
    simulator_.set_fault(QUICK, gripper_sim::Fault::silent);
    QTRY_COMPARE_WITH_TIMEOUT(driver_of(0)->get_communication_status(),
                              GripperCommunication::CS_READ_EXCEPTION, 10000);
    click("push_button_force_min_");
    click("push_button_position_increase_");
    QCOMPARE(status_->text(), QStringLiteral("Dropped"));
    simulator_.set_fault(QUICK, gripper_sim::Fault::vanish);
    QTRY_COMPARE_WITH_TIMEOUT(status_->text(), QStringLiteral("Write EXCP"), 10000);
    QCOMPARE(status_->property("tone").toString(), QStringLiteral("fault"));
}

void GripperControlWidgetTest::controls_disabled_while_activating_or_turning() {
    QVERIFY(connect_gripper(1, SLOW));
    QVERIFY(page_test::pick(find<QComboBox>("combo_box_node_2"), 1));
    QTRY_COMPARE(status_->text(), QStringLiteral("Inactivate"));
    QVERIFY(driver_of(1)->set_activate());
    QTRY_COMPARE(status_->text(), QStringLiteral("Activating"));
    QVERIFY(controls_shown(false));
    QTRY_COMPARE_WITH_TIMEOUT(status_->text(), QStringLiteral("Activated"), 10000);
    QVERIFY(controls_shown(true));
    // No simulated gripper turns: the state is set with the update loop stopped.
    driver_of(1)->stop_loop_update();
    driver_of(1)->set_gripper_status(GripperLogicControl::GS_TURNING);
    QTRY_COMPARE(status_->text(), QStringLiteral("Turning"));
    QVERIFY(controls_shown(false));
    // While a robot program runs, set from its own thread, both pages are locked.
    for (const bool running : {true, false}) {
        std::thread hook([running] {
            GripperGlobal::instance().set_program_state(running ? GripperGlobal::PS_RUNNING
                                                                : GripperGlobal::PS_STOPPED);
        });
        hook.join();
        QTRY_COMPARE(control_->isEnabled(), !running);
        QTRY_COMPARE(GripperSettingWidget::instance()->isEnabled(), !running);
    }
}

// A short click steps the gripper once; a hold steps the field every 25 ms after the hold
// delay, never past a limit, and sends the value on release.
void GripperControlWidgetTest::clicks_and_holds_step_the_gripper() {
    QVERIFY(driver_of(0)->set_activate());
    QTRY_VERIFY(GripperLogicControl::GS_ACTIVATED == driver_of(0)->get_gripper_status() ||
                GripperLogicControl::GS_ARRIVED == driver_of(0)->get_gripper_status());
    QVERIFY(move_to(50.0));
    click("push_button_position_decrease_");
    QTRY_COMPARE(simulator_.snapshot(QUICK).target, register_of(49.9));
    QTRY_COMPARE(position_field()->text(), QStringLiteral("49.9"));
    click("push_button_position_increase_");
    QTRY_COMPARE(simulator_.snapshot(QUICK).target, register_of(50.0));
    click("push_button_force_decrease_");
    QTRY_COMPARE(simulator_.snapshot(QUICK).force, 99);
    QTRY_COMPARE(find<QLineEdit>("line_edit_force_")->text(), QStringLiteral("99"));
    click("push_button_speed_decrease_");
    QTRY_COMPARE(simulator_.snapshot(QUICK).speed, 99);
    click("push_button_speed_min_");
    QTRY_COMPARE(simulator_.snapshot(QUICK).speed, driver_of(0)->get_speed_min());
    click("push_button_force_max_");
    QTRY_COMPARE(simulator_.snapshot(QUICK).force, driver_of(0)->get_force_max());

    QVERIFY(move_to(50.0));
    QElapsedTimer clock;
    QList<QPair<qint64, double>> steps;  // when the field changed, and to what
    const QMetaObject::Connection recording =
        connect(position_field(), &QLineEdit::textChanged,
                [&](const QString& text) { steps << qMakePair(clock.elapsed(), text.toDouble()); });
    QPushButton* decrease = find<QPushButton>("push_button_position_decrease_");
    clock.start();
    QTest::mousePress(decrease, Qt::LeftButton);
    QTRY_VERIFY(steps.size() >= 8);
    QCOMPARE(simulator_.snapshot(QUICK).target, register_of(50.0));
    const double shown = position_field()->text().toDouble();
    disconnect(recording);
    QTest::mouseRelease(decrease, Qt::LeftButton);
    QTRY_COMPARE(simulator_.snapshot(QUICK).target, register_of(shown - 0.1));
    // Step k comes on the repeat timer's tick k + 1, started once the hold delay has passed;
    // a coarse timer may fire up to 5 % early, a late tick lets the next one come sooner.
    for (int step = 0; step < steps.size(); ++step) {
        const double earliest = 0.95 * (GripperControlWidget::PRESS_DELAY_MS +
                                        GripperControlWidget::REPEAT_INTERVAL_MS * (step + 1));
        QVERIFY2(steps.at(step).first >= earliest - 1, qPrintable(QString::number(step)));
        QCOMPARE(steps.at(step).second, (step ? steps.at(step - 1).second : 50.0) - 1.0);
    }

    QVERIFY(move_to(2.0));
    QVERIFY(driver_of(0)->set_force(97));
    QTRY_COMPARE(find<QLineEdit>("line_edit_force_")->text(), QStringLiteral("97"));
    QSignalSpy ticks(repeat_timer(), SIGNAL(timeout()));
    const char* const holds[][3] = {
        {"push_button_position_decrease_", "line_edit_position_", "0.0"},
        {"push_button_force_increase_", "line_edit_force_", "100"}};
    for (const auto& hold : holds) {
        QTest::mousePress(find<QPushButton>(hold[0]), Qt::LeftButton);
        QTRY_COMPARE(find<QLineEdit>(hold[1])->text(), QString::fromLatin1(hold[2]));
        const int ticks_at_the_limit = ticks.count();
        QTRY_VERIFY(ticks.count() >= ticks_at_the_limit + 4);
        QCOMPARE(find<QLineEdit>(hold[1])->text(), QString::fromLatin1(hold[2]));
        QTest::mouseRelease(find<QPushButton>(hold[0]), Qt::LeftButton);
    }
    QTRY_COMPARE(simulator_.snapshot(QUICK).position, 0);
    QTRY_COMPARE(simulator_.snapshot(QUICK).force, 100);
    QVERIFY(!repeat_timer()->isActive());
}

QTEST_MAIN(GripperControlWidgetTest)
#include "gripper_control_widget_test.moc"
