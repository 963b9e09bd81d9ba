#include "tools/gripper_doctor/doctor.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <thread>

#include "tools/gripper_doctor/probe.h"
#include "tools/gripper_doctor/report_json.h"
#include "tools/gripper_doctor/report_text.h"

namespace gripper_doctor {
namespace {

Report finding_report(const std::string& name, const Finding& finding) {
    Report report;
    report.target.name = name;
    report.finding = finding;
    return report;
}

std::string driver_of(const UsbIdentity& usb) {
    return "0403" == usb.vendor ? "ftdi_sio" : "cdc_acm";
}

}  // namespace

Doctor::Doctor(const CommandLine& command_line)
    : command_line_(command_line), trace_(command_line.json() ? stderr : stdout) {}

int Doctor::run() {
    return command_line_.targets().empty() ? run_scan() : run_named();
}

int Doctor::run_named() {
    const std::vector<Report> reports = probe_all(command_line_.targets());
    for (size_t i = 0; i < reports.size(); ++i) {
        const std::string text = command_line_.json()
                                     ? ReportJson::line(reports[i]) + "\n"
                                     : (i > 0 ? "\n" : "") + ReportText::full(reports[i]);
        std::fputs(text.c_str(), stdout);
    }
    return exit_status(reports);
}

int Doctor::run_scan() {
    const PortScan scan(command_line_.sysroot());
    if (!command_line_.json()) {
        print_candidates(scan);
    }
    std::vector<Report> reports = scan_findings(scan);
    const std::vector<Report> probed = probe_all(scan.candidates());
    reports.insert(reports.end(), probed.begin(), probed.end());
    print_lines(reports);
    return exit_status(reports);
}

std::vector<Report> Doctor::probe_all(const std::vector<Target>& targets) {
    ProbeSettings settings;
    settings.deadline =
        FrameRecorder::Clock::now() + std::chrono::milliseconds(command_line_.timeout_ms());
    settings.timeout_ms = command_line_.timeout_ms();
    settings.trace = command_line_.trace() ? &trace_ : nullptr;
    settings.label_trace = targets.size() > 1;
    settings.sysroot = command_line_.sysroot();
    std::vector<Report> reports(targets.size());
    std::vector<std::thread> threads;
    for (size_t i = 0; i < targets.size(); ++i) {
        threads.emplace_back([&, i] { reports[i] = Probe(targets[i], settings).run(); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    return reports;
}

std::vector<Report> Doctor::scan_findings(const PortScan& scan) {
    std::vector<Report> reports;
    if (!scan.announcement().ok()) {
        reports.push_back(finding_report(PortScan::ANNOUNCE_FILE, scan.announcement()));
    }
    for (const UsbDevice& device : scan.adapters_without_port()) {
        reports.push_back(finding_report(
            "USB " + device.name,
            make_finding("adapter_without_port",
                         "the gripper adapter " + device.identity.text() + " has no serial port",
                         "load its driver: sudo modprobe " + driver_of(device.identity) +
                             ", then unplug and plug it in again")));
    }
    if (reports.empty() && scan.candidates().empty()) {
        reports.push_back(finding_report(
            "(no port)", make_finding("no_ports",
                                      "no candidate port: nothing announced in " +
                                          std::string(PortScan::ANNOUNCE_FILE) +
                                          ", no serial port, no known USB adapter",
                                      "plug the gripper's USB adapter in, or give HOST:PORT for "
                                      "a gripper on the network")));
    }
    return reports;
}

void Doctor::print_candidates(const PortScan& scan) const {
    std::string text = "Candidate ports, as the plug-in's scan lists them:\n";
    for (const Target& target : scan.candidates()) {
        text += "  " + target.name + "  " + target.source +
                (target.usb.present() ? ", " + ReportText::usb(target.usb) : "") + "\n";
    }
    if (scan.candidates().empty()) {
        text += "  (none)\n";
    }
    char limit[32];
    std::snprintf(limit, sizeof(limit), "%g s", command_line_.timeout_ms() / 1000.0);
    text += "Probing each (time limit " + std::string(limit) + "):\n";
    std::fputs(text.c_str(), stdout);
    std::fflush(stdout);
}

void Doctor::print_lines(const std::vector<Report>& reports) const {
    size_t width = 0;
    for (const Report& report : reports) {
        width = std::max(width, report.target.name.size());
    }
    for (const Report& report : reports) {
        const std::string line =
            command_line_.json() ? ReportJson::line(report) : ReportText::line(report, width);
        std::fputs((line + "\n").c_str(), stdout);
    }
}

int Doctor::exit_status(const std::vector<Report>& reports) {
    for (const Report& report : reports) {
        if (!report.ok()) {
            return 1;
        }
    }
    return 0;
}

}  // namespace gripper_doctor
