#ifndef GRIPPER_CONNECT_ATTEMPT_H
#define GRIPPER_CONNECT_ATTEMPT_H

#include <string>
#include <thread>
#include <vector>

#include "gripper_main/userinterface_logic/gripper_observer_adapter/gripper_observer_adapter.h"

// One connection attempt through the connection manager, made on the thread that calls run().
// The manager destroys a driver that fails to connect but does not free it: the attempt notes
// the driver the manager made on this thread and retires a failed one to the ObjectKeeper.
class GripperConnectAttempt : private GripperObserverAdapter {
public:
    GripperConnectAttempt();

    // The connected driver, or null.
    GripperLogicControl* run(GripperLogicControl::NotifyInterface* notify,
                             GripperCommunication::CommunicationConnection connection,
                             const std::vector<std::string>& parameters);
    // What made run() fail, when it did.
    const GripperLinkFailure& failure() const { return failure_; }

private:
    void on_gripper_abstract_control_create(GripperLogicControl* control) override;

    const std::thread::id thread_;
    GripperLogicControl* made_;
    GripperLinkFailure failure_;
};

#endif
