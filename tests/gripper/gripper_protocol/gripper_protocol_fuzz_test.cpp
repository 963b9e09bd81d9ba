// Random answers for both decoders and both answer checks: nothing may crash or trip a sanitizer,
// and every decode must be one the protocol allows. Replay a failure with GRIPPER_FUZZ_SEED.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <random>
#include <set>

#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "gripper/gripper_protocol/gripper_custom_protocol/gripper_custom_protocol.h"
#include "gripper/gripper_protocol/gripper_modbus_protocol/gripper_modbus_protocol.h"
#include "tests/test_support/protocol_test_support.h"

namespace {

const int CASES_PER_PROTOCOL = 300000;

typedef std::vector<uint8_t> Bytes;

// Values biased towards what the protocols take (their lengths, ids and small values), so that
// every decode path is reached; seeded with GRIPPER_FUZZ_SEED or a fixed seed, printed.
struct Random {
    Random() {
        const char* text = std::getenv("GRIPPER_FUZZ_SEED");
        const uint32_t seed = (text && *text) ? std::strtoul(text, nullptr, 0) : 20240611u;
        std::cout << "GRIPPER_FUZZ_SEED=" << seed << std::endl;
        engine.seed(seed);
    }
    uint32_t below(uint32_t bound) { return engine() % bound; }
    bool chance(uint32_t percent) { return below(100) < percent; }
    uint8_t byte() { return static_cast<uint8_t>(engine()); }
    uint8_t small_or_any() { return chance(70) ? static_cast<uint8_t>(below(5)) : byte(); }
    // 0 to 40 random bytes, most often 7, 8 or 14.
    Bytes bytes() {
        const uint32_t pick = below(100);
        Bytes stream(pick < 25 ? 7 : pick < 40 ? 8 : pick < 65 ? 14 : below(41));
        std::generate(stream.begin(), stream.end(), [this] { return byte(); });
        return stream;
    }
    std::mt19937 engine;
};

// shape makes a random answer plausible more often than not. A refused decode must give
// refused(id); an accepted one the requested type, from an answer of length bytes with the id at
// id_offset (any id when 255 was asked for). Every decodable type must be reached.
void fuzz(GripperProtocol& protocol, size_t length, size_t id_offset,
          const std::function<void(Random&, uint8_t, Bytes&)>& shape,
          const std::function<Record(uint8_t)>& refused, const std::set<int32_t>& decodable) {
    register_simple_logger(nullptr);
    Random random;
    std::set<int32_t> decoded;
    for (int i = 0; i < CASES_PER_PROTOCOL && !::testing::Test::HasFatalFailure(); ++i) {
        const uint8_t id = random.chance(80)
                               ? std::vector<uint8_t>{0, 1, 2, 254, 255}[random.below(5)]
                               : random.byte();
        // Mostly a defined type, else any value.
        const GP::PackageType type =
            static_cast<GP::PackageType>(random.chance(85) ? random.below(15) : random.engine());
        Bytes answer = random.bytes();
        shape(random, id, answer);
        const Record decode = protocol.parse_get_normal_package(id, type, answer);
        if (GP::PT_UNDEFINE == decode.package_type_) {
            ASSERT_EQ(refused(id), decode) << "case " << i << ": " << hex_text(answer);
        } else {
            decoded.insert(decode.package_type_);
            ASSERT_EQ(type, decode.package_type_) << "case " << i;
            ASSERT_EQ(length, answer.size()) << "case " << i;
            ASSERT_TRUE(255 == id || answer[id_offset] == id) << "case " << i;
        }
        // Checked against the answer itself or random bytes.
        protocol.compare_package(random.chance(50), random.chance(50) ? answer : random.bytes(),
                                 answer);
    }
    EXPECT_EQ(decodable, decoded);
}

TEST(GripperProtocolFuzz, ModbusSurvivesRandomAnswers) {
    GripperModbusProtocol protocol;
    // Often the expected slave, a short byte count and a valid CRC. A refusal resets the record.
    const auto shape = [](Random& random, uint8_t id, Bytes& answer) {
        if (answer.size() >= 3 && random.chance(70)) {
            answer[0] = random.chance(80) ? id : random.byte();
            answer[1] = 0x03;
            answer[2] = random.small_or_any();
        }
        if (7 == answer.size() && random.chance(70)) {
            answer[4] = random.small_or_any();
            const uint16_t crc = modbus_crc_16(Bytes(answer.begin(), answer.end() - 2));
            answer[5] = static_cast<uint8_t>(crc & 0xFF);
            answer[6] = static_cast<uint8_t>(crc >> 8);
        }
    };
    fuzz(protocol, 7, 0, shape, [](uint8_t) { return Record(); }, {4, 5, 7, 8, 10, 12, 13, 14});
}

TEST(GripperProtocolFuzz, CustomSurvivesRandomAnswers) {
    GripperCustomProtocol protocol;
    // Often the expected id, a known register and a small value. A refusal keeps the requested
    // id.
    const auto shape = [](Random& random, uint8_t id, Bytes& answer) {
        static const uint8_t registers[] = {0x05, 0x06, 0x07, 0x08, 0x0F, 0x11, 0x12, 0x13, 0x15};
        if (14 == answer.size() && random.chance(80)) {
            answer[4] = random.chance(80) ? id : random.byte();
            answer[5] = random.chance(80) ? registers[random.below(9)] : random.byte();
            answer[9] = random.small_or_any();
            std::generate(answer.begin() + 10, answer.begin() + 13,
                          [&] { return random.chance(70) ? 0 : random.byte(); });
        }
    };
    fuzz(protocol, 14, 4, shape, [](uint8_t id) { return record(GP::PT_UNDEFINE, id); },
         {1, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14});
}

}  // namespace
