#ifndef GRIPPER_OPERATION_LOCK_H
#define GRIPPER_OPERATION_LOCK_H

#include <mutex>

#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control_private.h"

// Holds the driver lock for one operation. When the operation ends, still under the lock, the
// values it leaves are published for the readers that must not wait for the lock.
class GripperOperationLock {
public:
    explicit GripperOperationLock(GripperLogicControlPrivate& owner)
        : owner_(owner), lock_(owner.mutex_) {}
    ~GripperOperationLock() { owner_.publish_values(); }
    GripperOperationLock(const GripperOperationLock&) = delete;
    GripperOperationLock& operator=(const GripperOperationLock&) = delete;

private:
    GripperLogicControlPrivate& owner_;
    std::lock_guard<GripperDriverMutex> lock_;
};

#endif
