#include "tools/gripper_simulator/simulator.h"

#include <spdlog/spdlog.h>

#include <atomic>
#include <mutex>
#include <vector>

#include "tools/gripper_simulator/control_commands.h"
#include "tools/gripper_simulator/fault_names.h"
#include "tools/gripper_simulator/frame_trace.h"
#include "tools/gripper_simulator/pty_port.h"
#include "tools/gripper_simulator/simulated_gripper.h"
#include "tools/gripper_simulator/tcp_port.h"

namespace gripper_sim {

struct Simulator::Impl {
    // Declared first so that it outlives the grippers that write to it.
    FrameTrace trace;
    mutable std::mutex mutex;
    std::vector<std::unique_ptr<SimulatedGripper>> grippers;
    std::atomic<bool> quit{false};

    // Grippers are never removed, so the pointer stays valid for the simulator's lifetime.
    SimulatedGripper* find(int n) const {
        std::lock_guard<std::mutex> lock(mutex);
        return n >= 1 && n <= static_cast<int>(grippers.size()) ? grippers[n - 1].get() : nullptr;
    }

    int add(Wire wire, std::unique_ptr<Port> port, const GripperOptions& options) {
        std::lock_guard<std::mutex> lock(mutex);
        const int number = static_cast<int>(grippers.size()) + 1;
        auto gripper =
            std::make_unique<SimulatedGripper>(number, wire, std::move(port), options, trace);
        if (!gripper->start()) {
            console().error("cannot open the {} of gripper {}", gripper->kind(), number);
            return 0;
        }
        grippers.push_back(std::move(gripper));
        return number;
    }
};

Simulator::Simulator() : impl_(std::make_unique<Impl>()) {}

Simulator::~Simulator() = default;

int Simulator::add_modbus_pty(const GripperOptions& options) {
    return impl_->add(Wire::modbus, std::make_unique<PtyPort>(), options);
}

int Simulator::add_custom_pty(const GripperOptions& options) {
    return impl_->add(Wire::custom, std::make_unique<PtyPort>(), options);
}

int Simulator::add_custom_tcp(const GripperOptions& options, uint16_t port) {
    return impl_->add(Wire::custom, std::make_unique<TcpPort>(port), options);
}

std::string Simulator::endpoint(int n) const {
    const auto* gripper = impl_->find(n);
    return gripper ? gripper->endpoint() : std::string();
}

uint16_t Simulator::tcp_port(int n) const {
    const auto* gripper = impl_->find(n);
    return gripper ? gripper->tcp_port() : 0;
}

void Simulator::set_fault(int n, Fault fault) {
    if (auto* gripper = impl_->find(n)) {
        gripper->set_fault(fault);
    }
}

void Simulator::set_object(int n, int position) {
    if (auto* gripper = impl_->find(n)) {
        gripper->set_object(position);
    }
}

void Simulator::drop(int n) {
    if (auto* gripper = impl_->find(n)) {
        gripper->drop();
    }
}

void Simulator::drop_during_next_exchange(int n) {
    if (auto* gripper = impl_->find(n)) {
        gripper->drop_during_next_exchange();
    }
}

void Simulator::set_trace(bool on) {
    impl_->trace.set_enabled(on);
}

GripperSnapshot Simulator::snapshot(int n) const {
    const auto* gripper = impl_->find(n);
    return gripper ? gripper->snapshot() : GripperSnapshot{};
}

std::string Simulator::command(const std::string& line) {
    ControlCommands commands(*this, [this] { impl_->quit = true; });
    return commands.execute(line);
}

int Simulator::count() const {
    std::lock_guard<std::mutex> lock(impl_->mutex);
    return static_cast<int>(impl_->grippers.size());
}

Fault Simulator::fault(int n) const {
    const auto* gripper = impl_->find(n);
    return gripper ? gripper->fault() : Fault::none;
}

bool Simulator::trace() const {
    return impl_->trace.enabled();
}

std::string Simulator::describe(int n) const {
    const auto* gripper = impl_->find(n);
    if (!gripper) {
        return std::string();
    }
    const char* wire = gripper->wire() == Wire::modbus ? "modbus" : "custom";
    return fmt::format("{} {} {} {} id={} fault={}", n, wire, gripper->kind(), gripper->endpoint(),
                       gripper->id(), fault_name(gripper->fault()));
}

void Simulator::set_announce_file(int n, const std::string& file) {
    if (auto* gripper = impl_->find(n)) {
        gripper->set_announce_file(file);
    }
}

void Simulator::set_link(int n, const std::string& path) {
    if (auto* gripper = impl_->find(n)) {
        gripper->set_link(path);
    }
}

bool Simulator::quit_requested() const {
    return impl_->quit;
}

}  // namespace gripper_sim
