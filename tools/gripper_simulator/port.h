#ifndef TOOLS_GRIPPER_SIMULATOR_PORT_H
#define TOOLS_GRIPPER_SIMULATOR_PORT_H

#include <poll.h>

#include <string>
#include <vector>

#include "tools/gripper_simulator/types.h"

namespace gripper_sim {

// The byte channel a simulated gripper listens on. Used by the gripper's responder thread only.
class Port {
public:
    virtual ~Port() = default;

    // Opens, or opens again after close(); false when the system refuses.
    virtual bool open() = 0;
    // Closes everything: clients see a dead port.
    virtual void close() = 0;
    virtual bool is_open() const = 0;
    // Drops the connected client abruptly.
    virtual void reset_client() = 0;
    // Appends the descriptors to wait on for input.
    virtual void add_poll_fds(std::vector<pollfd>& fds) const = 0;
    // Serves the descriptors that poll() flagged (first `count` entries from `fds`, in the order
    // add_poll_fds gave them) and returns the bytes received.
    virtual Bytes serve(const pollfd* fds, size_t count) = 0;
    // Writes a frame to the client; lost when there is none.
    virtual void send(const Bytes& frame) = 0;
    // True once after a new client replaced the old one: answers still queued were the old one's.
    virtual bool take_client_change() { return false; }
    // "/dev/pts/N" or "127.0.0.1:PORT".
    virtual std::string endpoint() const = 0;
    virtual uint16_t tcp_port() const { return 0; }
    // "pty" or "tcp".
    virtual const char* kind() const = 0;
};

}  // namespace gripper_sim

#endif
