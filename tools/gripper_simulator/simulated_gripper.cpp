#include "tools/gripper_simulator/simulated_gripper.h"

#include <spdlog/spdlog.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cstring>

#include "tools/gripper_simulator/announce.h"
#include "tools/gripper_simulator/custom_responder.h"
#include "tools/gripper_simulator/modbus_responder.h"

namespace gripper_sim {
namespace {

using Clock = std::chrono::steady_clock;

std::unique_ptr<Responder> make_responder(Wire wire, GripperModel& model,
                                          const GripperOptions& options) {
    if (wire == Wire::modbus) {
        return std::make_unique<ModbusResponder>(model, options);
    }
    return std::make_unique<CustomResponder>(model, options);
}

}  // namespace

SimulatedGripper::SimulatedGripper(int number, Wire wire, std::unique_ptr<Port> port,
                                   const GripperOptions& options, const FrameTrace& trace)
    : number_(number),
      wire_(wire),
      options_(options),
      trace_(trace),
      kind_(port->kind()),
      model_(options),
      responder_(make_responder(wire, model_, options_)),
      port_(std::move(port)),
      wake_fd_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {}

SimulatedGripper::~SimulatedGripper() {
    if (thread_.joinable()) {
        stopping_ = true;
        wake();
        thread_.join();
    }
    if (wake_fd_ >= 0) {
        ::close(wake_fd_);
    }
}

bool SimulatedGripper::start() {
    if (wake_fd_ < 0 || !port_->open()) {
        return false;
    }
    publish_endpoint();
    thread_ = std::thread([this] { run(); });
    return true;
}

std::string SimulatedGripper::endpoint() const {
    std::lock_guard<std::mutex> lock(endpoint_mutex_);
    return endpoint_;
}

uint16_t SimulatedGripper::tcp_port() const {
    std::lock_guard<std::mutex> lock(endpoint_mutex_);
    return tcp_port_;
}

void SimulatedGripper::set_fault(Fault fault) {
    call([this, fault] { apply_fault(fault); });
}

bool SimulatedGripper::drop() {
    bool dropped = false;
    call([this, &dropped] {
        dropped = model_.drop();
        const Bytes frame = responder_->dropped_frame();
        if (dropped && !frame.empty()) {
            emit(frame);
        }
    });
    return dropped;
}

void SimulatedGripper::set_announce_file(const std::string& file) {
    call([this, file] {
        {
            std::lock_guard<std::mutex> lock(endpoint_mutex_);
            announce_file_ = file;
        }
        if (port_->is_open()) {
            publish_endpoint();
        }
    });
}

GripperSnapshot SimulatedGripper::snapshot() const {
    GripperSnapshot snapshot = model_.snapshot();
    snapshot.frames_received = frames_received_;
    snapshot.answers_sent = answers_sent_;
    return snapshot;
}

void SimulatedGripper::run() {
    while (!stopping_) {
        wait_and_serve();
    }
}

void SimulatedGripper::wait_and_serve() {
    std::vector<pollfd> fds{pollfd{wake_fd_, POLLIN, 0}};
    port_->add_poll_fds(fds);
    if (::poll(fds.data(), fds.size(), poll_timeout_ms()) > 0) {
        // Tasks may close or reopen the port, which makes the other entries stale: serve the
        // port on the next round.
        if (fds[0].revents != 0) {
            run_tasks();
        } else {
            const Bytes bytes = port_->serve(fds.data() + 1, fds.size() - 1);
            if (!bytes.empty()) {
                on_bytes(bytes);
            }
        }
    }
    send_due_frames();
}

void SimulatedGripper::run_tasks() {
    uint64_t count = 0;
    const ssize_t size = ::read(wake_fd_, &count, sizeof(count));
    (void)size;
    std::vector<std::packaged_task<void()>> tasks;
    {
        std::lock_guard<std::mutex> lock(tasks_mutex_);
        tasks.swap(tasks_);
    }
    for (auto& task : tasks) {
        task();
    }
}

void SimulatedGripper::call(std::function<void()> task) {
    std::packaged_task<void()> job(std::move(task));
    auto done = job.get_future();
    {
        std::lock_guard<std::mutex> lock(tasks_mutex_);
        tasks_.push_back(std::move(job));
    }
    wake();
    done.wait();
}

void SimulatedGripper::wake() {
    const uint64_t one = 1;
    const ssize_t size = ::write(wake_fd_, &one, sizeof(one));
    (void)size;
}

void SimulatedGripper::on_bytes(const Bytes& bytes) {
    trace_.record(number_, "rx", bytes);
    responder_->feed(bytes);
    while (auto request = responder_->next_request()) {
        on_request(*request);
    }
}

void SimulatedGripper::on_request(const Bytes& request) {
    ++frames_received_;
    const Fault fault = fault_;
    if (fault == Fault::silent) {
        return;
    }
    if (fault == Fault::reset) {
        port_->reset_client();
        forget_traffic();
        return;
    }
    const Bytes answer = responder_->answer(request);
    if (!answer.empty()) {
        emit(answer);
    }
}

void SimulatedGripper::emit(const Bytes& frame) {
    const Fault fault = fault_;
    switch (fault) {
        case Fault::silent:
        case Fault::reset:
        case Fault::vanish:
            return;
        case Fault::late:
            late_.push_back(
                LateFrame{Clock::now() + std::chrono::milliseconds(options_.late_ms), frame});
            return;
        default:
            transmit(
                shaper_.shape(fault, *responder_, frame, static_cast<uint8_t>(options_.id + 1)));
    }
}

void SimulatedGripper::transmit(const Bytes& frame) {
    trace_.record(number_, "tx", frame);
    port_->send(frame);
    ++answers_sent_;
}

void SimulatedGripper::send_due_frames() {
    const auto now = Clock::now();
    while (!late_.empty() && late_.front().due <= now) {
        transmit(late_.front().frame);
        late_.pop_front();
    }
}

int SimulatedGripper::poll_timeout_ms() const {
    if (late_.empty()) {
        return -1;
    }
    const auto wait = late_.front().due - Clock::now();
    const auto ms = std::chrono::ceil<std::chrono::milliseconds>(wait).count();
    return ms < 0 ? 0 : static_cast<int>(ms);
}

void SimulatedGripper::apply_fault(Fault fault) {
    fault_ = fault;
    if (fault == Fault::vanish) {
        port_->close();
        forget_traffic();
        console().info("g{} vanished", number_);
        return;
    }
    if (!port_->is_open()) {
        if (!port_->open()) {
            console().error("g{} cannot reopen its {}", number_, kind_);
            return;
        }
        publish_endpoint();
        console().info("g{} reopened on {}", number_, port_->endpoint());
    }
    if (fault == Fault::reset) {
        port_->reset_client();
        forget_traffic();
    }
}

void SimulatedGripper::forget_traffic() {
    responder_->clear();
    late_.clear();
}

void SimulatedGripper::publish_endpoint() {
    std::string file;
    {
        std::lock_guard<std::mutex> lock(endpoint_mutex_);
        endpoint_ = port_->endpoint();
        tcp_port_ = port_->tcp_port();
        file = announce_file_;
    }
    if (!file.empty() && std::strcmp(kind_, "pty") == 0 && !announce(file, port_->endpoint())) {
        console().error("g{} cannot write the announce file {}", number_, file);
    }
}

}  // namespace gripper_sim
