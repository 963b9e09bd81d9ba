#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "gripper_main/business_logic/gripper_global/gripper_global.h"
#include "tests/test_support/log_capture.h"
#include "tests/test_support/registry_journal.h"

namespace {

// The registry is process-wide: every test leaves it empty, stopped and without observers.
class GripperGlobalTest : public ::testing::Test {
protected:
    void TearDown() override {
        registry_.remove_notify_interface(&first_);
        registry_.remove_notify_interface(&second_);
        for (GripperDevice* device : registry_.vector_device()) {
            registry_.remove_device(device);
            delete device;
        }
        registry_.set_program_state(GripperGlobal::PS_STOPPED);
    }

    GripperDevice* add_new_device() {
        GripperDevice* device = GripperGlobal::insert_device();
        EXPECT_TRUE(registry_.add_device(device));
        return device;
    }

    GripperGlobal& registry_ = GripperGlobal::instance();
    LogCapture log_;
    std::vector<std::string> journal_;
    RegistryJournal first_{"first", journal_};
    RegistryJournal second_{"second", journal_};
};

}  // namespace

TEST_F(GripperGlobalTest, SlotsAreAddedOnceFoundByIndexAndRemovedInIndexOrder) {
    EXPECT_EQ(nullptr, registry_.get_device(0));
    EXPECT_EQ((std::vector<std::string>{
                  "W vector_device_.size() <= static_cast<unsigned long long>(index)",
                  "W vector_device_.size() = 0", "W static_cast<unsigned long long>(index) = 0"}),
              log_.lines());
    registry_.add_notify_interface(&first_);
    GripperDevice* a = add_new_device();
    GripperDevice* b = add_new_device();
    GripperDevice* c = add_new_device();
    EXPECT_EQ(3u, journal_.size());
    EXPECT_EQ(nullptr, a->gripper_abstract_control_);
    EXPECT_EQ(nullptr, registry_.get_device(0xFFFFFFFFu));
    EXPECT_TRUE(log_.contains("vector_device_.size() = 3"));

    log_.clear();
    journal_.clear();
    EXPECT_FALSE(registry_.add_device(b));
    EXPECT_EQ(std::vector<std::string>{"W contain"}, log_.lines());
    GripperDevice unknown;
    EXPECT_TRUE(registry_.remove_device(&unknown));
    EXPECT_TRUE(journal_.empty());
    EXPECT_TRUE(registry_.remove_device(b));
    EXPECT_EQ(std::vector<std::string>{"first list"}, journal_);
    EXPECT_EQ((std::vector<GripperDevice*>{a, c}), registry_.vector_device());
    EXPECT_EQ(c, registry_.get_device(1));
    delete b;
}

TEST_F(GripperGlobalTest, ObserversAreCalledInOrderOncePerChange) {
    registry_.add_notify_interface(&first_);
    registry_.add_notify_interface(&second_);
    registry_.add_notify_interface(&first_);
    EXPECT_EQ(GripperGlobal::PS_STOPPED, registry_.get_program_state());
    registry_.set_program_state(GripperGlobal::PS_RUNNING);
    registry_.set_program_state(GripperGlobal::PS_RUNNING);
    EXPECT_EQ(GripperGlobal::PS_RUNNING, registry_.get_program_state());
    EXPECT_EQ((std::vector<std::string>{"first state 1", "second state 1"}), journal_);

    journal_.clear();
    registry_.remove_notify_interface(&first_);
    registry_.remove_notify_interface(&first_);
    registry_.set_program_state(GripperGlobal::PS_STOPPED);
    add_new_device();
    EXPECT_EQ((std::vector<std::string>{"second state 0", "second list"}), journal_);
}

namespace {

// On each notification adds many observers (so that the list grows and moves in memory) and
// removes the one after it, as a page that rebuilds its parts might.
class ReshapingObserver : public RegistryJournal {
public:
    ReshapingObserver(std::vector<std::string>& journal, GripperGlobal::NotifyInterface* next)
        : RegistryJournal("reshaping", journal), next_(next), extra_(64, {"extra", journal}) {}
    ~ReshapingObserver() {
        for (RegistryJournal& extra : extra_) {
            GripperGlobal::instance().remove_notify_interface(&extra);
        }
        GripperGlobal::instance().remove_notify_interface(this);
    }
    void on_list_all_device_changed() override {
        RegistryJournal::on_list_all_device_changed();
        for (RegistryJournal& extra : extra_) {
            GripperGlobal::instance().add_notify_interface(&extra);
        }
        GripperGlobal::instance().remove_notify_interface(next_);
    }

private:
    GripperGlobal::NotifyInterface* next_;
    std::vector<RegistryJournal> extra_;
};

}  // namespace

// The removed observer is not called any more; the new ones are called from the next change.
TEST_F(GripperGlobalTest, ObserversMayAddAndRemoveObserversWhileNotified) {
    ReshapingObserver reshaping(journal_, &second_);
    registry_.add_notify_interface(&reshaping);
    registry_.add_notify_interface(&second_);
    add_new_device();
    EXPECT_EQ(std::vector<std::string>{"reshaping list"}, journal_);
    journal_.clear();
    add_new_device();
    EXPECT_EQ(65u, journal_.size());
    EXPECT_EQ("extra list", journal_.back());
}
