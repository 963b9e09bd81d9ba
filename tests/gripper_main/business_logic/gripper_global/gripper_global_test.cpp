#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "gripper_main/business_logic/gripper_global/gripper_global.h"
#include "tests/test_support/log_capture.h"
#include "tests/test_support/registry_journal.h"

namespace {

// On a list change adds many observers (so that the list grows and moves in memory) and
// removes next, as a page that rebuilds its parts might.
class ReshapingObserver : public RegistryJournal {
public:
    ReshapingObserver(std::vector<std::string>& journal, GripperGlobal::NotifyInterface* next)
        : RegistryJournal("reshaping", journal), next_(next), extra_(64, {"extra", journal}) {}
    void on_list_all_device_changed() override {
        RegistryJournal::on_list_all_device_changed();
        for (RegistryJournal& extra : extra_) {
            GripperGlobal::instance().add_notify_interface(&extra);
        }
        GripperGlobal::instance().remove_notify_interface(next_);
    }

    GripperGlobal::NotifyInterface* next_;
    std::vector<RegistryJournal> extra_;
};

// The registry is process-wide: every test leaves it empty, stopped and without observers.
class GripperGlobalTest : public ::testing::Test {
protected:
    void TearDown() override {
        std::vector<GripperGlobal::NotifyInterface*> observers{&first_, &second_, &reshaping_};
        for (RegistryJournal& extra : reshaping_.extra_) {
            observers.push_back(&extra);
        }
        for (GripperGlobal::NotifyInterface* observer : observers) {
            registry_.remove_notify_interface(observer);
        }
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
    ReshapingObserver reshaping_{journal_, &second_};
};

}  // namespace

// Slots are added once, found by index and removed in index order; observers are called in
// order, once per change, and a removed one no more.
TEST_F(GripperGlobalTest, SlotsAndObservers) {
    EXPECT_EQ(nullptr, registry_.get_device(0));
    EXPECT_EQ((std::vector<std::string>{
                  "W vector_device_.size() <= static_cast<unsigned long long>(index)",
                  "W vector_device_.size() = 0", "W static_cast<unsigned long long>(index) = 0"}),
              log_.lines());
    for (RegistryJournal* observer : {&first_, &second_, &first_}) {
        registry_.add_notify_interface(observer);
    }
    GripperDevice* a = add_new_device();
    GripperDevice* b = add_new_device();
    GripperDevice* c = add_new_device();
    registry_.set_program_state(GripperGlobal::PS_RUNNING);
    registry_.set_program_state(GripperGlobal::PS_RUNNING);
    EXPECT_EQ(GripperGlobal::PS_RUNNING, registry_.get_program_state());
    EXPECT_EQ(8u, journal_.size());
    EXPECT_EQ((std::vector<std::string>{"first state 1", "second state 1"}),
              std::vector<std::string>(journal_.begin() + 6, journal_.end()));
    EXPECT_EQ(nullptr, a->gripper_abstract_control_);
    EXPECT_EQ(nullptr, registry_.get_device(0xFFFFFFFFu));
    EXPECT_TRUE(log_.contains("vector_device_.size() = 3"));

    log_.clear();
    journal_.clear();
    EXPECT_FALSE(registry_.add_device(b));
    EXPECT_EQ(std::vector<std::string>{"W contain"}, log_.lines());
    GripperDevice unknown;
    EXPECT_TRUE(registry_.remove_device(&unknown));
    registry_.remove_notify_interface(&first_);
    registry_.remove_notify_interface(&first_);
    EXPECT_TRUE(registry_.remove_device(b));
    EXPECT_EQ(std::vector<std::string>{"second list"}, journal_);
    EXPECT_EQ((std::vector<GripperDevice*>{a, c}), registry_.vector_device());
    EXPECT_EQ(c, registry_.get_device(1));
    delete b;
}

// An observer removed while notified is not called any more; added ones from the next change.
TEST_F(GripperGlobalTest, ObserversMayAddAndRemoveObserversWhileNotified) {
    registry_.add_notify_interface(&reshaping_);
    registry_.add_notify_interface(&second_);
    add_new_device();
    EXPECT_EQ(std::vector<std::string>{"reshaping list"}, journal_);
    journal_.clear();
    add_new_device();
    EXPECT_EQ(65u, journal_.size());
    EXPECT_EQ("extra list", journal_.back());
}
