#include "bench/link_round_trip/cpu_load.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

CpuLoad::CpuLoad(int processes) {
    for (int i = 0; i < processes; ++i) {
        const pid_t child = fork();
        if (0 == child) {
            // Spins until killed; nothing here needs the parent's threads or locks.
            for (volatile unsigned long n = 0;; n = n + 1) {
            }
        }
        if (child > 0) {
            children_.push_back(child);
        }
    }
}

CpuLoad::~CpuLoad() {
    for (pid_t child : children_) {
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
    }
}
