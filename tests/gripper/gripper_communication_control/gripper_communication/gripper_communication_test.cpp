#include "gripper/gripper_communication_control/gripper_communication/gripper_communication.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "tests/test_support/log_capture.h"

namespace {

using Status = GripperCommunication::CommunicationStatus;
using Connection = GripperCommunication::CommunicationConnection;

static_assert(std::is_abstract<GripperCommunication>::value, "the link is abstract");
static_assert(std::has_virtual_destructor<GripperCommunication>::value,
              "links are deleted by base");
static_assert(!std::is_copy_constructible<GripperCommunication>::value, "a link is not copied");
static_assert(sizeof(Status) == 4 && sizeof(Connection) == 4, "32-bit enumerations");

TEST(GripperCommunicationTest, NamesEachCommunicationStatus) {
    const std::vector<std::pair<Status, std::string>> names = {
        {GripperCommunication::CS_UNDEFINE, "CS_UNDEFINE"},
        {GripperCommunication::CS_UNCONNECTED, "CS_UNCONNECTED"},
        {GripperCommunication::CS_CONNECT_FAILURE, "CS_CONNECT_FAILURE"},
        {GripperCommunication::CS_CONNECTED, "CS_CONNECTED"},
        {GripperCommunication::CS_DISCONNECTED, "CS_DISCONNECTED"},
        {GripperCommunication::CS_WRITE_EXCEPTION, "CS_WRITE_EXCEPTION"},
        {GripperCommunication::CS_READ_EXCEPTION, "CS_READ_EXCEPTION"},
        {GripperCommunication::CS_ALIVE_EXCEPTION, "CS_ALIVE_EXCEPTION"},
        {GripperCommunication::CS_VERSION_EXCEPTION, "CS_VERSION_EXCEPTION"},
        {GripperCommunication::CS_DEVICE_EXCEPTION, "CS_DEVICE_EXCEPTION"}};
    LogCapture log;
    for (size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(static_cast<int>(i), names[i].first);
        EXPECT_EQ(names[i].second,
                  GripperCommunication::communication_status_to_string(names[i].first));
        EXPECT_EQ(names[i].first,
                  GripperCommunication::string_to_communication_status(names[i].second));
    }
    EXPECT_TRUE(log.lines().empty());

    EXPECT_EQ("", GripperCommunication::communication_status_to_string(static_cast<Status>(10)));
    EXPECT_EQ("", GripperCommunication::communication_status_to_string(static_cast<Status>(-1)));
    EXPECT_EQ(GripperCommunication::CS_UNDEFINE,
              GripperCommunication::string_to_communication_status("cs_connected"));
    EXPECT_EQ(GripperCommunication::CS_UNDEFINE,
              GripperCommunication::string_to_communication_status("CS_CONNECTED_"));
    ASSERT_EQ(4u, log.lines().size());
    EXPECT_TRUE(log.contains("uncontain this 10"));
    EXPECT_TRUE(log.contains("uncontain this -1"));
    EXPECT_TRUE(log.contains("uncontain this cs_connected"));
    EXPECT_TRUE(log.contains("uncontain this CS_CONNECTED_"));
}

TEST(GripperCommunicationTest, NamesEachCommunicationConnection) {
    const std::vector<std::pair<Connection, std::string>> names = {
        {GripperCommunication::CC_UNDEFINE, "CC_UNDEFINE"},
        {GripperCommunication::CC_TCP_CLIENT, "CC_TCP_CLIENT"},
        {GripperCommunication::CC_USB_SERIALPORT, "CC_USB_SERIALPORT"},
        {GripperCommunication::CC_FIXED_PORT, "CC_FIXED_PORT"}};
    LogCapture log;
    for (size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(static_cast<int>(i), names[i].first);
        EXPECT_EQ(names[i].second,
                  GripperCommunication::communication_connection_to_string(names[i].first));
        EXPECT_EQ(names[i].first,
                  GripperCommunication::string_to_communication_connection(names[i].second));
    }
    EXPECT_TRUE(log.lines().empty());

    EXPECT_EQ(
        "", GripperCommunication::communication_connection_to_string(static_cast<Connection>(10)));
    EXPECT_EQ(GripperCommunication::CC_UNDEFINE,
              GripperCommunication::string_to_communication_connection("cc_usb_serialport"));
    EXPECT_EQ(GripperCommunication::CC_UNDEFINE,
              GripperCommunication::string_to_communication_connection("CS_CONNECTED"));
    ASSERT_EQ(3u, log.lines().size());
    EXPECT_TRUE(log.contains("uncontain this 10"));
    EXPECT_TRUE(log.contains("uncontain this cc_usb_serialport"));
    EXPECT_TRUE(log.contains("uncontain this CS_CONNECTED"));
}

// The smallest concrete link; deleting it through the base runs the base's destructor body.
class IdleLink : public GripperCommunication {
public:
    explicit IdleLink(bool* destroyed) : destroyed_(destroyed) {}
    ~IdleLink() override { *destroyed_ = true; }
    CommunicationConnection get_communication_connection() override { return CC_TCP_CLIENT; }
    bool open(const std::vector<std::string>&) override { return false; }
    bool handshake_check() override { return false; }
    bool is_alive() override { return false; }
    bool close() override { return false; }
    std::vector<uint8_t> read(int) override { return {}; }
    std::vector<uint8_t> write_read(bool, int, const std::vector<uint8_t>&) override { return {}; }
    bool write(const std::vector<uint8_t>&) override { return false; }
    int available() override { return 0; }
    int get_write_retry_max_count() override { return 1; }
    int get_wait_retry_max_count() override { return 4; }
    int get_alive_retry_max_count() override { return 4; }
    int get_default_wait_for_length_available_interval() override { return 100; }

private:
    bool* destroyed_;
};

TEST(GripperCommunicationTest, ConcreteLinkIsDeletedThroughTheBase) {
    bool destroyed = false;
    std::unique_ptr<GripperCommunication> link(new IdleLink(&destroyed));
    EXPECT_EQ(GripperCommunication::CC_TCP_CLIENT, link->get_communication_connection());
    link.reset();
    EXPECT_TRUE(destroyed);
}

}  // namespace
