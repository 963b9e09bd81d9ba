#ifndef TOOLS_GRIPPER_SIMULATOR_MODBUS_RESPONDER_H
#define TOOLS_GRIPPER_SIMULATOR_MODBUS_RESPONDER_H

#include "tools/gripper_simulator/gripper_model.h"
#include "tools/gripper_simulator/responder.h"

namespace gripper_sim {

// Modbus RTU slave with one-register reads (0x03) and single-register writes (0x06).
class ModbusResponder : public Responder {
public:
    ModbusResponder(GripperModel& model, const GripperOptions& options);

    std::optional<Bytes> next_request() override;
    Bytes answer(const Bytes& request) override;
    Bytes corrupt(Bytes frame) const override;
    Bytes readdress(Bytes frame, uint8_t id) const override;
    // A Modbus slave never speaks unasked.
    Bytes dropped_frame() const override { return {}; }

private:
    bool addressed(uint8_t address, uint8_t function, uint16_t reg) const;
    Bytes read(uint8_t address, uint16_t reg, uint16_t count);
    Bytes write(const Bytes& request, uint8_t address, uint16_t reg, uint16_t value);
    Bytes emergency(uint8_t address, uint16_t command);
    bool register_value(uint16_t reg, uint16_t& value) const;

    GripperModel& model_;
    const GripperOptions options_;
};

}  // namespace gripper_sim

#endif
