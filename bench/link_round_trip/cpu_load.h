#ifndef BENCH_LINK_ROUND_TRIP_CPU_LOAD_H
#define BENCH_LINK_ROUND_TRIP_CPU_LOAD_H

#include <sys/types.h>

#include <vector>

// Processes that keep cores busy at normal priority, as a pendant's other work would, from
// construction to destruction.
class CpuLoad {
public:
    explicit CpuLoad(int processes);
    ~CpuLoad();
    CpuLoad(const CpuLoad&) = delete;
    CpuLoad& operator=(const CpuLoad&) = delete;

    int processes() const { return static_cast<int>(children_.size()); }

private:
    std::vector<pid_t> children_;
};

#endif
