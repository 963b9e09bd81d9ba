#ifndef GRIPPER_CONNECTION_MANAGER_PRIVATE_H
#define GRIPPER_CONNECTION_MANAGER_PRIVATE_H

#include <pthread.h>

#include <string>
#include <vector>

#include "gripper/gripper_business_logic/gripper_connection_manager/gripper_connection_manager.h"

// The manager's lists, the lock that guards them and the steps of connecting and tearing down.
class GripperConnectionManagerPrivate {
public:
    explicit GripperConnectionManagerPrivate(GripperConnectionManager* parent);
    ~GripperConnectionManagerPrivate();

    // Each logs its failure; the lock is not recursive.
    bool write_lock();
    bool read_lock();
    void unlock();

    void log_missing_device(GripperCommunication::CommunicationConnection connection,
                            const std::vector<std::string>& parameters);
    // Appends the driver and announces it, under the write lock.
    bool register_device(GripperLogicControl* device);
    // Opens the link and brings the driver up to date; stops at the first failing step.
    static bool connect(GripperLogicControl* device, const std::vector<std::string>& parameters);
    // Undoes a connection attempt that failed after the driver was registered.
    void abandon(GripperLogicControl* device);

    // Called with the write lock held.
    bool contains(GripperLogicControl* device) const;
    void forget(GripperLogicControl* device);
    void notify_destroy(GripperLogicControl* device);

    GripperConnectionManager* parent_;
    GripperConnectionManager::ScanStatus scan_status_;
    pthread_rwlock_t rwlock_;
    std::vector<GripperConnectionManager::NotifyInterface*> notify_interfaces_;
    std::vector<GripperLogicControl*> devices_;
};

#endif
