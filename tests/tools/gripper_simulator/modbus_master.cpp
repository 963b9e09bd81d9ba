#include "tests/tools/gripper_simulator/modbus_master.h"

#include <cerrno>

namespace sim_test {

ModbusMaster::ModbusMaster(const std::string& device, int slave, milliseconds response_timeout)
    : context_(modbus_new_rtu(device.c_str(), 115200, 'N', 8, 1)) {
    if (context_ == nullptr) {
        return;
    }
    modbus_set_slave(context_, slave);
    set_response_timeout(response_timeout);
    connected_ = modbus_connect(context_) == 0;
}

ModbusMaster::~ModbusMaster() {
    if (context_ != nullptr) {
        modbus_close(context_);
        modbus_free(context_);
    }
}

void ModbusMaster::set_response_timeout(milliseconds timeout) {
    const auto ms = timeout.count();
    modbus_set_response_timeout(context_, static_cast<uint32_t>(ms / 1000),
                                static_cast<uint32_t>(ms % 1000) * 1000);
}

int ModbusMaster::read(int reg) {
    uint16_t value = 0;
    if (modbus_read_registers(context_, reg, 1, &value) != 1) {
        error_ = errno;
        return -1;
    }
    return value;
}

bool ModbusMaster::write(int reg, int value) {
    if (modbus_write_register(context_, reg, static_cast<uint16_t>(value)) != 1) {
        error_ = errno;
        return false;
    }
    return true;
}

Bytes ModbusMaster::raw(const Bytes& request) {
    uint8_t answer[MODBUS_RTU_MAX_ADU_LENGTH];
    if (modbus_send_raw_request(context_, request.data(), static_cast<int>(request.size())) < 0) {
        error_ = errno;
        return {};
    }
    const int size = modbus_receive_confirmation(context_, answer);
    if (size < 0) {
        error_ = errno;
        return {};
    }
    return Bytes(answer, answer + size);
}

}  // namespace sim_test
