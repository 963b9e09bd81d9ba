#ifndef TOOLS_GRIPPER_SIMULATOR_RESPONDER_H
#define TOOLS_GRIPPER_SIMULATOR_RESPONDER_H

#include <optional>

#include "tools/gripper_simulator/types.h"

namespace gripper_sim {

// Frames and answers one wire protocol: collects received bytes, cuts them into requests
// (skipping whatever is no frame) and builds the gripper's answer to each.
class Responder {
public:
    virtual ~Responder() = default;

    void feed(const Bytes& bytes);
    void clear() { buffer_.clear(); }
    // The next complete request in the bytes fed so far; leading junk is dropped.
    virtual std::optional<Bytes> next_request() = 0;
    // The answer to `request`; empty when the gripper stays quiet.
    virtual Bytes answer(const Bytes& request) = 0;
    // `frame` with its check bytes damaged, as a noisy line would deliver it.
    virtual Bytes corrupt(Bytes frame) const = 0;
    // `frame` as if a gripper with the id `id` had sent it.
    virtual Bytes readdress(Bytes frame, uint8_t id) const = 0;
    // The frame the gripper sends unasked when it loses a held object; empty when the protocol
    // has none.
    virtual Bytes dropped_frame() const = 0;
    // True when `request` acknowledges a dropped object.
    virtual bool acknowledges_drop(const Bytes& request) const {
        (void)request;
        return false;
    }

protected:
    Bytes buffer_;
};

}  // namespace gripper_sim

#endif
