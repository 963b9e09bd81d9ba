// What a session is made of besides the plug-in: the private settings store, the simulated
// grippers in child processes and their control line, real grippers in their place, and the
// pictures' blank check.

#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

#include "tools/pendant_emulator/bench_page.h"
#include "tools/pendant_emulator/emulated_grippers.h"
#include "tools/pendant_emulator/emulator_options.h"
#include "tools/pendant_emulator/private_settings.h"
#include "tools/pendant_emulator/screenshot.h"

class EmulatorSessionTest : public QObject {
    Q_OBJECT

private slots:
    void settings_stay_in_the_private_folder();
    void simulated_grippers_run_as_child_processes();
    void real_grippers_or_simulators_that_do_not_start();
    void blank_pictures_are_told_apart();
};

namespace {

EmulatorOptions options(const QString& program = GRIPPER_SIM) {
    EmulatorOptions options;
    options.simulator_program = program;
    return options;
}

}  // namespace

void EmulatorSessionTest::settings_stay_in_the_private_folder() {
    QTemporaryDir user_config;
    qputenv("XDG_CONFIG_HOME", user_config.path().toUtf8());
    QString folder;
    {
        PrivateSettings settings;
        QVERIFY(settings.valid());
        folder = settings.path();
        settings.set_resolution(QSize(1280, 800));
        QCOMPARE(QSettings("orlape", "orlape_system").value("Displays/Resolution").toString(),
                 QString("1280*800"));
        QVERIFY(QFileInfo::exists(settings.path() + "/user/orlape/orlape_system.conf"));
        QVERIFY(QFileInfo(settings.shared_folder()).isDir());
    }
    QVERIFY(QDir(user_config.path()).isEmpty());
    QVERIFY(!QFileInfo::exists(folder));
}

void EmulatorSessionTest::simulated_grippers_run_as_child_processes() {
    QTemporaryDir logs;
    EmulatedGrippers grippers;
    QString error;
    QVERIFY2(grippers.start(options(), logs.path(), error), qPrintable(error));
    QCOMPARE(grippers.grippers().size(), 2);
    const BenchGripper* first = grippers.gripper(1);
    QCOMPARE(first->connect_command(), "gripper_connect_usb|1," + first->address);
    QVERIFY(first->address.startsWith("/dev/pts/") && QFileInfo::exists(first->address));
    QVERIFY(grippers.gripper(2)->address.startsWith("127.0.0.1:"));

    BenchPage bench(grippers);
    QVERIFY(bench.simulator_command(1, "state").startsWith("initialised=0 position=0"));
    QCOMPARE(bench.simulator_command(2, "object 50"), QString("ok"));
    QCOMPARE(bench.simulator_command(1, "drop"), QString("error: gripper 1 holds no object"));
    QCOMPARE(bench.simulator_command(3, "state"), QString("error: gripper 3 is not simulated"));
    QVERIFY(QFileInfo::exists(logs.filePath("gripper-sim-1.log")));
    QVERIFY(QFileInfo::exists(logs.filePath("gripper-sim-2.log")));

    grippers.stop();
    QTRY_VERIFY(!QFileInfo::exists(first->address));
    QVERIFY(bench.simulator_command(1, "state").startsWith("error: "));
}

// Real grippers take the simulators' places; a simulator that does not start is reported.
void EmulatorSessionTest::real_grippers_or_simulators_that_do_not_start() {
    EmulatorOptions real = options();
    real.usb_device = "/dev/ttyUSB7";
    real.tcp_address = "192.168.1.29:8888";
    EmulatedGrippers grippers;
    QString error;
    QVERIFY(grippers.start(real, QString(), error));
    QCOMPARE(grippers.gripper(1)->connect_command(), QString("gripper_connect_usb|1,/dev/ttyUSB7"));
    QCOMPARE(grippers.gripper(2)->connect_command(),
             QString("gripper_connect_tcp|2,192.168.1.29:8888"));
    QVERIFY(grippers.gripper(1)->simulator == nullptr && grippers.gripper(2)->simulator == nullptr);
    EmulatorOptions none = options();
    none.simulators = false;
    EmulatedGrippers empty;
    QVERIFY(empty.start(none, QString(), error) && empty.grippers().isEmpty());

    EmulatedGrippers missing;
    QVERIFY(!missing.start(options("/nonexistent/gripper-sim"), QString(), error));
    QVERIFY2(error.startsWith("cannot start /nonexistent/gripper-sim"), qPrintable(error));
    EmulatedGrippers silent;
    QVERIFY(!silent.start(options("/bin/echo"), QString(), error));
    QVERIFY2(error.contains("did not announce its port (it said \"--object 600"),
             qPrintable(error));
}

void EmulatorSessionTest::blank_pictures_are_told_apart() {
    QImage white(200, 100, QImage::Format_ARGB32);
    white.fill(Qt::white);
    QVERIFY(Screenshot::blank(white));
    QLabel label("Object detected");
    label.resize(200, 100);
    QVERIFY(!Screenshot::blank(Screenshot::take(&label)));
    QTemporaryDir folder;
    QString error;
    QWidget empty;
    empty.resize(50, 50);
    QVERIFY(!Screenshot::save(&empty, folder.filePath("empty.png"), error));
    QCOMPARE(error, "the picture " + folder.filePath("empty.png") + " is blank");
    QVERIFY(Screenshot::save(&label, folder.filePath("label.png"), error));
}

QTEST_MAIN(EmulatorSessionTest)
#include "emulator_session_test.moc"
