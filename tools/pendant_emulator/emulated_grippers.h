#ifndef TOOLS_PENDANT_EMULATOR_EMULATED_GRIPPERS_H
#define TOOLS_PENDANT_EMULATOR_EMULATED_GRIPPERS_H

#include <QString>
#include <QVector>
#include <memory>

#include "tools/pendant_emulator/simulator_process.h"

struct EmulatorOptions;

// A gripper on the emulator's bench: its device id as scripts count it, how it is reached and,
// when simulated, its simulator.
struct BenchGripper {
    int id = 0;
    bool usb = false;
    // The serial device path, or host:port.
    QString address;
    std::shared_ptr<SimulatorProcess> simulator;

    // The script command that connects it: gripper_connect_usb|1,/dev/pts/3 or
    // gripper_connect_tcp|2,127.0.0.1:5020.
    QString connect_command() const;
};

// The grippers of a session: by default gripper 1 simulated on a pseudo-terminal (Modbus RTU,
// announced in "/tmp/pts", an object at 60 % of its stroke) and gripper 2 simulated on loopback
// TCP (14-byte frames); --usb and --tcp put real grippers in their place, --no-simulators
// starts none.
class EmulatedGrippers {
public:
    // The first simulated gripper's stroke in register units, and its object's place on it.
    static const int POSITION_MAX = 1000;
    static const int OBJECT_POSITION = 600;
    // Full stroke at speed 100, slow enough to watch a move.
    static const int STROKE_MS = 3000;

    bool start(const EmulatorOptions& options, const QString& log_folder, QString& error);
    void stop();

    const QVector<BenchGripper>& grippers() const { return grippers_; }
    // The gripper with this id, or null.
    const BenchGripper* gripper(int id) const;

private:
    bool start_simulator(BenchGripper& gripper, const QString& program, const QStringList& args,
                         const QString& log_folder, QString& error);

    QVector<BenchGripper> grippers_;
};

#endif
