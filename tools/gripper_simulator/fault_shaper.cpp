#include "tools/gripper_simulator/fault_shaper.h"

namespace gripper_sim {

FaultShaper::FaultShaper() : random_(std::random_device{}()) {}

Bytes FaultShaper::shape(Fault fault, const Responder& responder, Bytes frame, uint8_t wrong_id) {
    switch (fault) {
        case Fault::bad_crc:
            return responder.corrupt(std::move(frame));
        case Fault::wrong_id:
            return responder.readdress(std::move(frame), wrong_id);
        case Fault::short_answer:
            if (!frame.empty()) {
                frame.pop_back();
            }
            return frame;
        case Fault::long_answer:
            frame.push_back(0x00);
            return frame;
        case Fault::garbage:
            return garbage(frame.size());
        default:
            return frame;
    }
}

Bytes FaultShaper::garbage(size_t size) {
    std::uniform_int_distribution<int> byte(0, 255);
    Bytes bytes(size);
    for (auto& b : bytes) {
        b = static_cast<uint8_t>(byte(random_));
    }
    return bytes;
}

}  // namespace gripper_sim
