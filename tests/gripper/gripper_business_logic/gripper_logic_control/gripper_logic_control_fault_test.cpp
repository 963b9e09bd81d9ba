#include "tests/test_support/driver_fixture.h"

namespace {

const char kWaitTimeOut[] =
    "!waitForLengthAvailable(readLength, getDefaultWaitForLengthAvailableInterval())";

// What a read-back makes of each kind of bad answer, over a serial Modbus or a TCP frame link.
const struct {
    bool tcp;
    gripper_sim::Fault fault;
    bool read_back_succeeds;
    const char* log_line;
} FAULT_ROWS[] = {
    {false, gripper_sim::Fault::bad_crc, false,
     "!gripper_protocol_->compare_package(set, write_stream, read_byte_stream)"},
    {false, gripper_sim::Fault::wrong_id, false,
     "abstract_package_data.id_ != byte_stream[OFFSET_ID]"},
    {false, gripper_sim::Fault::short_answer, false, kWaitTimeOut},
    {false, gripper_sim::Fault::garbage, false, "0 == read_byte_stream.size()"},
    // The first seven bytes are a whole answer; the extra byte is dropped before the next request.
    {false, gripper_sim::Fault::long_answer, true, "length > 0"},
    {true, gripper_sim::Fault::wrong_id, false,
     "abstract_package_data.id_ != byte_stream[OFFSET_ID]"},
    {true, gripper_sim::Fault::short_answer, false, kWaitTimeOut},
    {true, gripper_sim::Fault::long_answer, true, "available() > 0"},
};

}  // namespace

// Read-backs made by hand, with the update loop stopped so that it makes none of its own. A
// Modbus read answer does not name its register, so a bad answer still on its way may be taken
// for another read's: recovery is a read-back that succeeds and finds the gripper activated.
TEST_F(DriverTest, BadAnswersAreRejectedAndTheGripperRecovers) {
    const int modbus = simulator_.add_modbus_pty(quick_options(1, 1000, 50));
    const int tcp = simulator_.add_custom_tcp(quick_options(1, 100, 50));
    for (const bool over_tcp : {false, true}) {
        const int gripper = over_tcp ? tcp : modbus;
        ASSERT_TRUE((over_tcp ? connect_tcp(gripper) : connect_serial(gripper)) && activate());
        driver_->stop_loop_update();
        for (const auto& row : FAULT_ROWS) {
            if (row.tcp != over_tcp) {
                continue;
            }
            SCOPED_TRACE(row.log_line);
            log_.clear();
            simulator_.set_fault(gripper, row.fault);
            EXPECT_EQ(row.read_back_succeeds, driver_->sync() && driver_->sync());
            EXPECT_TRUE(log_.contains(row.log_line));
            simulator_.set_fault(gripper, gripper_sim::Fault::none);
            EXPECT_TRUE(wait_until([&] {
                return driver_->sync() && GLC::GS_ACTIVATED == driver_->get_gripper_status();
            }));
        }
        driver_->close();
    }
}
