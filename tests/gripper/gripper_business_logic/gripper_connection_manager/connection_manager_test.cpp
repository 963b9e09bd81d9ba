#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/gripper/gripper_business_logic/gripper_connection_manager/connection_recorder.h"
#include "tests/test_support/log_capture.h"
#include "tools/gripper_simulator/simulator.h"

namespace {

typedef std::vector<std::string> Names;

// A link type and the parameters that reach one gripper over it.
struct Link {
    std::string name;
    GripperCommunication::CommunicationConnection connection;
    std::vector<std::string> parameters;
};

long count(const Names& names, const std::string& name) {
    return std::count(names.begin(), names.end(), name);
}

// The manager is process-wide: every test destroys what it created and unregisters its
// observer. Destroyed drivers stay allocated by design; the test frees them at the end.
class ConnectionManagerTest : public ::testing::Test {
protected:
    void SetUp() override { manager_.add_notify_interface(&recorder_); }

    void TearDown() override {
        manager_.remove_notify_interface(&recorder_);
        for (const ConnectionRecorder::Event& event : recorder_.events()) {
            if ("create" == event.name) {
                delete event.control;
            }
        }
    }

    Link modbus_pty(gripper_sim::Fault fault = gripper_sim::Fault::none) {
        const int gripper = simulator_.add_modbus_pty(gripper_sim::GripperOptions());
        simulator_.set_fault(gripper, fault);
        return Link{"modbus pty",
                    GripperCommunication::CC_USB_SERIALPORT,
                    {"CO_MANUAL", simulator_.endpoint(gripper)}};
    }

    Link custom_pty() {
        const int gripper = simulator_.add_custom_pty(gripper_sim::GripperOptions());
        return Link{"custom pty",
                    GripperCommunication::CC_USB_SERIALPORT,
                    {"CO_MANUAL", simulator_.endpoint(gripper)}};
    }

    Link custom_tcp(gripper_sim::Fault fault = gripper_sim::Fault::none) {
        gripper_sim::GripperOptions options;
        options.position_max = 100;
        const int gripper = simulator_.add_custom_tcp(options);
        simulator_.set_fault(gripper, fault);
        return Link{"custom tcp",
                    GripperCommunication::CC_TCP_CLIENT,
                    {"CO_MANUAL", "127.0.0.1", std::to_string(simulator_.tcp_port(gripper))}};
    }

    // Connects, checks the order of the announcements, then disconnects and checks again.
    void connect_and_disconnect(const Link& link) {
        const size_t first = recorder_.size();
        GripperLogicControl* driver = manager_.create(&recorder_, link.connection, link.parameters);
        ASSERT_NE(nullptr, driver);
        const Names connecting = recorder_.names(first);
        EXPECT_EQ("create", connecting.front());
        EXPECT_EQ("CS_CONNECTED", connecting.back());
        EXPECT_EQ(1, count(connecting, "CS_CONNECTED"));
        // Learnt by the read-back before the connection is announced.
        EXPECT_EQ(1, count(connecting, "GS_INACTIVATE"));
        EXPECT_EQ(GripperCommunication::CS_CONNECTED, driver->get_communication_status());

        const size_t disconnect_from = recorder_.size();
        EXPECT_TRUE(manager_.destroy(driver));
        EXPECT_EQ((Names{"GS_UNDEFINE", "CS_DISCONNECTED", "destroy"}),
                  recorder_.names(disconnect_from));
        EXPECT_EQ(GripperCommunication::CS_DISCONNECTED, driver->get_communication_status());
        EXPECT_EQ(GripperLogicControl::GS_UNDEFINE, driver->get_gripper_status());
    }

    GripperConnectionManager& manager_ = GripperConnectionManager::instance();
    LogCapture log_;
    gripper_sim::Simulator simulator_;
    ConnectionRecorder recorder_;
};

}  // namespace

TEST_F(ConnectionManagerTest, LinkTypeWithoutALinkClassCreatesNothingAndTellsNobody) {
    const std::vector<GripperCommunication::CommunicationConnection> connections = {
        GripperCommunication::CC_FIXED_PORT, GripperCommunication::CC_UNDEFINE};
    for (GripperCommunication::CommunicationConnection connection : connections) {
        const std::string name =
            GripperCommunication::communication_connection_to_string(connection);
        log_.clear();
        EXPECT_EQ(nullptr, manager_.create(&recorder_, connection, {"CO_MANUAL", "/dev/ttyUSB0"}));
        EXPECT_EQ((Names{"W GripperCommunication::CommunicationConnection::CC_UNDEFINE",
                         "W NULL == device", "W connection = " + name, "W iter = CO_MANUAL",
                         "W iter = /dev/ttyUSB0"}),
                  log_.lines());
    }
    EXPECT_EQ(0u, recorder_.size());
}

TEST_F(ConnectionManagerTest, FailedConnectionIsUndoneAndEveryoneHearsOfItInOrder) {
    const Names silent = {"create", "CS_READ_EXCEPTION", "CS_CONNECT_FAILURE", "CS_DISCONNECTED",
                          "destroy"};
    const std::vector<std::pair<Link, Names>> failing = {
        {modbus_pty(gripper_sim::Fault::silent), silent},
        {custom_tcp(gripper_sim::Fault::silent), silent},
        {Link{"missing port",
              GripperCommunication::CC_USB_SERIALPORT,
              {"CO_MANUAL", "/dev/no_such_port"}},
         {"create", "CS_CONNECT_FAILURE", "CS_DISCONNECTED", "destroy"}},
    };
    for (const std::pair<Link, Names>& attempt : failing) {
        SCOPED_TRACE(attempt.first.name);
        const size_t first = recorder_.size();
        log_.clear();
        EXPECT_EQ(nullptr,
                  manager_.create(&recorder_, attempt.first.connection, attempt.first.parameters));
        EXPECT_EQ(attempt.second, recorder_.names(first));
        const std::vector<ConnectionRecorder::Event> events = recorder_.events();
        for (size_t index = first; index < events.size(); ++index) {
            EXPECT_EQ(events[first].control, events[index].control) << events[index].name;
        }
        EXPECT_TRUE(log_.contains("!ret"));
        EXPECT_TRUE(log_.contains("private_->thread_start_"));
    }
}

TEST_F(ConnectionManagerTest, ConnectsAndDisconnectsOverEveryLinkAndReconnects) {
    const std::vector<Link> links = {modbus_pty(), custom_pty(), custom_tcp()};
    for (const Link& link : links) {
        SCOPED_TRACE(link.name);
        connect_and_disconnect(link);
        connect_and_disconnect(link);
    }
}

TEST_F(ConnectionManagerTest, ObserversAreAddedOnceAndCanBeRemoved) {
    ConnectionRecorder other;
    manager_.add_notify_interface(&recorder_);
    manager_.add_notify_interface(&other);
    manager_.remove_notify_interface(&other);
    manager_.remove_notify_interface(&other);

    // Without an observer of its own the driver's status changes reach nobody.
    EXPECT_EQ(nullptr, manager_.create(nullptr, GripperCommunication::CC_USB_SERIALPORT,
                                       {"CO_MANUAL", "/dev/no_such_port"}));
    EXPECT_EQ((Names{"create", "destroy"}), recorder_.names());
    EXPECT_EQ(0u, other.size());
}

TEST_F(ConnectionManagerTest, DestroyOfNothingIsRefused) {
    EXPECT_FALSE(manager_.destroy(nullptr));
    EXPECT_TRUE(log_.contains("NULL == device"));
    EXPECT_EQ(0u, recorder_.size());
}
