#ifndef TOOLS_GRIPPER_SIMULATOR_COMMAND_LINE_H
#define TOOLS_GRIPPER_SIMULATOR_COMMAND_LINE_H

#include <string>
#include <vector>

#include "tools/gripper_simulator/types.h"

namespace gripper_sim {

// One gripper as the command line asks for it.
struct GripperSetup {
    Wire wire = Wire::modbus;
    bool tcp = false;
    uint16_t port = 0;
    GripperOptions options;
    Fault fault = Fault::none;
    std::string announce_file;  // pty grippers only; empty: none
    std::string link;           // pty grippers only: symbolic link kept to the pty; empty: none
};

// The command line of gripper-sim. Gripper options (--id, --model, ...) collect until the next
// gripper flag (--modbus, --custom-pty, --tcp PORT), which takes them; the next gripper starts
// from the defaults again.
class CommandLine {
public:
    // False on a bad command line; error() tells why.
    bool parse(const std::vector<std::string>& args);
    const std::string& error() const { return error_; }
    bool help() const { return help_; }
    bool trace() const { return trace_; }
    const std::string& control_socket() const { return control_socket_; }
    const std::vector<GripperSetup>& grippers() const { return grippers_; }

    static std::string usage();

private:
    struct Pending {
        GripperOptions options;
        Fault fault = Fault::none;
        bool position_max_given = false;
        bool announce_given = false;
        std::string announce_file;
        std::string link;
        bool any = false;
    };

    bool flag_with_value(const std::string& flag, const std::string& value);
    bool gripper_option(const std::string& flag, const std::string& value);
    bool version(const std::string& value);
    void add_gripper(Wire wire, bool tcp, uint16_t port);
    bool fail(const std::string& message);

    Pending pending_;
    std::vector<GripperSetup> grippers_;
    bool default_announce_taken_ = false;
    bool help_ = false;
    bool trace_ = false;
    std::string control_socket_;
    std::string error_;
};

}  // namespace gripper_sim

#endif
