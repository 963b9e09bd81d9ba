#ifndef TOOLS_GRIPPER_DOCTOR_DOCTOR_H
#define TOOLS_GRIPPER_DOCTOR_DOCTOR_H

#include <string>
#include <vector>

#include "tools/gripper_doctor/command_line.h"
#include "tools/gripper_doctor/port_scan.h"
#include "tools/gripper_doctor/report.h"
#include "tools/gripper_doctor/trace_output.h"

namespace gripper_doctor {

// One run of the tool: the named targets, or every port the plug-in's scan lists, probed at
// once (each on a thread of its own, all within one time limit) and reported in order.
class Doctor {
public:
    explicit Doctor(const CommandLine& command_line);
    Doctor(const Doctor&) = delete;
    Doctor& operator=(const Doctor&) = delete;

    // The exit status: 0 when every target answered, 1 when a problem was found.
    int run();

private:
    int run_named();
    int run_scan();
    std::vector<Report> probe_all(const std::vector<Target>& targets);
    static std::vector<Report> scan_findings(const PortScan& scan);
    void print_candidates(const PortScan& scan) const;
    void print_lines(const std::vector<Report>& reports) const;
    static int exit_status(const std::vector<Report>& reports);

    const CommandLine& command_line_;
    TraceOutput trace_;
};

}  // namespace gripper_doctor

#endif
