#ifndef TESTS_TOOLS_GRIPPER_SIMULATOR_MODBUS_MASTER_H
#define TESTS_TOOLS_GRIPPER_SIMULATOR_MODBUS_MASTER_H

#include <modbus/modbus.h>

#include <string>

#include "tests/tools/gripper_simulator/test_support.h"

namespace sim_test {

// A libmodbus RTU master on a serial device, 115200 8N1.
class ModbusMaster {
public:
    ModbusMaster(const std::string& device, int slave, milliseconds response_timeout);
    ~ModbusMaster();
    ModbusMaster(const ModbusMaster&) = delete;
    ModbusMaster& operator=(const ModbusMaster&) = delete;

    bool connected() const { return connected_; }
    void set_response_timeout(milliseconds timeout);
    // The register's value, or -1 with error() telling libmodbus's errno.
    int read(int reg);
    bool write(int reg, int value);
    // Sends 6 bytes (libmodbus adds the CRC) and returns the checked answer; empty on failure.
    Bytes raw(const Bytes& request);
    // Throws away whatever is waiting on the line.
    void flush() { modbus_flush(context_); }
    int error() const { return error_; }

private:
    modbus_t* context_;
    bool connected_ = false;
    int error_ = 0;
};

}  // namespace sim_test

#endif
