#ifndef TOOLS_PENDANT_EMULATOR_BENCH_PAGE_H
#define TOOLS_PENDANT_EMULATOR_BENCH_PAGE_H

#include <QWidget>

class EmulatedGrippers;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;

// The emulator's own page: what was loaded and what was passed over (with the reason), the
// grippers on the bench and how to reach them, and a control line for the simulated grippers
// ("state", "object 600", "drop", "fault silent", ...) to play a field problem.
class BenchPage : public QWidget {
    Q_OBJECT

public:
    BenchPage(EmulatedGrippers& grippers, QWidget* parent = nullptr);

    // Offers the simulated grippers on the bench to the control line.
    void list_simulators();
    void add_report(const QString& line);
    QString report() const;
    // Sends a control command of gripper-sim, without the gripper number, to the simulator of
    // the gripper with this id; returns the reply.
    QString simulator_command(int id, const QString& command);

private:
    void send();

    EmulatedGrippers& grippers_;
    QPlainTextEdit* report_ = nullptr;
    QComboBox* gripper_ = nullptr;
    QLineEdit* command_ = nullptr;
    QLabel* reply_ = nullptr;
};

#endif
