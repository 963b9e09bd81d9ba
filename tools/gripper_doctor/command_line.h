#ifndef TOOLS_GRIPPER_DOCTOR_COMMAND_LINE_H
#define TOOLS_GRIPPER_DOCTOR_COMMAND_LINE_H

#include <string>
#include <vector>

#include "tools/gripper_doctor/target.h"

namespace gripper_doctor {

// The options and targets of one run. parse() refuses anything it does not know, with a message.
class CommandLine {
public:
    static constexpr int DEFAULT_TIMEOUT_MS = 5000;

    bool parse(const std::vector<std::string>& args);

    const std::string& error() const { return error_; }
    bool help() const { return help_; }
    bool trace() const { return trace_; }
    bool json() const { return json_; }
    int timeout_ms() const { return timeout_ms_; }
    // Serial ports and USB devices are looked up under this directory ("/" normally).
    const std::string& sysroot() const { return sysroot_; }
    // Empty: scan for candidate ports.
    const std::vector<Target>& targets() const { return targets_; }

    static std::string usage();

private:
    bool take(const std::string& flag, const std::string& value);
    bool take_timeout(const std::string& value);
    bool take_target(const std::string& text);
    bool fail(const std::string& message);

    std::string error_;
    bool help_ = false;
    bool trace_ = false;
    bool json_ = false;
    int timeout_ms_ = DEFAULT_TIMEOUT_MS;
    std::string sysroot_ = "/";
    std::vector<Target> targets_;
};

}  // namespace gripper_doctor

#endif
