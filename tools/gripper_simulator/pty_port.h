#ifndef TOOLS_GRIPPER_SIMULATOR_PTY_PORT_H
#define TOOLS_GRIPPER_SIMULATOR_PTY_PORT_H

#include "tools/gripper_simulator/port.h"

namespace gripper_sim {

// A pseudo-terminal in raw 115200 8N1 mode. Clients open the slave side (endpoint()); the port
// keeps a slave descriptor of its own so that clients may come and go without a hang-up.
class PtyPort : public Port {
public:
    PtyPort() = default;
    ~PtyPort() override;
    PtyPort(const PtyPort&) = delete;
    PtyPort& operator=(const PtyPort&) = delete;

    // Every open gives a slave path different from the previous one.
    bool open() override;
    void close() override;
    bool is_open() const override { return pair_.master >= 0; }
    // A serial line cannot drop one client: it goes dead like close().
    void reset_client() override { close(); }
    void add_poll_fds(std::vector<pollfd>& fds) const override;
    Bytes serve(const pollfd* fds, size_t count) override;
    void send(const Bytes& frame) override;
    std::string endpoint() const override { return pair_.path; }
    const char* kind() const override { return "pty"; }

private:
    struct Pair {
        int master = -1;
        int slave = -1;
        std::string path;
    };

    static Pair open_pair();
    static bool make_raw(int fd);
    static void close_pair(Pair& pair);

    Pair pair_;
    std::string last_path_;
};

}  // namespace gripper_sim

#endif
