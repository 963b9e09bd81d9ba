#ifndef TOOLS_GRIPPER_SIMULATOR_CONTROL_SOCKET_H
#define TOOLS_GRIPPER_SIMULATOR_CONTROL_SOCKET_H

#include <string>

#include "tools/gripper_simulator/line_channel.h"

namespace gripper_sim {

// The control channel on a unix stream socket; clients are served one after the other.
class ControlSocket {
public:
    ControlSocket() = default;
    // Closes the socket and removes its file.
    ~ControlSocket();
    ControlSocket(const ControlSocket&) = delete;
    ControlSocket& operator=(const ControlSocket&) = delete;

    // Listens at `path`, replacing a stale socket file there.
    bool open(const std::string& path);
    // Serves clients until `stop_fd` becomes readable.
    void serve(int stop_fd, const LineHandler& handle);

private:
    std::string path_;
    int fd_ = -1;
};

}  // namespace gripper_sim

#endif
