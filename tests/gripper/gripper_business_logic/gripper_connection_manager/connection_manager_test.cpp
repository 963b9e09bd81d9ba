#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "tests/test_support/log_capture.h"
#include "tests/test_support/recording_observer.h"
#include "tests/test_support/wait_until.h"
#include "tools/gripper_simulator/simulator.h"

namespace {

typedef GripperCommunication GC;
typedef std::vector<std::string> Names;

// A link type and the parameters that reach one gripper over it.
struct Link {
    std::string name;
    GC::CommunicationConnection connection;
    std::vector<std::string> parameters;
};

// On the first position the update thread reports once armed, destroys its driver through the
// manager, then waits a while for the test thread to delete the driver: a deletion that does
// not wait for the cycle to end would happen meanwhile, and the cycle would go on in freed
// memory.
class DestroyingObserver : public RecordingObserver {
public:
    void arm() {
        caller_ = std::this_thread::get_id();
        armed_ = true;
    }
    void on_position_changed(GripperLogicControl* control, float position) override {
        RecordingObserver::on_position_changed(control, position);
        if (!armed_ || std::this_thread::get_id() == caller_) {
            return;
        }
        armed_ = false;
        destroyed_ = GripperConnectionManager::instance().destroy(control);
        deleted_in_cycle_ =
            wait_until([this] { return deleted_.load(); }, std::chrono::milliseconds(300));
        waited_ = true;
    }

    std::atomic<bool> destroyed_{false};
    std::atomic<bool> deleted_{false};
    std::atomic<bool> deleted_in_cycle_{false};
    std::atomic<bool> waited_{false};

private:
    std::thread::id caller_;
    std::atomic<bool> armed_{false};
};

// The manager is process-wide: every test destroys what it created and unregisters its
// observer. Destroyed drivers stay allocated by design; the test frees them at the end.
class ConnectionManagerTest : public ::testing::Test {
protected:
    void SetUp() override { manager_.add_notify_interface(&recorder_); }

    void TearDown() override {
        manager_.remove_notify_interface(&recorder_);
        for (const RecordingObserver::Event& event : recorder_.entries()) {
            if ("create" == event.name) {
                delete event.control;
            }
        }
    }

    // A simulated gripper, "modbus pty", "custom pty" or "custom tcp", and the link to it.
    Link gripper(const std::string& kind, gripper_sim::Fault fault = gripper_sim::Fault::none) {
        gripper_sim::GripperOptions options;
        options.position_max = ("custom tcp" == kind) ? 100 : 1000;
        const int n = ("modbus pty" == kind)   ? simulator_.add_modbus_pty(options)
                      : ("custom pty" == kind) ? simulator_.add_custom_pty(options)
                                               : simulator_.add_custom_tcp(options);
        simulator_.set_fault(n, fault);
        if ("custom tcp" == kind) {
            return {kind,
                    GC::CC_TCP_CLIENT,
                    {"CO_MANUAL", "127.0.0.1", std::to_string(simulator_.tcp_port(n))}};
        }
        return {kind, GC::CC_USB_SERIALPORT, {"CO_MANUAL", simulator_.endpoint(n)}};
    }

    GripperConnectionManager& manager_ = GripperConnectionManager::instance();
    LogCapture log_;
    gripper_sim::Simulator simulator_;
    RecordingObserver recorder_{false};
};

}  // namespace

// A link type without a link class creates nothing and tells nobody. Observers are added once;
// the status changes of a driver without an observer of its own reach nobody.
TEST_F(ConnectionManagerTest, RefusedCreatesAndDestroysTellOnlyTheManagersObservers) {
    for (GC::CommunicationConnection connection : {GC::CC_FIXED_PORT, GC::CC_UNDEFINE}) {
        log_.clear();
        EXPECT_EQ(nullptr, manager_.create(&recorder_, connection, {"CO_MANUAL", "/dev/ttyUSB0"}));
        EXPECT_EQ((Names{"W GripperCommunication::CommunicationConnection::CC_UNDEFINE",
                         "W NULL == device",
                         "W connection = " + GC::communication_connection_to_string(connection),
                         "W iter = CO_MANUAL", "W iter = /dev/ttyUSB0"}),
                  log_.lines());
    }
    RecordingObserver other(false);
    manager_.add_notify_interface(&recorder_);
    manager_.add_notify_interface(&other);
    manager_.remove_notify_interface(&other);
    manager_.remove_notify_interface(&other);
    EXPECT_EQ(nullptr,
              manager_.create(nullptr, GC::CC_USB_SERIALPORT, {"CO_MANUAL", "/dev/no_such_port"}));
    EXPECT_EQ((Names{"create", "destroy"}), recorder_.events());
    EXPECT_EQ(0u, other.size());
    log_.clear();
    EXPECT_FALSE(manager_.destroy(nullptr));
    EXPECT_TRUE(log_.contains("NULL == device"));
    EXPECT_EQ(2u, recorder_.size());
}

// A silent gripper over either link: the caller gets the link's last failure as a value, and
// everyone hears of the failure in order.
TEST_F(ConnectionManagerTest, FailedConnectionIsUndoneAndEveryoneHearsOfItInOrder) {
    const struct {
        Link link;
        const char* sentence;
    } failing[] = {
        {gripper("modbus pty", gripper_sim::Fault::silent), "count > 3"},
        {gripper("custom tcp", gripper_sim::Fault::silent),
         "!waitForLengthAvailable(readLength, getDefaultWaitForLengthAvailableInterval())"},
    };
    for (const auto& attempt : failing) {
        SCOPED_TRACE(attempt.link.name);
        const size_t first = recorder_.size();
        log_.clear();
        GripperLinkFailure failure;
        EXPECT_EQ(nullptr, manager_.create(&recorder_, attempt.link.connection,
                                           attempt.link.parameters, &failure));
        EXPECT_EQ((Names{"create", "CS_READ_EXCEPTION", "CS_CONNECT_FAILURE", "CS_DISCONNECTED",
                         "destroy"}),
                  recorder_.events(first));
        EXPECT_EQ(GripperLinkFailure::LF_TIMEOUT, failure.code);
        EXPECT_EQ(attempt.sentence, failure.sentence);
        const std::vector<RecordingObserver::Event> events = recorder_.entries();
        for (size_t index = first; index < events.size(); ++index) {
            EXPECT_EQ(events[first].control, events[index].control) << events[index].name;
        }
        EXPECT_TRUE(log_.contains("!ret"));
    }
}

// The state learnt by the read-back is announced before the connection; twice over every link.
TEST_F(ConnectionManagerTest, ConnectsAndDisconnectsOverEveryLinkAndReconnects) {
    const Names connected = {"create", "GS_INACTIVATE", "CS_CONNECTED"};
    const struct {
        const char* kind;
        Names connecting;
    } links[] = {
        {"modbus pty", connected},
        // A frame-protocol gripper leaves the Modbus id request unanswered first.
        {"custom pty", {"create", "CS_READ_EXCEPTION", "GS_INACTIVATE", "CS_CONNECTED"}},
        {"custom tcp", connected},
    };
    for (const auto& row : links) {
        SCOPED_TRACE(row.kind);
        const Link link = gripper(row.kind);
        for (int round = 0; round < 2; ++round) {
            const size_t first = recorder_.size();
            GripperLogicControl* driver =
                manager_.create(&recorder_, link.connection, link.parameters);
            ASSERT_NE(nullptr, driver);
            EXPECT_EQ(row.connecting, recorder_.events(first));
            EXPECT_TRUE(manager_.destroy(driver));
            EXPECT_EQ((Names{"GS_UNDEFINE", "CS_DISCONNECTED", "destroy"}),
                      recorder_.events(first + row.connecting.size()));
        }
    }
}

TEST_F(ConnectionManagerTest, DriverDestroyedFromItsOwnCycleIsDeletedOnlyOnceTheCycleEnded) {
    // This test deletes the driver itself, while the fixture would delete it again.
    manager_.remove_notify_interface(&recorder_);
    const Link link = gripper("modbus pty");
    DestroyingObserver observer;
    GripperLogicControl* driver = manager_.create(&observer, link.connection, link.parameters);
    ASSERT_NE(nullptr, driver);
    ASSERT_TRUE(driver->set_activate());
    ASSERT_TRUE(wait_until([&] { return observer.seen("GS_ACTIVATED"); }));
    observer.arm();
    ASSERT_TRUE(driver->set_position(50.0f));

    ASSERT_TRUE(wait_until([&] { return observer.destroyed_.load(); }));
    delete driver;
    observer.deleted_ = true;
    ASSERT_TRUE(wait_until([&] { return observer.waited_.load(); }));
    EXPECT_FALSE(observer.deleted_in_cycle_);
    EXPECT_TRUE(observer.seen("CS_DISCONNECTED"));
    EXPECT_TRUE(log_.contains("pthread_equal(pthread_self(), private_->thread_)"));
}
