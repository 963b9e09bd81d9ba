#ifndef TOOLS_GRIPPER_SIMULATOR_CONTROL_COMMANDS_H
#define TOOLS_GRIPPER_SIMULATOR_CONTROL_COMMANDS_H

#include <functional>
#include <string>
#include <vector>

#include "tools/gripper_simulator/simulator.h"

namespace gripper_sim {

// The control channel's line protocol: one command per line, one reply line per command
// ("ok", "error: ...", or the data asked for).
class ControlCommands {
public:
    ControlCommands(Simulator& simulator, std::function<void()> on_quit);

    std::string execute(const std::string& line);

private:
    using Words = std::vector<std::string>;

    std::string list() const;
    std::string state(const Words& words) const;
    std::string fault(const Words& words);
    std::string object(const Words& words);
    std::string drop(const Words& words);
    std::string trace(const Words& words);
    // The gripper number in words[1]; 0 (and `error` set) when it names no gripper.
    int gripper(const Words& words, std::string& error) const;

    Simulator& simulator_;
    std::function<void()> on_quit_;
};

}  // namespace gripper_sim

#endif
