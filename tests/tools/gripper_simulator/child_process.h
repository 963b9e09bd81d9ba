#ifndef TESTS_TOOLS_GRIPPER_SIMULATOR_CHILD_PROCESS_H
#define TESTS_TOOLS_GRIPPER_SIMULATOR_CHILD_PROCESS_H

#include <sys/types.h>

#include <string>
#include <vector>

#include "tests/tools/gripper_simulator/test_support.h"

namespace sim_test {

// A program run with pipes on its stdin and stdout; killed and reaped on destruction if still
// running.
class ChildProcess {
public:
    ChildProcess(const std::string& program, const std::vector<std::string>& args);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    bool started() const { return pid_ > 0; }
    // The next stdout line without its newline; empty at end of output or after `timeout`.
    std::string read_line(milliseconds timeout = milliseconds(5000));
    // Everything the program writes to stdout until it closes it.
    std::string read_all(milliseconds timeout = milliseconds(5000));
    bool write_line(const std::string& line);
    void close_stdin();
    void signal(int number);
    // The exit status once the program ended, -1 when still running after `timeout`.
    int wait_exit(milliseconds timeout = milliseconds(5000));

private:
    bool fill(milliseconds timeout);

    pid_t pid_ = -1;
    int stdin_ = -1;
    int stdout_ = -1;
    std::string buffer_;
    bool output_ended_ = false;
};

}  // namespace sim_test

#endif
