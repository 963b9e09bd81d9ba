#include "tools/gripper_simulator/simulated_gripper.h"

#include <spdlog/spdlog.h>
#include <sys/eventfd.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <algorithm>
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
      pacer_(options.baud, options.window_us),
      wake_fd_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {}

SimulatedGripper::~SimulatedGripper() {
    if (thread_.joinable()) {
        stopping_ = true;
        wake();
        thread_.join();
    }
    remove_link();
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
            emit(frame, Clock::now());
        }
    });
    return dropped;
}

void SimulatedGripper::drop_during_next_exchange() {
    call([this] { drop_armed_ = true; });
}

void SimulatedGripper::set_link(const std::string& path) {
    call([this, path] {
        remove_link();
        link_ = path;
        if (port_->is_open()) {
            place_link();
        }
    });
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
    snapshot.drop_acknowledgements = drop_acknowledgements_;
    return snapshot;
}

void SimulatedGripper::run() {
    if (pacer_.paced()) {
        // Byte times are tens of microseconds: no extra slack on this thread's wake-ups.
        ::prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
    }
    while (!stopping_) {
        wait_and_serve();
    }
}

void SimulatedGripper::wait_and_serve() {
    std::vector<pollfd> fds{pollfd{wake_fd_, POLLIN, 0}};
    port_->add_poll_fds(fds);
    timespec timeout{};
    if (::ppoll(fds.data(), fds.size(), poll_timeout(timeout), nullptr) > 0) {
        // Tasks may close or reopen the port, which makes the other entries stale: serve the
        // port on the next round.
        if (fds[0].revents != 0) {
            run_tasks();
        } else {
            const Bytes bytes = port_->serve(fds.data() + 1, fds.size() - 1);
            if (port_->take_client_change()) {
                forget_traffic();
            }
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
    if (responder_->acknowledges_drop(request)) {
        ++drop_acknowledgements_;
    }
    const Fault fault = fault_;
    if (fault == Fault::silent) {
        return;
    }
    if (fault == Fault::reset) {
        port_->reset_client();
        forget_traffic();
        return;
    }
    const auto earliest = pacer_.request_end(Clock::now(), request.size());
    if (drop_armed_) {
        drop_armed_ = false;
        drop_now(earliest);
    }
    const Bytes answer = responder_->answer(request);
    if (!answer.empty()) {
        emit(answer, earliest);
    }
}

void SimulatedGripper::drop_now(Clock::time_point earliest) {
    const Bytes frame = responder_->dropped_frame();
    if (model_.drop() && !frame.empty()) {
        emit(frame, earliest);
    }
}

void SimulatedGripper::emit(const Bytes& frame, Clock::time_point earliest) {
    const Fault fault = fault_;
    switch (fault) {
        case Fault::silent:
        case Fault::reset:
        case Fault::vanish:
            return;
        case Fault::late:
            queue(frame, earliest + std::chrono::milliseconds(options_.late_ms));
            return;
        default:
            queue(shaper_.shape(fault, *responder_, frame, static_cast<uint8_t>(options_.id + 1)),
                  earliest);
    }
}

void SimulatedGripper::queue(const Bytes& frame, Clock::time_point earliest) {
    for (LinePacer::Piece& piece : pacer_.schedule(frame, earliest)) {
        const auto later = std::upper_bound(
            outgoing_.begin(), outgoing_.end(), piece.due,
            [](Clock::time_point due, const LinePacer::Piece& queued) { return due < queued.due; });
        outgoing_.insert(later, std::move(piece));
    }
    send_due_frames();
}

void SimulatedGripper::send_due_frames() {
    const auto now = Clock::now();
    while (!outgoing_.empty() && outgoing_.front().due <= now) {
        const LinePacer::Piece& piece = outgoing_.front();
        port_->send(piece.bytes);
        if (!piece.frame.empty()) {
            trace_.record(number_, "tx", piece.frame);
            ++answers_sent_;
        }
        outgoing_.pop_front();
    }
}

const timespec* SimulatedGripper::poll_timeout(timespec& timeout) const {
    if (outgoing_.empty()) {
        return nullptr;
    }
    const auto wait = std::max(outgoing_.front().due - Clock::now(), Clock::duration(0));
    const auto nanos = std::chrono::duration_cast<std::chrono::nanoseconds>(wait).count();
    timeout.tv_sec = static_cast<time_t>(nanos / 1000000000);
    timeout.tv_nsec = static_cast<long>(nanos % 1000000000);
    return &timeout;
}

void SimulatedGripper::apply_fault(Fault fault) {
    fault_ = fault;
    if (fault == Fault::vanish) {
        port_->close();
        remove_link();
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
    outgoing_.clear();
}

void SimulatedGripper::publish_endpoint() {
    std::string file;
    {
        std::lock_guard<std::mutex> lock(endpoint_mutex_);
        endpoint_ = port_->endpoint();
        tcp_port_ = port_->tcp_port();
        file = announce_file_;
    }
    place_link();
    if (!file.empty() && std::strcmp(kind_, "pty") == 0 && !announce(file, port_->endpoint())) {
        console().error("g{} cannot write the announce file {}", number_, file);
    }
}

void SimulatedGripper::place_link() {
    if (link_.empty() || std::strcmp(kind_, "pty") != 0) {
        return;
    }
    ::unlink(link_.c_str());
    if (::symlink(port_->endpoint().c_str(), link_.c_str()) != 0) {
        console().error("g{} cannot make the link {}", number_, link_);
    }
}

void SimulatedGripper::remove_link() {
    if (!link_.empty()) {
        ::unlink(link_.c_str());
    }
}

}  // namespace gripper_sim
