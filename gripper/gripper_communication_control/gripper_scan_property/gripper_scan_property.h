#ifndef GRIPPER_SCAN_PROPERTY_H
#define GRIPPER_SCAN_PROPERTY_H

// Retry limits and wait interval of one kind of link; each link class holds one of these.
// The alive retry count is the wait retry count on purpose, so the two always agree.
struct GripperScanProperty {
    GripperScanProperty() = default;
    GripperScanProperty(int write_retry, int wait_retry, int wait_interval)
        : write_retry_max_count_(write_retry),
          wait_retry_max_count_(wait_retry),
          wait_for_length_available_interval_(wait_interval) {}

    int write_retry_max_count_ = 5;
    int wait_retry_max_count_ = 5;
    int wait_for_length_available_interval_ = 100;
    // Scan bookkeeping: nothing reads these beyond their initial values.
    int scan_index_ = 0;
    bool scan_usb_serialport_ = true;
    bool scan_tcp_client_ = true;
    bool scan_fixed_port_ = false;
    int scan_step_ = 1;
};

#endif
