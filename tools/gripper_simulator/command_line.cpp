#include "tools/gripper_simulator/command_line.h"

#include <cerrno>
#include <cstdlib>
#include <sstream>

#include "tools/gripper_simulator/fault_names.h"

namespace gripper_sim {
namespace {

const char kDefaultAnnounceFile[] = "/tmp/pts";
constexpr int kModbusStroke = 1000;
constexpr int kCustomStroke = 100;

constexpr long kLongestMs = 600000;
constexpr long kFastestBaud = 4000000;

// Decimal or 0x-prefixed hexadecimal within [low, high] into `field`.
template <typename Field>
bool set_number(const std::string& text, long low, long high, Field& field) {
    if (text.empty()) {
        return false;
    }
    char* end = nullptr;
    errno = 0;
    const long value = std::strtol(text.c_str(), &end, 0);
    if (errno != 0 || *end != '\0' || value < low || value > high) {
        return false;
    }
    field = static_cast<Field>(value);
    return true;
}

bool takes_value(const std::string& flag) {
    static const char* const kFlags[] = {
        "--tcp",    "--control",  "--id",        "--model",        "--version",
        "--object", "--init-ms",  "--stroke-ms", "--position-max", "--late-ms",
        "--fault",  "--announce", "--baud",      "--window-us",    "--link"};
    for (const char* known : kFlags) {
        if (flag == known) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool CommandLine::parse(const std::vector<std::string>& args) {
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& flag = args[i];
        if (flag == "--help" || flag == "-h") {
            help_ = true;
        } else if (flag == "--trace") {
            trace_ = true;
        } else if (flag == "--modbus" || flag == "--custom-pty") {
            add_gripper(flag == "--modbus" ? Wire::modbus : Wire::custom, false, 0);
        } else if (!takes_value(flag)) {
            return fail("unknown flag " + flag);
        } else if (i + 1 == args.size()) {
            return fail(flag + " needs a value");
        } else if (!flag_with_value(flag, args[++i])) {
            return false;
        }
    }
    if (help_) {
        return true;
    }
    if (pending_.any) {
        return fail("gripper options after the last gripper flag (they go before the flag)");
    }
    return grippers_.empty() ? fail("no gripper: give --modbus, --custom-pty or --tcp PORT") : true;
}

std::string CommandLine::usage() {
    std::ostringstream text;
    text
        << "Usage: gripper-sim [--trace] [--control SOCKET] [OPTIONS] GRIPPER [[OPTIONS] GRIPPER "
           "...]\n"
           "\n"
           "Simulates two-finger grippers on pseudo-terminals and loopback TCP ports.\n"
           "Prints one line per gripper: \"PTY is /dev/pts/N\" or \"TCP is 127.0.0.1:PORT\".\n"
           "Reads control commands from stdin (and SOCKET), one per line; stops on SIGINT,\n"
           "SIGTERM or the command quit, not at the end of stdin.\n"
           "\n"
           "Grippers:\n"
           "  --modbus            Modbus RTU gripper on a new pty\n"
           "  --custom-pty        custom-frame gripper on a new pty\n"
           "  --tcp PORT          custom-frame gripper on 127.0.0.1:PORT (0: a free port)\n"
           "\n"
           "Options for the gripper flag that follows them:\n"
           "  --id N              slave id / custom id byte, 1-247 (default 1)\n"
           "  --model CODE        Modbus model code, register 0x0A00 (default 0x1000)\n"
           "  --version V         Modbus version register 0x0A02 (e.g. 0x0102), or with dots\n"
           "                      the custom version bytes (e.g. 1.2.1.4; default 1.2.1.3)\n"
           "  --position-max N    register value of the full stroke (default 1000 for Modbus,\n"
           "                      100 for custom frames)\n"
           "  --object POS|none   object that stops the fingers at register position POS\n"
           "  --init-ms MS        duration of the initialisation (default 300)\n"
           "  --stroke-ms MS      duration of a full stroke at speed 100 (default 1000)\n"
           "  --late-ms MS        delay of the late fault (default 250)\n"
           "  --baud RATE         answer like a line at RATE baud, 8N1: each byte no earlier\n"
           "                      than its time on the wire (default 0: at once)\n"
           "  --window-us US      with --baud: hand bytes over in windows of US microseconds,\n"
           "                      as a USB serial adapter does (default 0: byte by byte)\n"
           "  --fault NAME        start with a fault: "
        << fault_names()
        << "\n"
           "  --announce FILE     file that receives \"PTY is <path>\" (pty grippers; default\n"
           "                      /tmp/pts for the first pty gripper, none for others; - for "
           "none)\n"
           "  --link PATH         keep a symbolic link PATH to the pty (pty grippers): gone while\n"
           "                      the pty has vanished, back when it returns, as by-id names\n"
           "\n"
           "General:\n"
           "  --trace             hex trace of every frame on stderr\n"
           "  --control SOCKET    also serve the control commands on a unix socket\n"
           "  --help, -h          this text\n"
           "\n"
           "Control commands: help, list, state N, fault N NAME, object N POS|none,\n"
           "drop N [next], trace on|off, quit\n";
    return text.str();
}

bool CommandLine::flag_with_value(const std::string& flag, const std::string& value) {
    if (flag == "--control") {
        control_socket_ = value;
        return true;
    }
    if (flag != "--tcp") {
        return gripper_option(flag, value);
    }
    uint16_t port = 0;
    if (!set_number(value, 0, 65535, port)) {
        return fail("--tcp needs a port number 0-65535, not " + value);
    }
    add_gripper(Wire::custom, true, port);
    return true;
}

bool CommandLine::gripper_option(const std::string& flag, const std::string& value) {
    GripperOptions& options = pending_.options;
    bool ok = false;
    pending_.any = true;
    if (flag == "--id") {
        ok = set_number(value, 1, 247, options.id);
    } else if (flag == "--model") {
        ok = set_number(value, 0, 0xFFFF, options.model_code);
    } else if (flag == "--version") {
        ok = version(value);
    } else if (flag == "--object" && value == "none") {
        options.object_at = -1;
        ok = true;
    } else if (flag == "--object") {
        ok = set_number(value, 0, 0xFFFF, options.object_at);
    } else if (flag == "--position-max") {
        ok = pending_.position_max_given = set_number(value, 1, 0xFFFF, options.position_max);
    } else if (flag == "--init-ms") {
        ok = set_number(value, 0, kLongestMs, options.init_ms);
    } else if (flag == "--stroke-ms") {
        ok = set_number(value, 0, kLongestMs, options.full_stroke_ms);
    } else if (flag == "--late-ms") {
        ok = set_number(value, 0, kLongestMs, options.late_ms);
    } else if (flag == "--baud") {
        ok = set_number(value, 0, kFastestBaud, options.baud);
    } else if (flag == "--window-us") {
        ok = set_number(value, 0, kLongestMs * 1000, options.window_us);
    } else if (flag == "--fault") {
        ok = parse_fault(value, pending_.fault);
    } else if (flag == "--link") {
        pending_.link = value;
        ok = !value.empty();
    } else {
        ok = pending_.announce_given = true;
        pending_.announce_file = value == "-" ? std::string() : value;
    }
    return ok || fail("bad value for " + flag + ": " + value);
}

bool CommandLine::version(const std::string& value) {
    if (value.find('.') == std::string::npos) {
        return set_number(value, 0, 0xFFFF, pending_.options.modbus_version);
    }
    std::istringstream parts(value);
    std::string part;
    size_t count = 0;
    for (; std::getline(parts, part, '.'); ++count) {
        if (count == 4 || !set_number(part, 0, 255, pending_.options.custom_version[count])) {
            return false;
        }
    }
    return count == 4;
}

void CommandLine::add_gripper(Wire wire, bool tcp, uint16_t port) {
    GripperSetup setup;
    setup.wire = wire;
    setup.tcp = tcp;
    setup.port = port;
    setup.options = pending_.options;
    setup.fault = pending_.fault;
    if (!pending_.position_max_given) {
        setup.options.position_max = wire == Wire::modbus ? kModbusStroke : kCustomStroke;
    }
    if (!tcp) {
        const bool first_default = !pending_.announce_given && !default_announce_taken_;
        setup.announce_file = first_default ? kDefaultAnnounceFile : pending_.announce_file;
        default_announce_taken_ = default_announce_taken_ || first_default;
        setup.link = pending_.link;
    }
    grippers_.push_back(setup);
    pending_ = Pending();
}

bool CommandLine::fail(const std::string& message) {
    error_ = message;
    return false;
}

}  // namespace gripper_sim
