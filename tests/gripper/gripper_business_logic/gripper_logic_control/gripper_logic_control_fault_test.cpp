#include "tests/test_support/driver_fixture.h"

namespace {

struct FaultRow {
    gripper_sim::Fault fault;
    bool read_back_succeeds;
    const char* log_line;
};

// What a read-back makes of each kind of bad answer.
const FaultRow MODBUS_ROWS[] = {
    {gripper_sim::Fault::bad_crc, false,
     "!gripper_protocol_->compare_package(set, write_stream, read_byte_stream)"},
    {gripper_sim::Fault::wrong_id, false, "abstract_package_data.id_ != byte_stream[OFFSET_ID]"},
    {gripper_sim::Fault::short_answer, false,
     "!waitForLengthAvailable(readLength, getDefaultWaitForLengthAvailableInterval())"},
    {gripper_sim::Fault::garbage, false, "0 == read_byte_stream.size()"},
    {gripper_sim::Fault::late, false,
     "!waitForLengthAvailable(readLength, getDefaultWaitForLengthAvailableInterval())"},
    // The first seven bytes are a whole answer; the extra byte is dropped before the next request.
    {gripper_sim::Fault::long_answer, true, "length > 0"},
};

const FaultRow TCP_ROWS[] = {
    {gripper_sim::Fault::wrong_id, false, "abstract_package_data.id_ != byte_stream[OFFSET_ID]"},
    {gripper_sim::Fault::short_answer, false,
     "!waitForLengthAvailable(readLength, getDefaultWaitForLengthAvailableInterval())"},
    {gripper_sim::Fault::long_answer, true, "available() > 0"},
};

}  // namespace

class DriverFaultTest : public DriverTest {
protected:
    // Read-backs made by hand, with the update loop stopped so that it makes none of its own.
    void check_rows(int gripper, const FaultRow* rows, size_t count) {
        driver_->stop_loop_update();
        for (size_t i = 0; i < count; ++i) {
            const FaultRow& row = rows[i];
            SCOPED_TRACE(row.log_line);
            log_.clear();
            simulator_.set_fault(gripper, row.fault);
            EXPECT_EQ(row.read_back_succeeds, driver_->sync() && driver_->sync());
            EXPECT_TRUE(log_.contains(row.log_line));
            simulator_.set_fault(gripper, gripper_sim::Fault::none);
            EXPECT_TRUE(wait_until([&] { return driver_->sync(); }));
            EXPECT_EQ(GLC::GS_ACTIVATED, driver_->get_gripper_status());
        }
    }
};

TEST_F(DriverFaultTest, BadModbusAnswersAreRejectedAndTheGripperRecovers) {
    gripper_sim::GripperOptions options = quick_options(1, 1000, 50);
    options.late_ms = 150;
    const int gripper = simulator_.add_modbus_pty(options);
    ASSERT_TRUE(connect_serial(gripper) && activate());
    check_rows(gripper, MODBUS_ROWS, sizeof(MODBUS_ROWS) / sizeof(MODBUS_ROWS[0]));
}

TEST_F(DriverFaultTest, BadFramesOverTcpAreRejectedAndTheGripperRecovers) {
    const int gripper = simulator_.add_custom_tcp(quick_options(1, 100, 50));
    ASSERT_TRUE(connect_tcp(gripper) && activate());
    check_rows(gripper, TCP_ROWS, sizeof(TCP_ROWS) / sizeof(TCP_ROWS[0]));
}

TEST_F(DriverFaultTest, ResetConnectionGivesWriteExceptionAndAFreshConnectionWorks) {
    const int gripper = simulator_.add_custom_tcp(quick_options(1, 100, 50));
    ASSERT_TRUE(connect_tcp(gripper) && activate());

    simulator_.set_fault(gripper, gripper_sim::Fault::reset);
    ASSERT_TRUE(wait_until([&] { return observer_.seen("CS_WRITE_EXCEPTION"); }));
    simulator_.set_fault(gripper, gripper_sim::Fault::none);
    driver_->stop_loop_update();
    driver_->close();
    ASSERT_TRUE(connect_tcp(gripper));
    EXPECT_EQ(GLC::GS_ACTIVATED, driver_->get_gripper_status());
}
