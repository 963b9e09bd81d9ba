#include "gripper/gripper_communication_control/gripper_communication/gripper_communication.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/test_support/log_capture.h"

namespace {

typedef GripperCommunication GC;

// The names of the first and last values round-trip (the others are used by every link and
// driver test); values and names outside the enumerations give "" or the undefined value, logged.
TEST(GripperCommunicationTest, NamesStatusesAndConnections) {
    LogCapture log;
    EXPECT_EQ("CS_UNDEFINE", GC::communication_status_to_string(GC::CS_UNDEFINE));
    EXPECT_EQ(GC::CS_DEVICE_EXCEPTION, GC::string_to_communication_status("CS_DEVICE_EXCEPTION"));
    EXPECT_EQ(9, GC::CS_DEVICE_EXCEPTION);
    EXPECT_EQ("CC_UNDEFINE", GC::communication_connection_to_string(GC::CC_UNDEFINE));
    EXPECT_EQ(GC::CC_FIXED_PORT, GC::string_to_communication_connection("CC_FIXED_PORT"));
    EXPECT_EQ(3, GC::CC_FIXED_PORT);
    EXPECT_TRUE(log.lines().empty());

    EXPECT_EQ("", GC::communication_status_to_string(static_cast<GC::CommunicationStatus>(10)));
    EXPECT_EQ("", GC::communication_status_to_string(static_cast<GC::CommunicationStatus>(-1)));
    EXPECT_EQ("",
              GC::communication_connection_to_string(static_cast<GC::CommunicationConnection>(4)));
    for (const char* name : {"cs_connected", "CS_CONNECTED_", "CC_TCP_CLIENT"}) {
        EXPECT_EQ(GC::CS_UNDEFINE, GC::string_to_communication_status(name));
    }
    for (const char* name : {"cc_usb_serialport", "CS_CONNECTED"}) {
        EXPECT_EQ(GC::CC_UNDEFINE, GC::string_to_communication_connection(name));
    }
    ASSERT_EQ(8u, log.lines().size());
    for (const char* miss : {"10", "-1", "4", "cs_connected", "CS_CONNECTED_", "CC_TCP_CLIENT",
                             "cc_usb_serialport", "CS_CONNECTED"}) {
        EXPECT_TRUE(log.contains(std::string("uncontain this ") + miss)) << miss;
    }
}

}  // namespace
