// gripper-doctor: finds grippers, checks the link to them and says in plain words what is wrong.

#include <cstdio>
#include <string>
#include <vector>

#include "tools/gripper_doctor/command_line.h"
#include "tools/gripper_doctor/doctor.h"
#include "tools/gripper_doctor/port_checks.h"

namespace {

const int BAD_USAGE = 2;

int bad_usage(const std::string& message) {
    std::fprintf(stderr, "gripper-doctor: %s\nTry 'gripper-doctor --help' for more.\n",
                 message.c_str());
    return BAD_USAGE;
}

}  // namespace

int main(int argc, char** argv) {
    using gripper_doctor::CommandLine;
    using gripper_doctor::Target;
    CommandLine command_line;
    if (!command_line.parse(std::vector<std::string>(argv + 1, argv + argc))) {
        return bad_usage(command_line.error());
    }
    if (command_line.help()) {
        std::fputs(CommandLine::usage().c_str(), stdout);
        return 0;
    }
    for (const Target& target : command_line.targets()) {
        const std::string kind = gripper_doctor::PortChecks::wrong_kind(target.path);
        if (Target::Kind::serial == target.kind && !kind.empty()) {
            return bad_usage(target.path + " is " + kind + ", not a serial port");
        }
    }
    return gripper_doctor::Doctor(command_line).run();
}
