#include "gripper_main/userinterface_logic/gripper_command_worker/gripper_command_worker.h"

#include <algorithm>

#include "gripper/gripper_business_logic/gripper_connection_manager/gripper_connection_manager.h"
#include "gripper_main/business_logic/gripper_global/gripper_global.h"

GripperCommandWorker& GripperCommandWorker::instance() {
    static GripperCommandWorker worker;
    return worker;
}

GripperCommandWorker& GripperCommandWorker::moves() {
    static GripperCommandWorker worker;
    return worker;
}

// The singletons the tasks use are made first, so that they are destroyed after this worker's
// thread has ended.
GripperCommandWorker::GripperCommandWorker() : running_owner_(nullptr), stopping_(false) {
    GripperConnectionManager::instance();
    GripperGlobal::instance();
    ObjectKeeper::instance();
    thread_ = std::thread(&GripperCommandWorker::run, this);
}

GripperCommandWorker::~GripperCommandWorker() {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
        queue_.clear();
    }
    wake_.notify_all();
    thread_.join();
}

void GripperCommandWorker::post(const void* owner, Work work, Key key,
                                const ObjectKeeper::Section* held) {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        const auto same =
            std::find_if(queue_.begin(), queue_.end(), [owner, key](const Task& task) {
                return nullptr != key.subject && owner == task.owner &&
                       key.subject == task.key.subject && key.kind == task.key.kind;
            });
        if (queue_.end() != same) {
            same->work = std::move(work);
        } else {
            queue_.push_back(Task{owner, std::move(work), key,
                                  nullptr != held ? std::make_shared<ObjectKeeper::Section>(*held)
                                                  : std::make_shared<ObjectKeeper::Section>()});
        }
    }
    wake_.notify_one();
}

void GripperCommandWorker::release(const void* owner) {
    std::unique_lock<std::mutex> lock(mutex_);
    queue_.erase(std::remove_if(queue_.begin(), queue_.end(),
                                [owner](const Task& task) { return owner == task.owner; }),
                 queue_.end());
    finished_.wait(lock, [this, owner] { return owner != running_owner_; });
}

size_t GripperCommandWorker::queued() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return queue_.size();
}

void GripperCommandWorker::run() {
    Task task;
    while (next(task)) {
        finish(task.work());
        task = Task();
    }
}

// Waits for the next task and marks its owner as running; false once the worker stops.
bool GripperCommandWorker::next(Task& task) {
    std::unique_lock<std::mutex> lock(mutex_);
    wake_.wait(lock, [this] { return stopping_ || !queue_.empty(); });
    if (stopping_) {
        return false;
    }
    task = std::move(queue_.front());
    queue_.pop_front();
    running_owner_ = task.owner;
    return true;
}

void GripperCommandWorker::finish(const Completion& completion) {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (completion) {
            completion();
        }
        running_owner_ = nullptr;
    }
    finished_.notify_all();
}
