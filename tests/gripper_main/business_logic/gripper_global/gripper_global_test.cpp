#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "gripper_main/business_logic/gripper_global/gripper_global.h"
#include "tests/test_support/log_capture.h"
#include "tests/test_support/registry_journal.h"

// Slots are added once, found by index and removed in index order; observers are called in
// order, once per change, and a removed one no more.
TEST(GripperGlobalTest, SlotsAndObservers) {
    GripperGlobal& registry = GripperGlobal::instance();
    LogCapture log;
    std::vector<std::string> journal;
    RegistryJournal first("first", journal), second("second", journal);
    EXPECT_EQ(nullptr, registry.get_device(0));
    EXPECT_EQ((std::vector<std::string>{
                  "W vector_device_.size() <= static_cast<unsigned long long>(index)",
                  "W vector_device_.size() = 0", "W static_cast<unsigned long long>(index) = 0"}),
              log.lines());
    for (RegistryJournal* observer : {&first, &second, &first}) {
        registry.add_notify_interface(observer);
    }
    std::unique_ptr<GripperDevice> devices[3];
    for (std::unique_ptr<GripperDevice>& device : devices) {
        device.reset(GripperGlobal::insert_device());
        EXPECT_TRUE(registry.add_device(device.get()));
    }
    registry.set_program_state(GripperGlobal::PS_RUNNING);
    registry.set_program_state(GripperGlobal::PS_RUNNING);
    EXPECT_EQ(GripperGlobal::PS_RUNNING, registry.get_program_state());
    EXPECT_EQ(8u, journal.size());
    EXPECT_EQ((std::vector<std::string>{"first state 1", "second state 1"}),
              std::vector<std::string>(journal.begin() + 6, journal.end()));
    EXPECT_EQ(nullptr, devices[0]->gripper_abstract_control_);
    EXPECT_EQ(nullptr, registry.get_device(0xFFFFFFFFu));
    EXPECT_TRUE(log.contains("vector_device_.size() = 3"));

    log.clear();
    journal.clear();
    EXPECT_FALSE(registry.add_device(devices[1].get()));
    EXPECT_EQ(std::vector<std::string>{"W contain"}, log.lines());
    GripperDevice unknown;
    EXPECT_TRUE(registry.remove_device(&unknown));
    registry.remove_notify_interface(&first);
    registry.remove_notify_interface(&first);
    EXPECT_TRUE(registry.remove_device(devices[1].get()));
    EXPECT_EQ(std::vector<std::string>{"second list"}, journal);
    EXPECT_EQ((std::vector<GripperDevice*>{devices[0].get(), devices[2].get()}),
              registry.vector_device());
    EXPECT_EQ(devices[2].get(), registry.get_device(1));
    registry.remove_notify_interface(&second);
    // The registry frees the records it still holds at exit.
    devices[0].release();
    devices[2].release();
}
