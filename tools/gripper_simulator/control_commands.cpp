#include "tools/gripper_simulator/control_commands.h"

#include <fmt/format.h>

#include <sstream>

#include "tools/gripper_simulator/fault_names.h"

namespace gripper_sim {
namespace {

const char kHelp[] =
    "commands: help | list | state N | fault N NAME | object N POS|none | drop N [next] | "
    "trace on|off | quit";

bool parse_count(const std::string& text, int& value) {
    if (text.empty() || text.size() > 9 ||
        text.find_first_not_of("0123456789") != std::string::npos) {
        return false;
    }
    value = std::stoi(text);
    return true;
}

}  // namespace

ControlCommands::ControlCommands(Simulator& simulator, std::function<void()> on_quit)
    : simulator_(simulator), on_quit_(std::move(on_quit)) {}

std::string ControlCommands::execute(const std::string& line) {
    std::istringstream stream(line);
    Words words;
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    if (words.empty()) {
        return "error: empty command (try help)";
    }
    const std::string& name = words[0];
    if (name == "help") {
        return kHelp;
    }
    if (name == "list") {
        return list();
    }
    if (name == "state") {
        return state(words);
    }
    if (name == "fault") {
        return fault(words);
    }
    if (name == "object") {
        return object(words);
    }
    if (name == "drop") {
        return drop(words);
    }
    if (name == "trace") {
        return trace(words);
    }
    if (name == "quit") {
        on_quit_();
        return "ok";
    }
    return "error: unknown command '" + name + "' (try help)";
}

std::string ControlCommands::list() const {
    std::string reply;
    for (int n = 1; n <= simulator_.count(); ++n) {
        reply += (n > 1 ? "; " : "") + simulator_.describe(n);
    }
    return reply.empty() ? "no grippers" : reply;
}

std::string ControlCommands::state(const Words& words) const {
    std::string error;
    const int n = gripper(words, error);
    if (n == 0) {
        return error;
    }
    const GripperSnapshot s = simulator_.snapshot(n);
    return fmt::format(
        "initialised={} position={} target={} force={} speed={} motion={} held={} rx={} tx={} "
        "fault={}",
        s.initialised ? 1 : 0, s.position, s.target, s.force, s.speed, s.motion_state,
        s.object_held ? 1 : 0, s.frames_received, s.answers_sent, fault_name(simulator_.fault(n)));
}

std::string ControlCommands::fault(const Words& words) {
    std::string error;
    const int n = gripper(words, error);
    if (n == 0) {
        return error;
    }
    Fault fault = Fault::none;
    if (words.size() != 3 || !parse_fault(words[2], fault)) {
        return "error: usage: fault N NAME, NAME one of: " + fault_names();
    }
    simulator_.set_fault(n, fault);
    return "ok";
}

std::string ControlCommands::object(const Words& words) {
    std::string error;
    const int n = gripper(words, error);
    if (n == 0) {
        return error;
    }
    int position = -1;
    if (words.size() != 3 || (words[2] != "none" && !parse_count(words[2], position))) {
        return "error: usage: object N POS|none";
    }
    simulator_.set_object(n, position);
    return "ok";
}

std::string ControlCommands::drop(const Words& words) {
    std::string error;
    const int n = gripper(words, error);
    if (n == 0) {
        return error;
    }
    const bool next = words.size() == 3 && words[2] == "next";
    if (words.size() > 3 || (words.size() == 3 && !next)) {
        return "error: usage: drop N [next]";
    }
    if (!simulator_.snapshot(n).object_held) {
        return fmt::format("error: gripper {} holds no object", n);
    }
    if (next) {
        simulator_.drop_during_next_exchange(n);
    } else {
        simulator_.drop(n);
    }
    return "ok";
}

std::string ControlCommands::trace(const Words& words) {
    if (words.size() != 2 || (words[1] != "on" && words[1] != "off")) {
        return "error: usage: trace on|off";
    }
    simulator_.set_trace(words[1] == "on");
    return "ok";
}

int ControlCommands::gripper(const Words& words, std::string& error) const {
    int n = 0;
    if (words.size() < 2 || !parse_count(words[1], n)) {
        error = "error: " + words[0] + " needs a gripper number";
        return 0;
    }
    if (n < 1 || n > simulator_.count()) {
        error = fmt::format("error: no gripper {}", n);
        return 0;
    }
    return n;
}

}  // namespace gripper_sim
