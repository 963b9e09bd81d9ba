#ifndef TOOLS_GRIPPER_DOCTOR_TCP_CHECK_H
#define TOOLS_GRIPPER_DOCTOR_TCP_CHECK_H

#include <cstdint>
#include <string>

#include "tools/gripper_doctor/finding.h"
#include "tools/gripper_doctor/verdict.h"

namespace gripper_doctor {

// Connections of the tool's own that tell why the plug-in's TCP link fails: a refused port from
// an unreachable or silent host, a slow host from one that never answers, and a server that
// drops a client as soon as it sends from one that leaves it unanswered.
class TcpCheck {
public:
    // The plug-in gives up connecting after this long.
    static constexpr int PLUGIN_CONNECT_MILLIS = 200;

    // Why the plug-in could not connect, waiting up to timeout_ms.
    static Finding diagnose(const std::string& host, uint16_t port, int timeout_ms);
    // After a request went unanswered: sends it again on a connection of its own and reports a
    // reset or a closed connection; nothing found when it stays silent for wait_ms.
    static Finding drops_client(const std::string& host, uint16_t port, const Bytes& request,
                                int wait_ms);

private:
    // The errno of a connection attempt (0 connected, ETIMEDOUT when the time ran out); fd is
    // the connected socket, -1 when not connected.
    static int open_connection(const std::string& host, uint16_t port, int timeout_ms, int& fd);
    static int wait_connected(int fd, int timeout_ms);
    // The errno of the receive after the request: ECONNRESET, EPIPE for an orderly close, 0
    // for data or silence.
    static int answer_error(int fd, const Bytes& request, int wait_ms);
};

}  // namespace gripper_doctor

#endif
