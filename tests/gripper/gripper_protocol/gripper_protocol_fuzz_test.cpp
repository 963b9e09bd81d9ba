#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "gripper/gripper_protocol/gripper_custom_protocol/gripper_custom_protocol.h"
#include "gripper/gripper_protocol/gripper_modbus_protocol/gripper_modbus_protocol.h"
#include "tests/gripper/gripper_protocol/protocol_test_support.h"

// Random answers for both decoders and both answer checks: nothing may crash or trip a sanitizer,
// and every outcome must be one the protocol allows. Replay a failure with GRIPPER_FUZZ_SEED.

namespace {

typedef GripperProtocol GP;

const int CASES_PER_PROTOCOL = 300000;
const uint32_t DEFAULT_SEED = 20240611u;

class Random {
public:
    explicit Random(uint32_t seed) : engine_(seed) {}

    // Uniform in [0, bound).
    uint32_t below(uint32_t bound) { return engine_() % bound; }
    bool chance(uint32_t percent) { return below(100) < percent; }
    uint8_t byte() { return static_cast<uint8_t>(engine_()); }

    // 0..40 bytes, most often the lengths the protocols use.
    size_t length() {
        const uint32_t pick = below(100);
        if (pick < 25) {
            return 7;
        }
        if (pick < 40) {
            return 8;
        }
        if (pick < 65) {
            return 14;
        }
        return below(41);
    }

    uint8_t id() {
        static const uint8_t ids[] = {0, 1, 2, 254, 255};
        return chance(80) ? ids[below(5)] : byte();
    }

    GP::PackageType package_type() {
        static const int32_t outside[] = {-5, -1, 15, 16, 255, 1000, INT32_MIN, INT32_MAX};
        if (chance(85)) {
            return static_cast<GP::PackageType>(below(15));
        }
        return static_cast<GP::PackageType>(chance(50) ? outside[below(8)]
                                                       : static_cast<int32_t>(engine_()));
    }

    std::vector<uint8_t> bytes(size_t count) {
        std::vector<uint8_t> stream(count);
        for (uint8_t& b : stream) {
            b = byte();
        }
        return stream;
    }

    // A small value most of the time, so that state tables and register checks are reached.
    uint8_t small_or_any() { return chance(70) ? static_cast<uint8_t>(below(5)) : byte(); }

private:
    std::mt19937 engine_;
};

uint32_t fuzz_seed() {
    const char* text = std::getenv("GRIPPER_FUZZ_SEED");
    const uint32_t seed =
        (text && *text) ? static_cast<uint32_t>(std::strtoul(text, nullptr, 0)) : DEFAULT_SEED;
    std::cout << "GRIPPER_FUZZ_SEED=" << seed << std::endl;
    return seed;
}

// Often a plausible Modbus answer: the expected slave, a short byte count and a valid CRC.
std::vector<uint8_t> modbus_stream(Random& random, uint8_t id) {
    std::vector<uint8_t> stream = random.bytes(random.length());
    if (stream.size() >= 3 && random.chance(70)) {
        stream[0] = random.chance(80) ? id : random.byte();
        stream[1] = 0x03;
        stream[2] = random.small_or_any();
    }
    if (stream.size() == 7 && random.chance(70)) {
        stream[4] = random.small_or_any();
        const uint16_t crc = modbus_crc_16(std::vector<uint8_t>(stream.begin(), stream.end() - 2));
        stream[5] = static_cast<uint8_t>(crc & 0xFF);
        stream[6] = static_cast<uint8_t>(crc >> 8);
    }
    return stream;
}

// Often a plausible custom answer: the expected id, a known register and a small value.
std::vector<uint8_t> custom_stream(Random& random, uint8_t id) {
    static const uint8_t registers[] = {0x05, 0x06, 0x07, 0x08, 0x0F, 0x11, 0x12, 0x13, 0x15};
    std::vector<uint8_t> stream = random.bytes(random.length());
    if (stream.size() == 14 && random.chance(80)) {
        stream[4] = random.chance(80) ? id : random.byte();
        stream[5] = random.chance(80) ? registers[random.below(9)] : random.byte();
        stream[9] = random.small_or_any();
        for (int i = 10; i < 13; ++i) {
            stream[i] = random.chance(70) ? 0 : random.byte();
        }
    }
    return stream;
}

std::vector<uint8_t> request(Random& random, GripperProtocol& protocol, uint8_t id,
                             const std::vector<uint8_t>& answer) {
    const uint32_t pick = random.below(4);
    if (0 == pick) {
        return protocol.build_position_protocol(id, random.chance(50), random.byte());
    }
    if (1 == pick) {
        return answer;
    }
    return random.bytes(random.length());
}

bool is_modbus_type(GP::PackageType type) {
    switch (type) {
        case GP::PT_INITIALIZE:
        case GP::PT_MOVE_FEEDBACK:
        case GP::PT_POSITION:
        case GP::PT_SPEED:
        case GP::PT_FORCE:
        case GP::PT_MODEL:
        case GP::PT_ID:
        case GP::PT_VERSION:
            return true;
        default:
            return false;
    }
}

bool is_custom_type(GP::PackageType type) {
    return type == 1 || (type >= 4 && type <= 14);
}

// How often each outcome occurred, to show that the biased streams reach every decode path.
struct Tally {
    std::map<int32_t, int> decoded;
    int compare_accepted = 0;
    int compare_refused = 0;

    void count(const AbstractPackageData& data, bool accepted) {
        if (GP::PT_UNDEFINE != data.package_type_) {
            ++decoded[data.package_type_];
        }
        ++(accepted ? compare_accepted : compare_refused);
    }

    void expect_reached(const std::vector<int32_t>& types) const {
        for (int32_t type : types) {
            EXPECT_GT(decoded.count(type), 0u) << "no accepted answer of type " << type;
        }
        EXPECT_GT(compare_accepted, 0);
        EXPECT_GT(compare_refused, 0);
    }
};

bool has_valid_crc(const std::vector<uint8_t>& stream) {
    const uint16_t crc = modbus_crc_16(std::vector<uint8_t>(stream.begin(), stream.end() - 2));
    return stream[5] == (crc & 0xFF) && stream[6] == (crc >> 8);
}

// A refused Modbus answer gives the initial record; an accepted one passed every check.
void check_modbus_case(Random& random, GripperModbusProtocol& protocol, int index, Tally& tally) {
    const uint8_t id = random.id();
    const GP::PackageType type = random.package_type();
    const std::vector<uint8_t> answer = modbus_stream(random, id);
    const AbstractPackageData data = protocol.parse_get_normal_package(id, type, answer);
    if (GP::PT_UNDEFINE == data.package_type_) {
        ASSERT_EQ(data, AbstractPackageData()) << "case " << index << " " << hex_text(answer);
    } else {
        ASSERT_EQ(data.package_type_, type) << "case " << index;
        ASSERT_TRUE(is_modbus_type(type)) << "case " << index << " type " << type;
        ASSERT_EQ(answer.size(), 7u) << "case " << index;
        ASSERT_TRUE(id == 255 || answer[0] == id) << "case " << index << " " << hex_text(answer);
    }
    const bool set = random.chance(50);
    const std::vector<uint8_t> write = request(random, protocol, id, answer);
    const bool accepted = protocol.compare_package(set, write, answer);
    if (set) {
        ASSERT_EQ(accepted, !write.empty() && write == answer) << "case " << index;
    } else {
        ASSERT_EQ(accepted, !write.empty() && answer.size() == 7 && has_valid_crc(answer))
            << "case " << index << " " << hex_text(answer);
    }
    tally.count(data, accepted);
}

// A refused custom answer keeps the requested id and nothing else; an accepted one passed every
// check.
void check_custom_case(Random& random, GripperCustomProtocol& protocol, int index, Tally& tally) {
    const uint8_t id = random.id();
    const GP::PackageType type = random.package_type();
    const std::vector<uint8_t> answer = custom_stream(random, id);
    const AbstractPackageData data = protocol.parse_get_normal_package(id, type, answer);
    if (GP::PT_UNDEFINE != data.package_type_) {
        ASSERT_EQ(data.package_type_, type) << "case " << index;
        ASSERT_TRUE(is_custom_type(type)) << "case " << index << " type " << type;
        ASSERT_EQ(answer.size(), 14u) << "case " << index;
        ASSERT_TRUE(id == 255 || answer[4] == id) << "case " << index << " " << hex_text(answer);
    } else {
        ASSERT_EQ(data, record(GP::PT_UNDEFINE, id)) << "case " << index << " " << hex_text(answer);
    }
    const std::vector<uint8_t> write = request(random, protocol, id, answer);
    const bool accepted = protocol.compare_package(random.chance(50), write, answer);
    ASSERT_EQ(accepted, write.size() == 14 && !answer.empty()) << "case " << index;
    tally.count(data, accepted);
}

class GripperProtocolFuzz : public ::testing::Test {
protected:
    void SetUp() override { register_simple_logger(nullptr); }
};

TEST_F(GripperProtocolFuzz, ModbusSurvivesRandomAnswers) {
    Random random(fuzz_seed());
    GripperModbusProtocol protocol;
    Tally tally;
    for (int i = 0; i < CASES_PER_PROTOCOL; ++i) {
        check_modbus_case(random, protocol, i, tally);
        if (HasFatalFailure()) {
            return;
        }
    }
    tally.expect_reached({4, 5, 7, 8, 10, 12, 13, 14});
}

TEST_F(GripperProtocolFuzz, CustomSurvivesRandomAnswers) {
    Random random(fuzz_seed());
    GripperCustomProtocol protocol;
    Tally tally;
    for (int i = 0; i < CASES_PER_PROTOCOL; ++i) {
        check_custom_case(random, protocol, i, tally);
        if (HasFatalFailure()) {
            return;
        }
    }
    tally.expect_reached({1, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14});
}

}  // namespace
