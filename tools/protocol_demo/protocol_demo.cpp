// Shows both gripper wire protocols at work: every request for gripper 1 as it goes on the wire,
// then a few gripper answers as they are checked and decoded, with the log lines of a refusal.

#include <spdlog/sinks/stdout_sinks.h>
#include <spdlog/spdlog.h>

#include <cstdarg>
#include <cstdio>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "gripper/gripper_common/miscellaneous_utility/miscellaneous_utility.h"
#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "gripper/gripper_protocol/gripper_custom_protocol/gripper_custom_protocol.h"
#include "gripper/gripper_protocol/gripper_modbus_protocol/gripper_modbus_protocol.h"

namespace {

typedef GripperProtocol GP;

const uint8_t GRIPPER_ID = 1;
const int POSITION = 500;
const int FORCE = 50;
const int SPEED = 80;
const int MAXIMUM_CURRENT = 300;
const int ANGLE = 90;

struct Request {
    std::string name;
    std::string meaning;
    std::vector<uint8_t> frame;
};

std::shared_ptr<spdlog::logger>& console() {
    static std::shared_ptr<spdlog::logger> logger = spdlog::stdout_logger_mt("gripper");
    return logger;
}

spdlog::level::level_enum level_of(const char* level) {
    switch (level[0]) {
        case 'E':
            return spdlog::level::err;
        case 'W':
            return spdlog::level::warn;
        case 'I':
            return spdlog::level::info;
        default:
            return spdlog::level::debug;
    }
}

// The simple_logger back end of this program: one console line per message.
void console_logger(const char* level, const char* file, unsigned int line, const char* format,
                    va_list args) {
    char text[512];
    vsnprintf(text, sizeof(text), format, args);
    const std::string path(file);
    const std::string base = path.substr(path.find_last_of('/') + 1);
    console()->log(level_of(level), "{}:{}  {}", base, line, text);
}

std::string hex(const std::vector<uint8_t>& frame) {
    return frame.empty() ? std::string("(none: not part of this protocol)")
                         : MiscellaneousUtility::convert_hex_binary(frame);
}

void print_table(const std::string& title, const std::vector<Request>& requests) {
    std::printf("\n%s\n", title.c_str());
    std::printf("  %-22s %-40s %s\n", "Request", "Meaning", "Frame");
    for (const Request& request : requests) {
        std::printf("  %-22s %-40s %s\n", request.name.c_str(), request.meaning.c_str(),
                    hex(request.frame).c_str());
    }
}

std::vector<Request> modbus_requests(GripperModbusProtocol& p) {
    const uint8_t id = GRIPPER_ID;
    return {
        {"id", "read gripper id, sent to slave 0xFF", p.build_id_protocol()},
        {"model", "read model code (register 0x0A00)", p.build_model_protocol(id)},
        {"version", "read firmware version (0x0A02)", p.build_version_protocol(id)},
        {"emergency open", "emergency open (0x0500, code 1)", p.build_emergency_open(id)},
        {"emergency close", "emergency close (0x0500, code 2)", p.build_emegency_close(id)},
        {"initialize", "start initialisation (0x0100 = 0xA5)",
         p.build_initialize_protocol(id, true)},
        {"initialize state", "read initialisation state (0x0200)",
         p.build_initialize_protocol(id, false)},
        {"move feedback", "read motion state (0x0201)", p.build_move_feedback_protocol(id)},
        {"turn feedback", "read rotation state", p.build_turn_feedback_protocol(id)},
        {"slow move", "slow-move setting", p.build_slow_protocol(id, true, GP::SM_SLOW)},
        {"position 500", "write target position (0x0103)",
         p.build_position_protocol(id, true, POSITION)},
        {"position read", "read current position (0x0202)",
         p.build_position_protocol(id, false, 0)},
        {"force 50", "write force (0x0101)", p.build_force_protocol(id, true, FORCE)},
        {"force read", "read force (0x0101)", p.build_force_protocol(id, false, 0)},
        {"closing force 50", "closing force", p.build_closing_force_protocol(id, true, FORCE)},
        {"speed 80", "write speed (0x0104)", p.build_speed_protocol(id, true, SPEED)},
        {"speed read", "read speed (0x0104)", p.build_speed_protocol(id, false, 0)},
        {"angle 90", "rotation angle", p.build_angle_protocol(id, true, ANGLE)},
        {"maximum current 300", "maximum current (0x0306)",
         p.build_maximum_current_protocol(id, MAXIMUM_CURRENT)},
    };
}

std::vector<Request> custom_requests(GripperCustomProtocol& p) {
    const uint8_t id = GRIPPER_ID;
    return {
        {"id", "read gripper id (register 12/01)", p.build_id_protocol()},
        {"model", "model code", p.build_model_protocol(id)},
        {"version", "read firmware version (13/01)", p.build_version_protocol(id)},
        {"emergency open", "emergency open", p.build_emergency_open(id)},
        {"emergency close", "emergency close", p.build_emegency_close(id)},
        {"initialize", "start initialisation (08/02)", p.build_initialize_protocol(id, true)},
        {"initialize state", "read initialisation state (08/02)",
         p.build_initialize_protocol(id, false)},
        {"move feedback", "read motion state (0F/01)", p.build_move_feedback_protocol(id)},
        {"turn feedback", "read rotation state (0F/02)", p.build_turn_feedback_protocol(id)},
        {"slow move", "switch slow move on (11/02)", p.build_slow_protocol(id, true, GP::SM_SLOW)},
        {"position 500", "write target position (06/02)",
         p.build_position_protocol(id, true, POSITION)},
        {"position read", "read current position (06/02)", p.build_position_protocol(id, false, 0)},
        {"force 50", "write force (05/04)", p.build_force_protocol(id, true, FORCE)},
        {"force read", "read force (05/04)", p.build_force_protocol(id, false, 0)},
        {"closing force 50", "write closing force (05/02)",
         p.build_closing_force_protocol(id, true, FORCE)},
        {"speed 80", "speed", p.build_speed_protocol(id, true, SPEED)},
        {"angle 90", "write rotation angle (07/02)", p.build_angle_protocol(id, true, ANGLE)},
        {"maximum current 300", "maximum current",
         p.build_maximum_current_protocol(id, MAXIMUM_CURRENT)},
        {"stop-current ack", "acknowledge a dropped object (15/02)",
         p.build_stop_current_droped_feedback_protocol(id)},
    };
}

std::string feedback_name(GP::Feedback feedback) {
    static const char* names[] = {"undefined", "moving",   "turning",
                                  "arrived",   "detected", "dropped"};
    const int index = static_cast<int>(feedback);
    return (index >= 0 && index <= GP::F_DROPPED) ? names[index] : "undefined";
}

// The field that the package type selects, as an integrator would read it.
std::string decoded_text(const AbstractPackageData& data) {
    switch (data.package_type_) {
        case GP::PT_POSITION:
            return "position = " + std::to_string(data.position_value_);
        case GP::PT_MOVE_FEEDBACK:
        case GP::PT_TURN_FEEDBACK:
            return "feedback = " + feedback_name(data.feedback_);
        case GP::PT_VERSION:
            return "version bytes = " + MiscellaneousUtility::convert_hex_binary(data.version_);
        case GP::PT_UNDEFINE:
            return "nothing: decode refused (package type PT_UNDEFINE)";
        default:
            return "package type " + std::to_string(data.package_type_);
    }
}

struct Answer {
    std::string title;
    GripperProtocol& protocol;
    GP::PackageType type;
    std::vector<uint8_t> request;
    std::vector<uint8_t> frame;
};

// What the driver does with an answer: check it against its request, then decode it.
void show_answer(const Answer& answer) {
    std::printf("\n%s\n  request : %s\n  answer  : %s\n", answer.title.c_str(),
                hex(answer.request).c_str(), hex(answer.frame).c_str());
    std::fflush(stdout);
    if (!answer.protocol.compare_package(false, answer.request, answer.frame)) {
        console()->flush();
        std::printf("  check   : refused by compare_package (log lines above); not decoded\n");
        return;
    }
    std::printf("  check   : accepted by compare_package\n");
    std::fflush(stdout);
    const AbstractPackageData data =
        answer.protocol.parse_get_normal_package(GRIPPER_ID, answer.type, answer.frame);
    console()->flush();
    std::printf("  decoded : %s\n", decoded_text(data).c_str());
}

void show_answers(GripperModbusProtocol& modbus, GripperCustomProtocol& custom) {
    std::printf("\nSample answers from gripper %d\n", GRIPPER_ID);
    const Answer answers[] = {
        {"Modbus position answer (500)",
         modbus,
         GP::PT_POSITION,
         modbus.build_position_protocol(GRIPPER_ID, false, 0),
         {1, 3, 2, 0x01, 0xF4, 0xB8, 0x53}},
        {"Modbus motion state answer (3: object dropped)",
         modbus,
         GP::PT_MOVE_FEEDBACK,
         modbus.build_move_feedback_protocol(GRIPPER_ID),
         {1, 3, 2, 0x00, 0x03, 0xF8, 0x45}},
        {"Custom version answer",
         custom,
         GP::PT_VERSION,
         custom.build_version_protocol(GRIPPER_ID),
         {0xFF, 0xFE, 0xFD, 0xFC, 1, 0x13, 0x01, 0, 0, 0x04, 0x03, 0x02, 0x01, 0xFB}},
        {"Custom position answer from gripper 2 (wrong sender)",
         custom,
         GP::PT_POSITION,
         custom.build_position_protocol(GRIPPER_ID, false, 0),
         {0xFF, 0xFE, 0xFD, 0xFC, 2, 0x06, 0x02, 0, 0, 0xF4, 0x01, 0, 0, 0xFB}},
        {"Modbus position answer with a damaged CRC byte",
         modbus,
         GP::PT_POSITION,
         modbus.build_position_protocol(GRIPPER_ID, false, 0),
         {1, 3, 2, 0x01, 0xF4, 0xB8, 0x54}},
    };
    for (const Answer& answer : answers) {
        show_answer(answer);
    }
}

}  // namespace

int main() {
    console()->set_pattern("  log [%L] %v");
    console()->set_level(spdlog::level::debug);
    register_simple_logger(&console_logger);

    GripperModbusProtocol modbus;
    GripperCustomProtocol custom;
    std::printf("Gripper wire protocols: requests for gripper %d\n", GRIPPER_ID);
    print_table(
        "Modbus RTU (8-byte frames: slave, function 03 read / 06 write, register, "
        "count or value, CRC low, CRC high)",
        modbus_requests(modbus));
    print_table(
        "Custom frames (14 bytes: header FF FE FD FC, id, register primary/secondary, "
        "read 0 / write 1, 0, value little endian, trailer FB)",
        custom_requests(custom));
    show_answers(modbus, custom);
    register_simple_logger(nullptr);
    return 0;
}
