// Screenshots of both tabs of the gripper page, connected to two simulated grippers, at the
// pendant resolution given:
//   pages_screenshots FOLDER RESOLUTION NAME [CATALOGUE]   (e.g. docs/images "1280*800" 1280x800)
// writes FOLDER/pages-NAME-control.png and FOLDER/pages-NAME-setting.png. Run it on a screen at
// least as large as the resolution (e.g. under xvfb-run), so that the resolution is taken. A
// catalogue (.qm file) is installed once the grippers have reached their states, while the page
// is shown.
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTranslator>

#include <atomic>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "bench/pages/page_session.h"
#include "gripper_main/userinterface_logic/gripper_control_widget/gripper_control_widget.h"
#include "gripper_main/userinterface_logic/gripper_setting_widget/gripper_setting_widget.h"
#include "gripper_main/userinterface_logic/gripper_widget/gripper_widget.h"
#include "src/plugins/templateplugin/common/common.h"
#include "tools/gripper_simulator/simulator.h"

using page_session::child;
using page_session::wait_for;

namespace {

// Time for the page's layouts to settle after a change of language.
const int SETTLE_MS = 300;

// Connects registry entry index from a second thread, as a script command does.
bool connect_like_a_script(GripperCommunication::CommunicationConnection connection,
                           const std::vector<std::string>& parameters) {
    std::atomic<bool> done(false);
    bool connected = false;
    std::thread script([&] {
        connected = GripperSettingWidget::instance()->connect_gripper(connection, parameters);
        done = true;
    });
    wait_for([&] { return done.load(); }, 20000);
    script.join();
    return connected;
}

bool reach(QWidget* page, const char* button, QLabel* status, const char* text) {
    child<QPushButton>(page, button)->click();
    return wait_for([&] { return status->text() == QLatin1String(text); });
}

void select_on_setting_page(int index) {
    GripperSettingWidget* setting = GripperSettingWidget::instance();
    child<QComboBox>(setting, "combo_box_node_")->setCurrentIndex(index);
    setting->on_combo_box_node__activated(QString::number(index + 1));
}

bool save(QWidget* page, const QString& path) {
    const bool saved = page->grab().save(path);
    std::printf("%s %s\n", saved ? "wrote" : "cannot write", path.toLocal8Bit().constData());
    return saved;
}

// Gripper 1 (Modbus, reached through a link to its pseudo-terminal) holds an object on the
// Control tab; gripper 2 (frames over TCP) is activated on the Setting tab.
bool set_the_scene(QWidget* page, gripper_sim::Simulator& simulator, const QString& link) {
    GripperControlWidget* control = page->findChild<GripperControlWidget*>();
    QLabel* control_status = child<QLabel>(control, "label_status_");
    QLabel* setting_status = child<QLabel>(GripperSettingWidget::instance(), "label_status_");
    const bool connected =
        connect_like_a_script(GripperCommunication::CC_USB_SERIALPORT, {"0", link.toStdString()}) &&
        connect_like_a_script(GripperCommunication::CC_TCP_CLIENT,
                              {"1", "127.0.0.1", std::to_string(simulator.tcp_port(2))});
    select_on_setting_page(0);
    if (!connected || !reach(page, "push_button_activate_", control_status, "Activated") ||
        !reach(control, "push_button_position_max_", control_status, "Arrived")) {
        return false;
    }
    simulator.set_object(1, 420);
    if (!reach(control, "push_button_position_min_", control_status, "Detected")) {
        return false;
    }
    select_on_setting_page(1);
    return reach(page, "push_button_activate_", setting_status, "Activated");
}

// Installs the catalogue and lets the page follow it.
bool translate(const QString& catalogue, QTranslator& translator) {
    if (!translator.load(catalogue)) {
        std::fprintf(stderr, "cannot load %s\n", catalogue.toLocal8Bit().constData());
        return false;
    }
    QCoreApplication::installTranslator(&translator);
    wait_for([] { return false; }, SETTLE_MS);
    return true;
}

}  // namespace

int main(int argc, char* argv[]) {
    if (argc != 4 && argc != 5) {
        std::fprintf(stderr, "usage: %s FOLDER RESOLUTION NAME [CATALOGUE]\n", argv[0]);
        return 2;
    }
    QTemporaryDir settings_folder;
    page_session::use_resolution(settings_folder, QString::fromLocal8Bit(argv[2]));
    QApplication application(argc, argv);
    if (qEnvironmentVariableIsSet("PAGES_LOG")) {
        page_session::log_to_stderr();
    }
    gripper_sim::Simulator simulator;
    gripper_sim::GripperOptions options;
    options.init_ms = 100;
    simulator.add_modbus_pty(options);
    options.position_max = 100;
    simulator.add_custom_tcp(options);
    const QString link = settings_folder.filePath(QStringLiteral("ttyUSB0"));
    QFile::link(QString::fromStdString(simulator.endpoint(1)), link);

    GripperWidget page;
    const Common* common = Common::getCommonHandle();
    page.resize(common->getScreenWidth(), common->getScreenHeight());
    page.show();
    if (!set_the_scene(&page, simulator, link)) {
        std::fprintf(stderr, "the simulated grippers did not reach their states\n");
        return 1;
    }
    QTranslator translator;
    if (5 == argc && !translate(QString::fromLocal8Bit(argv[4]), translator)) {
        return 1;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    const QString name = QString::fromLocal8Bit(argv[3]);
    QTabWidget* tabs = child<QTabWidget>(&page, "tab_widget_");
    tabs->setCurrentIndex(0);
    const bool control_saved = save(&page, folder.filePath("pages-" + name + "-control.png"));
    tabs->setCurrentIndex(1);
    const bool setting_saved = save(&page, folder.filePath("pages-" + name + "-setting.png"));
    return control_saved && setting_saved ? 0 : 1;
}
