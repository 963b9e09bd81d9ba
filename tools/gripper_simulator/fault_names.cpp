#include "tools/gripper_simulator/fault_names.h"

#include <utility>

namespace gripper_sim {
namespace {

const std::pair<Fault, const char*> kNames[] = {
    {Fault::none, "none"},
    {Fault::silent, "silent"},
    {Fault::late, "late"},
    {Fault::bad_crc, "bad_crc"},
    {Fault::wrong_id, "wrong_id"},
    {Fault::short_answer, "short_answer"},
    {Fault::long_answer, "long_answer"},
    {Fault::garbage, "garbage"},
    {Fault::reset, "reset"},
    {Fault::vanish, "vanish"},
};

}  // namespace

std::string fault_name(Fault fault) {
    for (const auto& entry : kNames) {
        if (entry.first == fault) {
            return entry.second;
        }
    }
    return "unknown";
}

bool parse_fault(const std::string& name, Fault& fault) {
    for (const auto& entry : kNames) {
        if (name == entry.second) {
            fault = entry.first;
            return true;
        }
    }
    return false;
}

std::string fault_names() {
    std::string names;
    for (const auto& entry : kNames) {
        names += names.empty() ? "" : " ";
        names += entry.second;
    }
    return names;
}

}  // namespace gripper_sim
