#include "tools/gripper_doctor/command_line.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace gripper_doctor {
namespace {

const double LONGEST_TIMEOUT_SECONDS = 3600.0;

bool takes_value(const std::string& flag) {
    return "--timeout" == flag || "--sysroot" == flag;
}

}  // namespace

bool CommandLine::parse(const std::vector<std::string>& args) {
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        const size_t equals = arg.find('=');
        if ("--help" == arg || "-h" == arg) {
            help_ = true;
        } else if ("--trace" == arg) {
            trace_ = true;
        } else if ("--json" == arg) {
            json_ = true;
        } else if (0 == arg.rfind("--", 0) && std::string::npos != equals) {
            if (!take(arg.substr(0, equals), arg.substr(equals + 1))) {
                return false;
            }
        } else if (takes_value(arg)) {
            if (i + 1 == args.size()) {
                return fail(arg + " needs a value");
            }
            if (!take(arg, args[++i])) {
                return false;
            }
        } else if (0 == arg.rfind("-", 0) && arg.size() > 1) {
            return fail("unknown option " + arg);
        } else if (!take_target(arg)) {
            return false;
        }
    }
    return true;
}

bool CommandLine::take(const std::string& flag, const std::string& value) {
    if ("--timeout" == flag) {
        return take_timeout(value);
    }
    if ("--sysroot" == flag && !value.empty()) {
        sysroot_ = value;
        return true;
    }
    return fail(takes_value(flag) ? flag + " needs a value" : "unknown option " + flag);
}

bool CommandLine::take_timeout(const std::string& value) {
    char* end = nullptr;
    const double seconds = std::strtod(value.c_str(), &end);
    if (value.empty() || '\0' != *end || !std::isfinite(seconds) || seconds <= 0.0 ||
        seconds > LONGEST_TIMEOUT_SECONDS) {
        return fail("--timeout takes seconds above 0 and up to 3600, not \"" + value + "\"");
    }
    timeout_ms_ = std::max(1, static_cast<int>(std::lround(seconds * 1000.0)));
    return true;
}

bool CommandLine::take_target(const std::string& text) {
    Target target;
    std::string error;
    if (!parse_target(text, target, error)) {
        return fail(error);
    }
    // The same port twice would be probed twice at once, each taking the other's answers.
    for (const Target& known : targets_) {
        if (known.name == target.name) {
            return true;
        }
    }
    targets_.push_back(target);
    return true;
}

bool CommandLine::fail(const std::string& message) {
    error_ = message;
    return false;
}

std::string CommandLine::usage() {
    return "Usage: gripper-doctor [--trace] [--json] [--timeout SECONDS] [TARGET ...]\n"
           "\n"
           "Finds grippers, checks the link to them and says in plain words what is wrong.\n"
           "It talks to the gripper with the plug-in's own links, protocols and handshake, so\n"
           "what it finds is what the plug-in will see. It moves nothing, activates nothing and\n"
           "writes no setting: it only reads.\n"
           "\n"
           "TARGET\n"
           "  (none)             list the ports the plug-in's scan lists (the path announced in\n"
           "                     /tmp/pts, the system's serial ports; USB adapters 0403:6001 and\n"
           "                     0483:5740 are marked) and probe each: one line per port\n"
           "  PATH               a serial device, probed at 115200 baud 8N1 (Modbus RTU, then\n"
           "                     14-byte frames); a name without '/' means /dev/NAME\n"
           "  HOST:PORT          a gripper behind a TCP server (14-byte frames), HOST an IPv4\n"
           "                     address\n"
           "\n"
           "Options\n"
           "  --trace            print every frame sent and received in hex, with its time and\n"
           "                     what it means\n"
           "  --json             print one JSON object per target (one per line)\n"
           "  --timeout SECONDS  time limit of the whole probe (default 5; 0.5 is fine)\n"
           "  --sysroot DIR      look for serial ports and USB devices under DIR instead of /\n"
           "  -h, --help         this text\n"
           "\n"
           "Exit status: 0 every target answered, 1 a problem was found, 2 bad usage.\n"
           "\n"
           "Examples\n"
           "  gripper-doctor                          which port is my gripper on?\n"
           "  gripper-doctor /dev/ttyUSB0             why does the gripper not answer?\n"
           "  gripper-doctor --trace ttyACM0          every frame, in hex, with its meaning\n"
           "  gripper-doctor --json 192.168.1.29:8888 a report for scripts\n"
           "  gripper-doctor --timeout 10 /dev/ttyUSB0\n";
}

}  // namespace gripper_doctor
