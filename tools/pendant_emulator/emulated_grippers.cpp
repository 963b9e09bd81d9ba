#include "tools/pendant_emulator/emulated_grippers.h"

#include <QDir>

#include "tools/pendant_emulator/emulator_options.h"

namespace {

const int START_TIMEOUT_MS = 5000;

}  // namespace

QString BenchGripper::connect_command() const {
    return QString("%1|%2,%3")
        .arg(usb ? "gripper_connect_usb" : "gripper_connect_tcp")
        .arg(id)
        .arg(address);
}

bool EmulatedGrippers::start(const EmulatorOptions& options, const QString& log_folder,
                             QString& error) {
    BenchGripper first{1, true, options.usb_device, nullptr};
    BenchGripper second{2, false, options.tcp_address, nullptr};
    const QString stroke = QString::number(STROKE_MS);
    if (first.address.isEmpty() && options.simulators &&
        !start_simulator(
            first, options.simulator_program,
            {"--object", QString::number(OBJECT_POSITION), "--stroke-ms", stroke, "--modbus"},
            log_folder, error)) {
        return false;
    }
    if (second.address.isEmpty() && options.simulators &&
        !start_simulator(second, options.simulator_program,
                         {"--id", "2", "--stroke-ms", stroke, "--tcp", "0"}, log_folder, error)) {
        return false;
    }
    for (const BenchGripper& gripper : {first, second}) {
        if (!gripper.address.isEmpty()) {
            grippers_.append(gripper);
        }
    }
    return true;
}

void EmulatedGrippers::stop() {
    for (BenchGripper& gripper : grippers_) {
        if (gripper.simulator) {
            gripper.simulator->stop();
        }
    }
}

const BenchGripper* EmulatedGrippers::gripper(int id) const {
    for (const BenchGripper& gripper : grippers_) {
        if (gripper.id == id) {
            return &gripper;
        }
    }
    return nullptr;
}

bool EmulatedGrippers::start_simulator(BenchGripper& gripper, const QString& program,
                                       const QStringList& args, const QString& log_folder,
                                       QString& error) {
    gripper.simulator = std::make_shared<SimulatorProcess>(program);
    const QString log_file =
        log_folder.isEmpty()
            ? QString()
            : QDir(log_folder).filePath(QString("gripper-sim-%1.log").arg(gripper.id));
    if (!gripper.simulator->start(args, log_file, START_TIMEOUT_MS, error)) {
        return false;
    }
    gripper.address = gripper.simulator->endpoint();
    return true;
}
