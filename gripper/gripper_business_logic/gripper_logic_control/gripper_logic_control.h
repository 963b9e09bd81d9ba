#ifndef GRIPPER_LOGIC_CONTROL_H
#define GRIPPER_LOGIC_CONTROL_H

#include <memory>
#include <string>
#include <vector>

#include "gripper/gripper_communication_control/gripper_communication/gripper_communication.h"
#include "gripper/gripper_protocol/gripper_protocol/gripper_protocol.h"

class GripperLogicControlPrivate;

// The driver of one two-finger gripper, and at the same time its byte link: the concrete link
// classes derive from it. It performs the handshake, keeps the gripper's last known state,
// offers the activate, position, force and speed commands, runs the background update thread
// and tells its observers about every change.
class GripperLogicControl : public GripperCommunication {
public:
    enum GripperStatus : int32_t {
        GS_UNDEFINE = 0,
        GS_INACTIVATE = 1,
        GS_ACTIVATING = 2,
        GS_ACTIVATED = 3,
        GS_MOVING = 4,
        GS_TURNING = 5,
        GS_ARRIVED = 6,
        GS_DETECTED = 7,
        GS_DROPPED = 8,
    };

    static const uint8_t INVALID_ID = 255;
    // Update period while a move is pending, as specified; faster choices are 50 and 20 ms.
    static const int32_t DEFAULT_MOVE_PERIOD = 100;

    // Observers are called on the thread that made the change, with the driver's lock held.
    class NotifyInterface {
    public:
        virtual ~NotifyInterface() = 0;
        virtual void on_communication_status_changed(GripperLogicControl* control,
                                                     CommunicationStatus status) = 0;
        virtual void on_gripper_move_status_changed(GripperLogicControl* control,
                                                    GripperStatus status) = 0;
        virtual void on_gripper_turn_status_changed(GripperLogicControl* control,
                                                    GripperStatus status) = 0;
        virtual void on_position_changed(GripperLogicControl* control, float position) = 0;
        virtual void on_force_changed(GripperLogicControl* control, int force) = 0;
        virtual void on_speed_changed(GripperLogicControl* control, int speed) = 0;
        virtual void on_angle_changed(GripperLogicControl* control, int angle) = 0;
    };

    GripperLogicControl();
    ~GripperLogicControl() override = 0;

    bool handshake();
    bool sync();
    bool set_activate();
    bool set_position(float position);
    bool set_position_min();
    bool set_position_max();
    bool set_force(int force);
    bool set_force_min();
    bool set_force_max();
    bool set_speed(int speed);
    bool set_speed_min();
    bool set_speed_max();

    // These wait for an update cycle or a command in progress.
    float get_position() const;
    int get_force();
    int get_speed();
    // The last values read from the gripper, without waiting for the driver lock: for the
    // pendant's interface thread. A value is cached before its observers hear of it; the zeroes
    // a read-back cycle reports first are not. 0 before the first sync.
    float cached_position() const;
    int cached_force() const;
    int cached_speed() const;
    GripperStatus get_gripper_status() const;
    // The statuses in which the gripper takes move, force and speed commands: activated and not
    // turning. The driver's own check, the plug-in's activation answer and the Control page's
    // buttons all ask this.
    bool takes_commands() const;
    CommunicationStatus get_communication_status() const;
    int32_t get_model_series() const;
    // The protocol the handshake chose: 1 Modbus RTU, 0 frames, -1 none yet.
    int protocol_type() const;
    std::vector<uint8_t> get_version() const;

    float get_position_min() const;
    float get_position_max() const;
    float position_step() const;
    int get_force_min();
    int get_force_max();
    int get_speed_min();
    int get_speed_max();
    bool support_unify_force() const;
    bool support_speed() const;
    bool support_angle() const;

    // The threads waiting for the driver lock, the update thread's next cycle among them.
    int lock_waiters() const;

    // Does not wait for an exchange in progress.
    void add_notify_interface(NotifyInterface* notify);
    // Waits for a notification in progress; once it returns, the observer is not called again.
    void remove_notify_interface(NotifyInterface* notify);
    // Does not wait for an exchange or a notification in progress: a call that began before may
    // still reach the observer, so the caller retires it to the ObjectKeeper instead of freeing.
    void detach_notify_interface(NotifyInterface* notify);
    void set_gripper_communication(GripperCommunication* communication);

    // Automatic reconnect, off by default: when the link fails, the update thread closes it and
    // opens it again with the parameters of the last connect, running the handshake, check and
    // sync of a connect, until the gripper answers or the driver is torn down. While it does,
    // the communication status is CS_DISCONNECTED and the gripper status GS_UNDEFINE.
    void set_reconnect(bool enabled);
    bool reconnect() const;
    bool reconnecting() const;
    // Reopening tries since the link was lost.
    int reconnect_tries() const;
    // The parameters of a successful connect: the connection manager stores them.
    void set_link_parameters(const std::vector<std::string>& parameters);
    // The update period while a move is pending: DEFAULT_MOVE_PERIOD, 50 or 20 ms; other values
    // are refused with a log line.
    bool set_move_period(int32_t millis);
    int32_t move_period() const;

    void start_loop_update();
    void stop_loop_update();
    // Stops the update loop, stores GS_UNDEFINE and CS_DISCONNECTED (observers see both) and
    // closes the link, all under the driver lock: no command overlaps it, and every command
    // after it is refused.
    void tear_down();
    bool occur_exception();
    void set_communication_status(CommunicationStatus status);
    void set_gripper_status(GripperStatus status);
    bool buffer_drop();
    bool wait_for_length_available(int length, int millis);

    // Drivers made and not yet destroyed in this process.
    static int live_count();
    static std::string gripper_status_to_string(GripperStatus status);
    static GripperStatus string_to_gripper_status(const std::string& text);

protected:
    // The concrete links call these: the descriptor bytes arrive on (-1 when closed), so that
    // waits for an answer can sleep until it comes; and, first in their destructors, the end of
    // the update thread, so that no cycle touches a link being destroyed.
    void set_readable_descriptor(int descriptor);
    void finish_loop_update();
    // The links hand over the bytes an exchange read in place of its answer, or dropped as
    // stale: the gripper's unsolicited dropped frame among them is reported as if it had come
    // between cycles. True when there was one.
    bool take_dropped_feedback(const std::vector<uint8_t>& byte_stream);
    // True while buffer_drop() reads bytes to throw them away.
    bool discarding_stale_bytes() const;
    // True, and logged, when an exchange may not wait on its pass count (from 0): none waits
    // after its fourth pass.
    bool retry_cap_reached(int count);
    // An exchange ran out of passes: only the first one to do so reports CS_READ_EXCEPTION.
    void report_exhaustion();

    GripperProtocol* gripper_protocol_;

private:
    friend class GripperLogicControlPrivate;
    std::unique_ptr<GripperLogicControlPrivate> private_;
};

#endif
