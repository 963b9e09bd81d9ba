#ifndef GRIPPER_GLOBAL_H
#define GRIPPER_GLOBAL_H

#include <atomic>
#include <cstdint>
#include <functional>
#include <vector>

#include "gripper_main/business_logic/gripper_global/gripper_device.h"

// The device registry shared by the pages and the script commands: the gripper slots in index
// order and whether a robot program runs. It takes no lock; observers run on the caller's thread.
class GripperGlobal {
public:
    enum ProgramState : int32_t {
        PS_STOPPED = 0,
        PS_RUNNING = 1,
    };

    class NotifyInterface {
    public:
        virtual void on_list_all_device_changed() = 0;
        virtual void on_program_state_changed(ProgramState state) = 0;
        virtual void on_program_startup() = 0;

    protected:
        ~NotifyInterface() = default;
    };

    static GripperGlobal& instance();
    // A new slot with its initial values; it is not added to the registry.
    static GripperDevice* insert_device();

    GripperGlobal(const GripperGlobal&) = delete;
    GripperGlobal& operator=(const GripperGlobal&) = delete;

    bool add_device(GripperDevice* device);
    // Removes the slot from the list without deleting it; an unknown slot is ignored.
    bool remove_device(GripperDevice* device);
    // The slot at index, or null when there is none.
    GripperDevice* get_device(uint32_t index);
    std::vector<GripperDevice*> vector_device() const;

    ProgramState get_program_state() const;
    void set_program_state(ProgramState state);

    void add_notify_interface(NotifyInterface* notify);
    void remove_notify_interface(NotifyInterface* notify);

private:
    GripperGlobal();
    // At exit: frees the records still in the list.
    ~GripperGlobal();

    void notify_list_changed();
    void notify(const std::function<void(NotifyInterface*)>& call);

    std::atomic<ProgramState> program_state_;
    std::vector<NotifyInterface*> notify_interfaces_;
    std::vector<GripperDevice*> vector_device_;
};

#endif
