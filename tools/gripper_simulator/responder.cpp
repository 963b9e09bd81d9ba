#include "tools/gripper_simulator/responder.h"

namespace gripper_sim {

void Responder::feed(const Bytes& bytes) {
    buffer_.insert(buffer_.end(), bytes.begin(), bytes.end());
}

}  // namespace gripper_sim
