#ifndef TESTS_TEST_SUPPORT_REGISTRY_JOURNAL_H
#define TESTS_TEST_SUPPORT_REGISTRY_JOURNAL_H

#include <string>
#include <vector>

#include "gripper_main/business_logic/gripper_global/gripper_global.h"

// Records the registry's notifications in a journal shared with other recorders, as
// "<name> list" and "<name> state <n>", and the registry's list at every change.
class RegistryJournal : public GripperGlobal::NotifyInterface {
public:
    RegistryJournal(const std::string& name, std::vector<std::string>& journal)
        : name_(name), journal_(journal) {}
    void on_list_all_device_changed() override {
        journal_.push_back(name_ + " list");
        lists.push_back(GripperGlobal::instance().vector_device());
    }
    void on_program_state_changed(GripperGlobal::ProgramState state) override {
        journal_.push_back(name_ + " state " + std::to_string(state));
    }
    void on_program_startup() override {}

    std::vector<std::vector<GripperDevice*>> lists;

private:
    std::string name_;
    std::vector<std::string>& journal_;
};

#endif
