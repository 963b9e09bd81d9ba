#include "tools/gripper_doctor/probe.h"

#include <algorithm>

#include "gripper/gripper_common/miscellaneous_utility/miscellaneous_utility.h"
#include "gripper/gripper_common/system_error/system_error.h"
#include "gripper/gripper_communication_control/gripper_tcp_client_communication_control/gripper_tcp_client_communication_control.h"
#include "gripper/gripper_communication_control/gripper_usb_serialport_communication_control/gripper_usb_serialport_communication_control.h"
#include "tools/gripper_doctor/diagnosis.h"
#include "tools/gripper_doctor/frame_tap.h"
#include "tools/gripper_doctor/port_checks.h"
#include "tools/gripper_doctor/tcp_check.h"

namespace gripper_doctor {
namespace {

// The tool's own connection attempt waits at most this long for a silent host.
const int LONGEST_CONNECT_CHECK_MILLIS = 3000;
// How long a second connection waits for the server to drop it after an unanswered request.
const int FOLLOW_UP_MILLIS = 300;

std::string manual() {
    return MiscellaneousUtility::connect_operate_to_string(MiscellaneousUtility::CO_MANUAL);
}

// A failure to open that the checks did not foresee, named by the system's text for its errno:
// ": Permission denied"; empty when the link kept no such failure.
std::string error_text(const GripperCommunication& link) {
    const GripperLinkFailure failure = link.last_failure();
    if (GripperLinkFailure::LF_OPEN != failure.code || 0 == failure.error_number) {
        return std::string();
    }
    return ": " + system_error_text(failure.error_number);
}

}  // namespace

Probe::Probe(const Target& target, const ProbeSettings& settings)
    : settings_(settings),
      recorder_(settings.label_trace ? target.name : std::string(), settings.trace,
                settings.deadline) {
    report_.target = target;
}

Report Probe::run() {
    if (Target::Kind::tcp == report_.target.kind) {
        probe_tcp();
    } else {
        probe_serial();
    }
    return report_;
}

void Probe::probe_serial() {
    const std::string& path = report_.target.path;
    report_.finding = PortChecks::check(path, settings_.sysroot);
    if (!report_.ok()) {
        return;
    }
    GripperUSBSerialportCommunicationControl link;
    FrameTap tap(link, recorder_);
    if (!link.open({manual(), path})) {
        report_.finding = make_finding(
            "open_failed", "the plug-in's serial link cannot open " + path + error_text(link),
            "check the device with: ls -l " + path);
        return;
    }
    talk(link);
    link.close();
}

void Probe::probe_tcp() {
    const Target& target = report_.target;
    const std::string port = std::to_string(target.port);
    if (!MiscellaneousUtility::is_valid_port(port)) {
        report_.finding = make_finding(
            "port_refused", "port " + port + " is below 1024, which the plug-in refuses",
            "set the adapter's TCP server to a port from 1024 to 65535 and enter that port on "
            "the Setting page");
        return;
    }
    GripperTCPClientCommunicationControl link;
    FrameTap tap(link, recorder_);
    if (!link.open({manual(), target.host, port})) {
        const int wait = std::max(TcpCheck::PLUGIN_CONNECT_MILLIS,
                                  std::min(remaining_ms(), LONGEST_CONNECT_CHECK_MILLIS));
        report_.finding = TcpCheck::diagnose(target.host, target.port, wait);
        return;
    }
    talk(link);
    link.close();
    if ("no_answer" == report_.finding.code && remaining_ms() > 0) {
        const Finding dropped = TcpCheck::drops_client(
            target.host, target.port, recorder_.evidence().unanswered, FOLLOW_UP_MILLIS);
        report_.finding = dropped.ok() ? report_.finding : dropped;
    }
}

void Probe::talk(GripperLogicControl& link) {
    const bool answered = link.handshake() && link.sync();
    recorder_.finish();
    read_out(link, answered ? link.protocol_type() : recorder_.evidence().id_protocol);
    if (!answered) {
        recorder_.left_unread(link.available());
        report_.finding = Diagnosis::of(recorder_.evidence(), report_.target, settings_.timeout_ms);
        return;
    }
    report_.handshaken = true;
    read_values(link);
}

void Probe::read_out(GripperLogicControl& driver, int protocol_type) {
    report_.protocol = protocol_type;
    report_.fell_back = 0 == protocol_type && Target::Kind::serial == report_.target.kind;
    report_.device_id = recorder_.evidence().learnt_id;
    report_.version = driver.get_version();
    report_.model_series = driver.get_model_series();
}

void Probe::read_values(GripperLogicControl& driver) {
    Limits& limits = report_.limits;
    limits.position_min = driver.get_position_min();
    limits.position_max = driver.get_position_max();
    limits.position_step = driver.position_step();
    limits.force_min = driver.get_force_min();
    limits.force_max = driver.get_force_max();
    limits.speed_min = driver.get_speed_min();
    limits.speed_max = driver.get_speed_max();
    report_.initialised = GripperLogicControl::GS_ACTIVATED == driver.get_gripper_status();
    if (!report_.initialised) {
        return;
    }
    report_.values_known = true;
    report_.position = driver.get_position();
    report_.force = driver.get_force();
    report_.speed_known = driver.support_speed();
    report_.speed = report_.speed_known ? driver.get_speed() : 0;
}

int Probe::remaining_ms() const {
    const auto left = settings_.deadline - FrameRecorder::Clock::now();
    return static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(left).count());
}

}  // namespace gripper_doctor
