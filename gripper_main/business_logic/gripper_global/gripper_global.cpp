#include "gripper_main/business_logic/gripper_global/gripper_global.h"

#include <algorithm>

#include "gripper/gripper_common/simple_logger/simple_logger.h"

GripperGlobal& GripperGlobal::instance() {
    static GripperGlobal global;
    return global;
}

GripperDevice* GripperGlobal::insert_device() {
    return new GripperDevice();
}

GripperGlobal::GripperGlobal() : program_state_(PS_STOPPED) {}

// Made before the pages' workers and the keeper, so destroyed after their threads have ended; a
// record taken out of the list is its remover's to free (the pages retire it to the keeper).
GripperGlobal::~GripperGlobal() {
    for (GripperDevice* device : vector_device_) {
        delete device;
    }
}

bool GripperGlobal::add_device(GripperDevice* device) {
    if (vector_device_.end() != std::find(vector_device_.begin(), vector_device_.end(), device)) {
        GRIPPER_LOG("W", "contain");
        return false;
    }
    vector_device_.push_back(device);
    notify_list_changed();
    return true;
}

bool GripperGlobal::remove_device(GripperDevice* device) {
    std::vector<GripperDevice*>::iterator iter =
        std::find(vector_device_.begin(), vector_device_.end(), device);
    if (vector_device_.end() != iter) {
        vector_device_.erase(iter);
        notify_list_changed();
    }
    return true;
}

GripperDevice* GripperGlobal::get_device(uint32_t index) {
    if (vector_device_.size() <= static_cast<unsigned long long>(index)) {
        GRIPPER_LOG("W", "vector_device_.size() <= static_cast<unsigned long long>(index)");
        GRIPPER_LOG("W", "vector_device_.size() = %d", static_cast<int>(vector_device_.size()));
        GRIPPER_LOG("W", "static_cast<unsigned long long>(index) = %d", static_cast<int>(index));
        return nullptr;
    }
    return vector_device_[index];
}

std::vector<GripperDevice*> GripperGlobal::vector_device() const {
    return vector_device_;
}

GripperGlobal::ProgramState GripperGlobal::get_program_state() const {
    return program_state_;
}

void GripperGlobal::set_program_state(ProgramState state) {
    if (state == program_state_.exchange(state)) {
        return;
    }
    notify([state](NotifyInterface* observer) { observer->on_program_state_changed(state); });
}

void GripperGlobal::add_notify_interface(NotifyInterface* notify) {
    if (notify_interfaces_.end() ==
        std::find(notify_interfaces_.begin(), notify_interfaces_.end(), notify)) {
        notify_interfaces_.push_back(notify);
    }
}

void GripperGlobal::remove_notify_interface(NotifyInterface* notify) {
    std::vector<NotifyInterface*>::iterator iter =
        std::find(notify_interfaces_.begin(), notify_interfaces_.end(), notify);
    if (notify_interfaces_.end() != iter) {
        notify_interfaces_.erase(iter);
    }
}

void GripperGlobal::notify_list_changed() {
    notify([](NotifyInterface* observer) { observer->on_list_all_device_changed(); });
}

// Iterates a copy, so that an observer may add or remove observers, and skips one removed
// meanwhile.
void GripperGlobal::notify(const std::function<void(NotifyInterface*)>& call) {
    const std::vector<NotifyInterface*> observers = notify_interfaces_;
    for (NotifyInterface* observer : observers) {
        if (notify_interfaces_.end() !=
            std::find(notify_interfaces_.begin(), notify_interfaces_.end(), observer)) {
            call(observer);
        }
    }
}
