#ifndef OBJECT_KEEPER_H
#define OBJECT_KEEPER_H

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <thread>

// Frees shared objects (drivers, device records, observers) once no thread can still hold them.
//
// A reader holds a Section while it uses a pointer it read from a shared place: a script command,
// a page redraw, a worker task (from its post on), an observer call, an update cycle. An owner
// first takes the object out of every shared place, then retires it; the keeper's own thread
// frees it once every section that began before the retirement has ended. A section that begins
// later cannot find the object any more.
//
// Sections count generations: each retirement closes one. Sections may nest, may move to
// another thread, and may be copied to hand a pointer over (the copy counts as begun with the
// original). Only the keeper's thread frees, so no reader ever runs a destructor: a driver's
// update thread never ends up destroying its own driver (whose destructor waits for that thread).
class ObjectKeeper {
public:
    class Section {
    public:
        // A section in instance().
        Section();
        explicit Section(ObjectKeeper& keeper);
        // A section that counts as begun with held: it keeps what held keeps, so another thread
        // may go on using a pointer read inside held after held has ended.
        Section(const Section& held);
        Section(Section&& other) noexcept;
        ~Section();
        Section& operator=(const Section&) = delete;
        Section& operator=(Section&&) = delete;

    private:
        ObjectKeeper* keeper_;
        uint64_t generation_;
    };

    // The process's keeper, made on first use; it ends at exit and frees what is still retired.
    static ObjectKeeper& instance();
    ObjectKeeper();
    ~ObjectKeeper();
    ObjectKeeper(const ObjectKeeper&) = delete;
    ObjectKeeper& operator=(const ObjectKeeper&) = delete;

    // Takes an object no shared place holds any more; null is ignored.
    template <typename T>
    void retire(T* object) {
        if (nullptr != object) {
            retire_with([object] { delete object; });
        }
    }
    void retire_with(std::function<void()> free);
    // Objects retired and not freed yet.
    size_t pending() const;

private:
    struct Retired {
        uint64_t generation;
        std::function<void()> free;
    };

    uint64_t enter();
    uint64_t join(uint64_t generation);
    void leave(uint64_t generation);
    bool front_free() const;
    void run();

    mutable std::mutex mutex_;
    std::condition_variable wake_;
    uint64_t generation_;
    // Open sections by the generation they began in.
    std::map<uint64_t, int> open_;
    std::deque<Retired> retired_;
    bool stopping_;
    std::thread thread_;
};

#endif
