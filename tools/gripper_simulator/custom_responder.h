#ifndef TOOLS_GRIPPER_SIMULATOR_CUSTOM_RESPONDER_H
#define TOOLS_GRIPPER_SIMULATOR_CUSTOM_RESPONDER_H

#include "tools/gripper_simulator/gripper_model.h"
#include "tools/gripper_simulator/responder.h"

namespace gripper_sim {

// The 14-byte frame protocol: FF FE FD FC, id, primary, secondary, read/write, reserved,
// value (int32, least significant byte first), FB. No checksum.
class CustomResponder : public Responder {
public:
    CustomResponder(GripperModel& model, const GripperOptions& options);

    std::optional<Bytes> next_request() override;
    Bytes answer(const Bytes& request) override;
    Bytes corrupt(Bytes frame) const override;
    Bytes readdress(Bytes frame, uint8_t id) const override;
    // FF FE FD FC id 15 01 00 00 01 00 00 00 FB.
    Bytes dropped_frame() const override;
    bool acknowledges_drop(const Bytes& request) const override;

private:
    bool addressed(uint8_t id, uint16_t reg) const;
    bool read_value(uint16_t reg, int32_t& value) const;
    bool write_value(uint16_t reg, int32_t value);
    int32_t move_feedback() const;

    GripperModel& model_;
    const GripperOptions options_;
};

}  // namespace gripper_sim

#endif
