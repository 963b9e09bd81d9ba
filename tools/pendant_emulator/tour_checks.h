#ifndef TOOLS_PENDANT_EMULATOR_TOUR_CHECKS_H
#define TOOLS_PENDANT_EMULATOR_TOUR_CHECKS_H

#include <QMap>
#include <QObject>
#include <QString>

#include "tools/pendant_emulator/script_result.h"

class EmulatorWindow;
class QWidget;

// What the tour does and looks at: script commands through the script thread with their
// answers, the simulators' own view of their grippers, the plug-in's page and pictures. Every
// check that fails keeps a sentence saying what was expected and what was found.
class TourChecks : public QObject {
    Q_OBJECT

public:
    TourChecks(EmulatorWindow& window, const QString& folder);

    // Sends a command to the plug-in and waits for its result (deadline timeout_ms).
    ScriptResult send(const QString& command, int timeout_ms = 15000);
    // The command returns true with exactly this answer.
    bool expect(const QString& command, const QString& answer);
    // The simulator's "state" of a gripper as key=value pairs; empty for a real gripper.
    QMap<QString, QString> simulator_state(int id);
    bool simulated(int id) const;
    // Sends a control command through the bench page (noted in the transcript); true on "ok".
    bool simulator_does(int id, const QString& command);
    // Waits for a condition while events run; false (failure noted) after timeout_ms.
    template <typename Condition>
    bool wait(Condition condition, int timeout_ms, const QString& what);

    // The gripper plug-in's page, one of its tabs ("Control", "Setting") brought to front.
    QWidget* page();
    bool show_page_tab(const QString& tab);
    // The state text the page's Control or Setting tab shows.
    QString page_status(const QString& tab);
    // The position the Control tab shows, and whether it marks "Object detected".
    QString page_position();
    bool page_object_detected();
    // Saves a picture of the widget as <folder>/<name>.png.
    bool picture(const QString& name, QWidget* widget);

    bool fail(const QString& why);
    const QString& failure() const { return failure_; }
    qint64 now() const;

private:
    void on_finished(const ScriptResult& result);
    QWidget* control_tab();

    EmulatorWindow& window_;
    const QString folder_;
    QMap<int, ScriptResult> results_;
    QString failure_;
};

#include "tools/pendant_emulator/event_wait.h"

template <typename Condition>
bool TourChecks::wait(Condition condition, int timeout_ms, const QString& what) {
    return wait_for_events(condition, timeout_ms) ||
           fail(QString("%1 did not happen within %2 ms").arg(what).arg(timeout_ms));
}

#endif
