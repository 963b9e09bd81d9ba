#include "tools/pendant_emulator/tour_checks.h"

#include <QAbstractButton>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>

#include "tools/pendant_emulator/bench_page.h"
#include "tools/pendant_emulator/emulator_window.h"
#include "tools/pendant_emulator/screenshot.h"

namespace {

const char* const PLUGIN = "Zanther2F";

}  // namespace

TourChecks::TourChecks(EmulatorWindow& window, const QString& folder)
    : window_(window), folder_(folder) {
    connect(&window_.script(), &ScriptThread::command_finished, this, &TourChecks::on_finished);
}

ScriptResult TourChecks::send(const QString& command, int timeout_ms) {
    const int number = window_.script().submit({PLUGIN, command});
    if (!wait([&] { return results_.contains(number); }, timeout_ms,
              QString("an answer to %1").arg(command))) {
        return ScriptResult();
    }
    return results_.take(number);
}

bool TourChecks::expect(const QString& command, const QString& answer) {
    const ScriptResult result = send(command);
    if (!result.error.isEmpty()) {
        return fail(QString("%1 was not run: %2").arg(command, result.error));
    }
    if (!result.returned || result.answer != answer) {
        return fail(QString("%1 answered %2 \"%3\", not true \"%4\"")
                        .arg(command, result.returned ? "true" : "false", result.answer, answer));
    }
    return true;
}

QMap<QString, QString> TourChecks::simulator_state(int id) {
    QMap<QString, QString> state;
    if (!simulated(id)) {
        return state;
    }
    const QString reply = window_.grippers().gripper(id)->simulator->command("state 1");
    for (const QString& pair : reply.split(' ', Qt::SkipEmptyParts)) {
        state.insert(pair.section('=', 0, 0), pair.section('=', 1));
    }
    return state;
}

bool TourChecks::simulator_does(int id, const QString& command) {
    const QString reply = window_.bench().simulator_command(id, command);
    window_.transcript().note(
        QString("simulator of gripper %1: %2 -> %3").arg(id).arg(command, reply));
    return reply == "ok" || fail(QString("the simulator of gripper %1 answered \"%2\" to %3")
                                     .arg(id)
                                     .arg(reply, command));
}

bool TourChecks::simulated(int id) const {
    const BenchGripper* gripper = window_.grippers().gripper(id);
    return gripper != nullptr && gripper->simulator != nullptr;
}

QWidget* TourChecks::page() {
    QWidget* page = window_.plugin_page(PLUGIN);
    if (page != nullptr) {
        window_.tabs().setCurrentWidget(page);
    }
    return page;
}

bool TourChecks::show_page_tab(const QString& tab) {
    QWidget* plugin_page = page();
    auto* tabs = plugin_page ? plugin_page->findChild<QTabWidget*>("tab_widget_") : nullptr;
    for (int i = 0; tabs != nullptr && i < tabs->count(); ++i) {
        if (tabs->tabText(i) == tab) {
            tabs->setCurrentIndex(i);
            return true;
        }
    }
    return fail(QString("the plug-in's page has no tab \"%1\"").arg(tab));
}

QString TourChecks::page_status(const QString& tab) {
    const QString holder = tab == "Control" ? "widget_control_" : "widget_setting_";
    QWidget* plugin_page = window_.plugin_page(PLUGIN);
    QWidget* tab_page = plugin_page ? plugin_page->findChild<QWidget*>(holder) : nullptr;
    auto* label = tab_page ? tab_page->findChild<QLabel*>("label_status_") : nullptr;
    return label ? label->text().trimmed() : QString();
}

QWidget* TourChecks::control_tab() {
    QWidget* plugin_page = window_.plugin_page(PLUGIN);
    return plugin_page ? plugin_page->findChild<QWidget*>("widget_control_") : nullptr;
}

QString TourChecks::page_position() {
    QWidget* control = control_tab();
    auto* field = control ? control->findChild<QLineEdit*>("line_edit_position_") : nullptr;
    return field ? field->text() : QString();
}

bool TourChecks::page_object_detected() {
    QWidget* control = control_tab();
    auto* indicator =
        control ? control->findChild<QAbstractButton*>("radio_button_object_detected_") : nullptr;
    return indicator != nullptr && indicator->isChecked();
}

bool TourChecks::picture(const QString& name, QWidget* widget) {
    QString error;
    const QString path = QDir(folder_).filePath(name + ".png");
    if (!Screenshot::save(widget, path, error)) {
        return fail(error);
    }
    window_.transcript().note("picture: " + path);
    return true;
}

bool TourChecks::fail(const QString& why) {
    if (failure_.isEmpty()) {
        failure_ = why;
    }
    return false;
}

qint64 TourChecks::now() const {
    return window_.script().clock().elapsed();
}

void TourChecks::on_finished(const ScriptResult& result) {
    results_.insert(result.number, result);
}
