#ifndef GRIPPER_LOGIC_CONTROL_PRIVATE_H
#define GRIPPER_LOGIC_CONTROL_PRIVATE_H

#include <pthread.h>
#include <semaphore.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <vector>

#include "gripper/gripper_business_logic/gripper_logic_control/gripper_driver_mutex.h"
#include "gripper/gripper_business_logic/gripper_logic_control/gripper_link_recovery.h"
#include "gripper/gripper_business_logic/gripper_logic_control/gripper_logic_control.h"
#include "gripper/gripper_common/object_keeper/object_keeper.h"
#include "gripper/gripper_communication_control/gripper_descriptor_link/gripper_byte_arrival.h"

// State of a driver and the steps its public operations are made of. Every operation here runs
// with mutex_ held, except the pacing of the update thread.
class GripperLogicControlPrivate {
public:
    explicit GripperLogicControlPrivate(GripperLogicControl* parent);
    ~GripperLogicControlPrivate();

    // Handshake and read-back steps.
    bool sync_id();
    bool sync_version();
    bool sync_model();
    bool sync_initialize();
    bool sync_position();
    bool sync_force();
    bool sync_closing_force();
    bool sync_speed();
    bool limit_maximum_current();

    // Store a value read from the gripper and tell the observers when it changed.
    void set_gripper_position(int int_value);
    void set_gripper_force(int force);
    void set_gripper_speed(int speed);
    void set_gripper_angle(int angle);

    int get_int_position_min() const;
    int get_int_position_max() const;
    bool support_unify_force() const;
    bool support_speed() const;
    bool support_angle() const;
    bool uses_custom_protocol() const;
    bool accepts_motion_command() const;
    // After a move: the gripper may hold an object, which it can lose.
    bool may_hold_object() const;

    // Exchanges with the gripper.
    std::vector<uint8_t> exchange(bool set, const std::vector<uint8_t>& request);
    bool read_back(const std::vector<uint8_t>& request, GripperProtocol::PackageType type,
                   AbstractPackageData& data);
    bool command(const std::vector<uint8_t>& request);

    // Update thread.
    static void* thread_entry(void* private_part);
    // Makes the loop look at its stop flag and its pacing now instead of at the end of a pause.
    void wake_loop();
    bool check_update();
    // The period between cycles: the chosen one while a move is pending, else the idle one.
    int32_t pending_interval() const;
    // Link recovery on the update thread; true when it took the loop's turn.
    bool heal_link();
    void update();
    bool sync_move_feedback();
    void unactivate_feedback();
    bool stop_current_dropped_feedback();

    template <typename Call>
    void notify(Call call);
    bool is_observer(GripperLogicControl::NotifyInterface* observer);
    // Makes the stored values the ones cached_position() and its siblings answer, unless a
    // read-back has reported its zeroes and not yet the real values.
    void publish_values();
    template <typename T>
    void publish_value(std::atomic<T>& cached, T value);
    bool sync_values();

    GripperLogicControl* parent_;
    int32_t last_update_time_;
    int32_t update_interval_;
    mutable GripperDriverMutex mutex_;
    std::vector<GripperLogicControl::NotifyInterface*> notify_interfaces_;
    // Guards notify_interfaces_, so that adding an observer does not wait for an exchange.
    std::mutex notify_mutex_;
    pthread_t thread_;
    bool thread_start_;
    std::atomic<bool> thread_loop_;
    sem_t semaphore_;
    // The loop pauses between cycles on loop_signal_; a stop or a change of pacing wakes it.
    std::mutex loop_mutex_;
    std::condition_variable loop_signal_;
    bool loop_woken_;
    // The link's descriptor, for sleeping until bytes arrive; used with mutex_ held.
    GripperByteArrival byte_arrival_;
    GripperCommunication* communication_;
    // Set while buffer_drop() reads the bytes it throws away.
    bool discarding_;
    // Cleared the first time an exchange exhausts its waits.
    std::atomic<bool> first_exhaustion_;
    std::atomic<bool> move_pending_;
    std::atomic<bool> arrived_seen_;
    // Update period while a move is pending, in milliseconds.
    std::atomic<int32_t> move_period_;
    GripperLinkRecovery recovery_;
    int32_t initialize_;
    std::atomic<GripperCommunication::CommunicationStatus> communication_status_;
    std::atomic<GripperLogicControl::GripperStatus> gripper_status_;
    uint8_t id_;
    std::vector<uint8_t> version_;
    float position_;
    int32_t force_;
    int32_t speed_;
    int32_t angle_;
    int32_t maximum_current_;
    std::atomic<int32_t> model_series_;
    std::atomic<float> cached_position_;
    std::atomic<int32_t> cached_force_;
    std::atomic<int32_t> cached_speed_;
    // Set from the zeroes of sync_initialize() until sync() has read the real values.
    bool zeroes_pending_;
    // Set while sync_initialize() reports its zeroes.
    bool zeroing_;

private:
    bool choose_protocol();
    bool run_cycle_for(GripperLogicControl::GripperStatus status);
    bool follow_move();
    bool follow_drop();
    bool sync_position_in_cycle();
    bool lock_for_cycle();
    void pause_loop(int32_t millis);
    bool notice_failure();
    bool link_failed();
    void begin_recovery();
    void try_reconnect();
    bool reopen();

    friend class GripperLogicControl;
};

// Calls every observer with the driver lock held. It iterates a copy, so that an observer may
// add or remove observers, and skips one removed meanwhile. The keeper's section keeps an
// observer detached meanwhile alive until the call has ended.
template <typename Call>
void GripperLogicControlPrivate::notify(Call call) {
    std::lock_guard<GripperDriverMutex> lock(mutex_);
    const ObjectKeeper::Section section;
    std::vector<GripperLogicControl::NotifyInterface*> observers;
    {
        std::lock_guard<std::mutex> list_lock(notify_mutex_);
        observers = notify_interfaces_;
    }
    for (GripperLogicControl::NotifyInterface* observer : observers) {
        if (is_observer(observer)) {
            call(observer);
        }
    }
}

#endif
