#ifndef GRIPPER_CONNECTION_MANAGER_H
#define GRIPPER_CONNECTION_MANAGER_H

#include <memory>
#include <string>
#include <vector>

#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control.h"
#include "gripper/gripper_communication_control/gripper_communication/gripper_communication.h"

class GripperConnectionManagerPrivate;

// Turns a request to connect a gripper over a link type into a working driver and tears it down
// again; keeps the list of live drivers and tells its observers about both.
class GripperConnectionManager {
public:
    enum ScanStatus : int32_t {
        SS_UNDEFINE = 0,
        SS_SCANNING = 1,
        SS_FINISHED = 2,
    };

    // Called with the manager's lock held: an observer must not call back into the manager.
    class NotifyInterface {
    public:
        virtual ~NotifyInterface() = 0;
        virtual void on_gripper_abstract_control_create(GripperLogicControl* control) = 0;
        virtual void on_gripper_abstract_control_destroy(GripperLogicControl* control) = 0;
        virtual void on_scan_status_changed(ScanStatus status) = 0;
    };

    static GripperConnectionManager& instance();

    GripperConnectionManager(const GripperConnectionManager&) = delete;
    GripperConnectionManager& operator=(const GripperConnectionManager&) = delete;

    // A connected driver with its update loop running, or null. The caller's observer is added
    // to the driver before it connects. A driver that fails to connect is destroyed, not freed;
    // its link's last failure is copied to failure first, when one is given.
    GripperLogicControl* create(GripperLogicControl::NotifyInterface* notify,
                                GripperCommunication::CommunicationConnection connection,
                                const std::vector<std::string>& parameters,
                                GripperLinkFailure* failure = nullptr);
    // Stops the driver's loop, closes its link and forgets it; the object stays allocated.
    // A driver this manager does not hold leaves the manager locked: destroy only what create
    // gave and has not been destroyed yet.
    bool destroy(GripperLogicControl* device);

    void add_notify_interface(NotifyInterface* notify);
    void remove_notify_interface(NotifyInterface* notify);
    void start_scan();

private:
    friend class GripperConnectionManagerPrivate;

    GripperConnectionManager();
    ~GripperConnectionManager();

    GripperLogicControl* create_gripper_abstract_control(
        GripperCommunication::CommunicationConnection connection);
    void set_scan_status(ScanStatus status);

    std::unique_ptr<GripperConnectionManagerPrivate> private_;
};

#endif
