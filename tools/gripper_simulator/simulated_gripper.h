#ifndef TOOLS_GRIPPER_SIMULATOR_SIMULATED_GRIPPER_H
#define TOOLS_GRIPPER_SIMULATOR_SIMULATED_GRIPPER_H

#include <atomic>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "tools/gripper_simulator/fault_shaper.h"
#include "tools/gripper_simulator/frame_trace.h"
#include "tools/gripper_simulator/gripper_model.h"
#include "tools/gripper_simulator/line_pacer.h"
#include "tools/gripper_simulator/port.h"
#include "tools/gripper_simulator/responder.h"

namespace gripper_sim {

// One simulated gripper: its model, its responder and its port, served by a thread of its own.
// Everything that touches the port runs on that thread; the public operations are thread-safe
// and return once their effect is in place.
class SimulatedGripper {
public:
    SimulatedGripper(int number, Wire wire, std::unique_ptr<Port> port,
                     const GripperOptions& options, const FrameTrace& trace);
    ~SimulatedGripper();
    SimulatedGripper(const SimulatedGripper&) = delete;
    SimulatedGripper& operator=(const SimulatedGripper&) = delete;

    // Opens the port and starts serving it; false when the port cannot be opened.
    bool start();
    Wire wire() const { return wire_; }
    int id() const { return options_.id; }
    const char* kind() const { return kind_; }
    std::string endpoint() const;
    uint16_t tcp_port() const;
    Fault fault() const { return fault_; }
    void set_fault(Fault fault);
    void set_object(int position) { model_.set_object(position); }
    // Loses the held object (custom frames: sends the dropped frame); false when none is held.
    bool drop();
    // Loses the held object when the next request arrives, before the answer goes out: the
    // dropped frame of custom frames comes while the client waits for its answer.
    void drop_during_next_exchange();
    // Where the pty's slave path is announced, now and after every reopening; empty for none.
    void set_announce_file(const std::string& file);
    // The symbolic link kept to the pty while it is there; empty for none.
    void set_link(const std::string& path);
    GripperSnapshot snapshot() const;

private:
    void run();
    void wait_and_serve();
    void run_tasks();
    // Runs `task` on the responder thread and waits for it.
    void call(std::function<void()> task);
    void wake();
    void on_bytes(const Bytes& bytes);
    void on_request(const Bytes& request);
    void drop_now(std::chrono::steady_clock::time_point earliest);
    // Sends the frame when it is due: at once, late (late fault) or paced like a line.
    void emit(const Bytes& frame, std::chrono::steady_clock::time_point earliest);
    void queue(const Bytes& frame, std::chrono::steady_clock::time_point earliest);
    void send_due_frames();
    // Time until the next piece is due; null when nothing is queued.
    const timespec* poll_timeout(timespec& timeout) const;
    void apply_fault(Fault fault);
    void forget_traffic();
    void publish_endpoint();
    void place_link();
    void remove_link();

    const int number_;
    const Wire wire_;
    const GripperOptions options_;
    const FrameTrace& trace_;
    const char* const kind_;
    GripperModel model_;
    std::unique_ptr<Responder> responder_;
    std::unique_ptr<Port> port_;
    FaultShaper shaper_;
    LinePacer pacer_;
    // Pieces of frames to send, in the order they are due.
    std::deque<LinePacer::Piece> outgoing_;
    bool drop_armed_ = false;
    std::atomic<Fault> fault_{Fault::none};
    std::atomic<long> frames_received_{0};
    std::atomic<long> answers_sent_{0};
    std::atomic<long> drop_acknowledgements_{0};
    std::atomic<bool> stopping_{false};
    int wake_fd_ = -1;
    std::mutex tasks_mutex_;
    std::vector<std::packaged_task<void()>> tasks_;
    mutable std::mutex endpoint_mutex_;
    std::string endpoint_;
    uint16_t tcp_port_ = 0;
    std::string announce_file_;
    std::string link_;
    std::thread thread_;
};

}  // namespace gripper_sim

#endif
