#ifndef GRIPPER_BYTE_ARRIVAL_H
#define GRIPPER_BYTE_ARRIVAL_H

// Sleeping until bytes arrive on a link's descriptor, instead of looking again and again. The
// first byte of an answer is awaited with poll(); later bytes, while some are already waiting
// (which keeps poll() awake), through an edge-triggered epoll registration that reports each
// new arrival. Sleeps for the time bytes take on the wire run on a timer without the slack
// ordinary sleeps get (50 µs, most of a byte time), so they end when the bytes are due.
class GripperByteArrival {
public:
    GripperByteArrival() = default;
    ~GripperByteArrival();
    GripperByteArrival(const GripperByteArrival&) = delete;
    GripperByteArrival& operator=(const GripperByteArrival&) = delete;

    // The descriptor to watch; -1 for none.
    void watch(int descriptor);
    bool watching() const { return descriptor_ >= 0; }
    // True when the descriptor reports a hang-up, a reset or a device that went away.
    bool hung_up() const;
    // Sleeps until a byte can be read, the peer hangs up, or millis pass; true when woken by
    // the descriptor.
    bool wait_for_first(int millis);
    // Forgets the arrivals reported so far: the next wait_for_more() waits for a new one.
    void forget_arrivals();
    // Sleeps until bytes arrive after the last forget_arrivals(), or millis pass; false at once
    // when arrivals cannot be watched on this descriptor.
    bool wait_for_more(int millis);
    // Sleeps for nanos.
    void sleep(long nanos);

private:
    void stop_watching();

    int descriptor_ = -1;
    int epoll_ = -1;
    int timer_ = -1;
};

#endif
