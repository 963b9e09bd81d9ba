#include "gripper/gripper_common/object_keeper/object_keeper.h"

#include <utility>
#include <vector>

ObjectKeeper::Section::Section() : Section(ObjectKeeper::instance()) {}

ObjectKeeper::Section::Section(ObjectKeeper& keeper)
    : keeper_(&keeper), generation_(keeper.enter()) {}

ObjectKeeper::Section::Section(const Section& held)
    : keeper_(held.keeper_),
      generation_(nullptr == keeper_ ? 0 : keeper_->join(held.generation_)) {}

ObjectKeeper::Section::Section(Section&& other) noexcept
    : keeper_(other.keeper_), generation_(other.generation_) {
    other.keeper_ = nullptr;
}

ObjectKeeper::Section::~Section() {
    if (nullptr != keeper_) {
        keeper_->leave(generation_);
    }
}

ObjectKeeper& ObjectKeeper::instance() {
    static ObjectKeeper keeper;
    return keeper;
}

ObjectKeeper::ObjectKeeper() : generation_(0), stopping_(false) {
    thread_ = std::thread(&ObjectKeeper::run, this);
}

// At exit: what is still retired is freed here, whatever section is still open.
ObjectKeeper::~ObjectKeeper() {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
    }
    wake_.notify_all();
    thread_.join();
    for (const Retired& retired : retired_) {
        retired.free();
    }
}

void ObjectKeeper::retire_with(std::function<void()> free) {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        retired_.push_back(Retired{generation_, std::move(free)});
        ++generation_;
    }
    wake_.notify_all();
}

size_t ObjectKeeper::pending() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return retired_.size();
}

uint64_t ObjectKeeper::enter() {
    std::lock_guard<std::mutex> lock(mutex_);
    ++open_[generation_];
    return generation_;
}

// The generation is still open (held by the section copied), so nothing of it has been freed.
uint64_t ObjectKeeper::join(uint64_t generation) {
    std::lock_guard<std::mutex> lock(mutex_);
    ++open_[generation];
    return generation;
}

void ObjectKeeper::leave(uint64_t generation) {
    bool oldest_ended = false;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        const auto open = open_.find(generation);
        if (0 == --open->second) {
            oldest_ended = open == open_.begin();
            open_.erase(open);
        }
        oldest_ended = oldest_ended && !retired_.empty();
    }
    if (oldest_ended) {
        wake_.notify_all();
    }
}

// The oldest retired object is free once no open section began in or before its generation.
bool ObjectKeeper::front_free() const {
    return !retired_.empty() &&
           (open_.empty() || retired_.front().generation < open_.begin()->first);
}

void ObjectKeeper::run() {
    std::unique_lock<std::mutex> lock(mutex_);
    while (true) {
        wake_.wait(lock, [this] { return stopping_ || front_free(); });
        if (stopping_) {
            return;
        }
        std::vector<std::function<void()>> frees;
        while (front_free()) {
            frees.push_back(std::move(retired_.front().free));
            retired_.pop_front();
        }
        lock.unlock();
        for (const std::function<void()>& free : frees) {
            free();
        }
        lock.lock();
    }
}
