// The longest stall of the interface thread while the pages redraw and the operator jogs, with
// a connected gripper that answers, that goes silent, and while connecting to a silent one.
// A heartbeat timer ticks every 5 ms on the interface thread; a stall shows as a long gap
// between ticks. Run on the offscreen platform:
//   QT_QPA_PLATFORM=offscreen pages_stall_bench [SECONDS_PER_PHASE]
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "bench/pages/page_session.h"
#include "gripper_main/business_logic/gripper_global/gripper_global.h"
#include "gripper_main/userinterface_logic/gripper_control_widget/gripper_control_widget.h"
#include "gripper_main/userinterface_logic/gripper_setting_widget/gripper_setting_widget.h"
#include "gripper_main/userinterface_logic/gripper_widget/gripper_widget.h"
#include "tools/gripper_simulator/simulator.h"

using page_session::child;
using page_session::wait_for;

namespace {

const int HEARTBEAT_MS = 5;
const int REDRAW_MS = 20;
const int JOG_MS = 200;

// Gaps between heartbeat ticks, in milliseconds.
class Heartbeat {
public:
    Heartbeat() {
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, [this] {
            gaps_.push_back(clock_.nsecsElapsed() / 1e6);
            clock_.restart();
        });
    }
    void start() {
        gaps_.clear();
        clock_.start();
        timer_.start(HEARTBEAT_MS);
    }
    std::vector<double> stop() {
        timer_.stop();
        return gaps_;
    }

private:
    QTimer timer_;
    QElapsedTimer clock_;
    std::vector<double> gaps_;
};

// Redraws both pages every 20 ms and clicks a jog button of the Control page every 200 ms,
// round the position, force and speed buttons.
class Operator {
public:
    Operator(GripperControlWidget* control, GripperSettingWidget* setting) {
        for (const char* name : {"push_button_position_increase_", "push_button_force_decrease_",
                                 "push_button_position_decrease_", "push_button_speed_max_",
                                 "push_button_force_increase_", "push_button_position_max_"}) {
            buttons_.push_back(child<QPushButton>(control, name));
        }
        QObject::connect(&redraw_, &QTimer::timeout, [control, setting] {
            control->update_ui();
            setting->update_ui();
        });
        QObject::connect(&jog_, &QTimer::timeout,
                         [this] { buttons_[next_++ % buttons_.size()]->click(); });
    }
    void start() {
        redraw_.start(REDRAW_MS);
        jog_.start(JOG_MS);
    }
    void stop() {
        redraw_.stop();
        jog_.stop();
    }

private:
    QTimer redraw_;
    QTimer jog_;
    std::vector<QPushButton*> buttons_;
    size_t next_ = 0;
};

void run_for(int milliseconds) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
}

void report(const char* phase, std::vector<double> gaps) {
    if (gaps.empty()) {
        std::printf("| %-44s | no ticks |\n", phase);
        return;
    }
    std::sort(gaps.begin(), gaps.end());
    const double p99 = gaps[std::min(gaps.size() - 1, gaps.size() * 99 / 100)];
    std::printf("| %-44s | %6zu | %8.1f | %8.1f | %8.1f |\n", phase, gaps.size(),
                gaps[gaps.size() / 2], p99, gaps.back());
}

bool connect_over_usb(const QString& link) {
    std::atomic<bool> done(false);
    std::thread script([&] {
        GripperSettingWidget::instance()->connect_gripper(GripperCommunication::CC_USB_SERIALPORT,
                                                          {"0", link.toStdString()});
        done = true;
    });
    wait_for([&] { return done.load(); }, 30000);
    script.join();
    GripperDevice* device = GripperGlobal::instance().get_device(0);
    return nullptr != device && nullptr != device->gripper_abstract_control_;
}

GripperLogicControl* driver() {
    return GripperGlobal::instance().get_device(0)->gripper_abstract_control_;
}

// What the driver's waiting getter would cost this thread while the gripper is silent.
double longest_waiting_read(int milliseconds, int& calls) {
    QElapsedTimer phase;
    phase.start();
    double longest = 0.0;
    calls = 0;
    while (phase.elapsed() < milliseconds) {
        QElapsedTimer call;
        call.start();
        driver()->get_position();
        longest = std::max(longest, call.nsecsElapsed() / 1e6);
        ++calls;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    return longest;
}

}  // namespace

int main(int argc, char* argv[]) {
    const int phase_ms = (argc > 1 ? std::max(1, std::atoi(argv[1])) : 5) * 1000;
    QTemporaryDir settings_folder;
    page_session::use_resolution(settings_folder, QStringLiteral("1024*768"));
    QApplication application(argc, argv);
    gripper_sim::Simulator simulator;
    gripper_sim::GripperOptions options;
    options.init_ms = 100;
    const int gripper = simulator.add_modbus_pty(options);
    const QString link = settings_folder.filePath(QStringLiteral("ttyGripper"));
    QFile::link(QString::fromStdString(simulator.endpoint(gripper)), link);

    GripperWidget page;
    page.resize(1024, 768);
    page.show();
    GripperControlWidget* control = page.findChild<GripperControlWidget*>();
    GripperSettingWidget* setting = GripperSettingWidget::instance();
    if (!connect_over_usb(link) || !driver()->set_activate()) {
        std::fprintf(stderr, "cannot connect to the simulated gripper\n");
        return 1;
    }
    wait_for([] { return GripperLogicControl::GS_ACTIVATED == driver()->get_gripper_status(); });

    Heartbeat heartbeat;
    Operator jogging(control, setting);
    std::printf(
        "Interface thread: a heartbeat every %d ms, both pages redrawn every %d ms, a jog "
        "click every %d ms; %d s per phase.\n\n",
        HEARTBEAT_MS, REDRAW_MS, JOG_MS, phase_ms / 1000);
    std::printf("| %-44s | %6s | %8s | %8s | %8s |\n", "phase", "ticks", "median", "p99",
                "longest");
    std::printf("|%s|-------:|---------:|---------:|---------:|\n", std::string(46, '-').c_str());
    jogging.start();
    heartbeat.start();
    run_for(phase_ms);
    report("gripper answering: gap between ticks, ms", heartbeat.stop());

    simulator.set_fault(gripper, gripper_sim::Fault::silent);
    heartbeat.start();
    run_for(phase_ms);
    report("gripper silent: gap between ticks, ms", heartbeat.stop());
    jogging.stop();

    child<QPushButton>(setting, "push_button_disconnect_")->click();
    wait_for([] { return nullptr == driver(); }, 30000);
    heartbeat.start();
    child<QPushButton>(setting, "push_button_connect_")->click();
    QLabel* status = child<QLabel>(setting, "label_status_");
    run_for(200);
    wait_for([status] { return status->text() != QStringLiteral("Connecting"); }, 60000);
    report("connecting to the silent gripper: gap, ms", heartbeat.stop());

    simulator.set_fault(gripper, gripper_sim::Fault::none);
    child<QPushButton>(setting, "push_button_connect_")->click();
    wait_for([] { return nullptr != driver(); });
    simulator.set_fault(gripper, gripper_sim::Fault::silent);
    int calls = 0;
    const double waiting = longest_waiting_read(phase_ms, calls);
    std::printf(
        "\nFor comparison, the driver's waiting get_position() called on this thread while "
        "the gripper is silent: longest %.1f ms over %d calls.\n",
        waiting, calls);
    simulator.set_fault(gripper, gripper_sim::Fault::none);
    return 0;
}
