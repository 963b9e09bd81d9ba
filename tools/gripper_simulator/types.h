#ifndef TOOLS_GRIPPER_SIMULATOR_TYPES_H
#define TOOLS_GRIPPER_SIMULATOR_TYPES_H

#include <array>
#include <cstdint>
#include <vector>

namespace gripper_sim {

using Bytes = std::vector<uint8_t>;

// Wire protocol a simulated gripper speaks.
enum class Wire { modbus, custom };

// Misbehaviour a gripper shows on demand.
enum class Fault {
    none,
    silent,
    late,
    bad_crc,
    wrong_id,
    short_answer,
    long_answer,
    garbage,
    reset,
    vanish
};

struct GripperOptions {
    int id = 1;                                           // slave id / custom id byte
    uint16_t model_code = 0x1000;                         // Modbus register 0x0A00
    uint16_t modbus_version = 0x0102;                     // Modbus register 0x0A02
    std::array<uint8_t, 4> custom_version{{1, 2, 1, 3}};  // custom version value bytes 9-12
    int position_max = 1000;    // register value of the full stroke (100 for custom frames)
    int init_ms = 300;          // initialisation takes this long
    int full_stroke_ms = 1000;  // time of a full stroke at speed 100
    int object_at = -1;         // register position of an object that stops the fingers; -1 none
    int late_ms = 250;          // delay of the "late" fault
    int baud = 0;       // answers paced like a line at this rate (10 bits a byte); 0: at once
    int window_us = 0;  // with baud: handed over in windows of this length, as a USB serial
                        // adapter delivers; 0: byte by byte
};

struct GripperSnapshot {
    int position;
    int target;
    int force;
    int speed;
    bool initialised;
    int motion_state;  // Modbus coding: 0 moving, 1 arrived, 2 detected, 3 dropped
    bool object_held;
    long frames_received;        // well-formed frames received, whoever they were for
    long answers_sent;           // frames written: answers (faulty ones too) and the dropped frame
    long drop_acknowledgements;  // custom frames: acknowledgements of a dropped object received
    // When the last stroke ends or ended: nanoseconds of the monotonic clock (steady_clock).
    long long stroke_end_ns;
};

}  // namespace gripper_sim

#endif
