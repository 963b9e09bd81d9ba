#ifndef TOOLS_GRIPPER_SIMULATOR_FAULT_SHAPER_H
#define TOOLS_GRIPPER_SIMULATOR_FAULT_SHAPER_H

#include <random>

#include "tools/gripper_simulator/responder.h"

namespace gripper_sim {

// Turns a correct outgoing frame into what a gripper with the given fault puts on the wire.
// Faults that change when or whether a frame is sent (silent, late, reset, vanish) are the
// sender's business and leave the frame as it is here.
class FaultShaper {
public:
    FaultShaper();

    Bytes shape(Fault fault, const Responder& responder, Bytes frame, uint8_t wrong_id);

private:
    Bytes garbage(size_t size);

    std::mt19937 random_;
};

}  // namespace gripper_sim

#endif
