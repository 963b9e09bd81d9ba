#ifndef TESTS_TEST_SUPPORT_PROTOCOL_TEST_SUPPORT_H
#define TESTS_TEST_SUPPORT_PROTOCOL_TEST_SUPPORT_H

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "gripper/gripper_protocol/gripper_protocol/gripper_protocol.h"
#include "tests/test_support/fd_stream.h"
#include "tests/test_support/log_capture.h"

typedef GripperProtocol GP;
typedef AbstractPackageData Record;

// Bytes from text such as "01 03 02 02 00 01 24 72".
inline std::vector<uint8_t> frame(const std::string& text) {
    return hex(text);
}

// "01 03 02"; the inverse of frame().
inline std::string hex_text(const std::vector<uint8_t>& bytes) {
    std::string text;
    char digits[4];
    for (size_t i = 0; i < bytes.size(); ++i) {
        snprintf(digits, sizeof(digits), i ? " %02X" : "%02X", bytes[i]);
        text += digits;
    }
    return text;
}

// Lets GoogleTest print a record when an expectation on it fails.
inline void PrintTo(const Record& data, std::ostream* out) {
    *out << "{type " << data.package_type_ << ", id " << static_cast<int>(data.id_) << ", version ["
         << hex_text(data.version_) << "], model " << data.model_series_ << ", feedback "
         << data.feedback_ << ", initialize " << data.initialize_value_ << ", force "
         << data.force_value_ << ", position " << data.position_value_ << ", speed "
         << data.speed_value_ << ", spare " << data.spare_value_ << "}";
}

inline std::string printed(const Record& data) {
    std::ostringstream out;
    PrintTo(data, &out);
    return out.str();
}

// Records are equal when they print alike: every field is printed.
inline bool operator==(const Record& a, const Record& b) {
    return printed(a) == printed(b);
}

// A record as a successful decode starts it: the type and id set, everything else initial.
inline Record record(GP::PackageType type, uint8_t id) {
    Record data;
    data.package_type_ = type;
    data.id_ = id;
    return data;
}

// The printed record a decode of type for id gives that sets the one field named as printed
// ("position 500", "feedback 3", "version [01 02]", "id 7"), or none ("").
inline std::string decoded(GP::PackageType type, uint8_t id, const std::string& field) {
    std::string text = printed(record(type, id));
    if (!field.empty()) {
        const size_t at = text.find(", " + field.substr(0, field.find(' ')) + " ") + 2;
        text.replace(at, text.find_first_of(",}", at) - at, field);
    }
    return text;
}

typedef std::vector<std::pair<std::vector<uint8_t>, std::string>> Builds;

// Hands out a blank frame one byte too long, so that completing any frame must fail.
template <typename Protocol>
class LongFrame : public Protocol {
public:
    std::vector<uint8_t> build_protocol_empty_byte(bool set) override {
        std::vector<uint8_t> stream = Protocol::build_protocol_empty_byte(set);
        stream.push_back(0);
        return stream;
    }
};

// builds gives every request of a protocol with its frame as the gripper expects it on the wire,
// "" for the requests the protocol has none for. The frames must come byte-exact and unlogged; when
// the blank frame cannot be completed, each builder must give up, emptied, and log it once.
template <typename Protocol, typename Builder>
void check_builds(Builder builds) {
    Protocol protocol;
    LongFrame<Protocol> broken;
    LogCapture log;
    long supported = 0;
    for (const auto& built : builds(protocol)) {
        EXPECT_EQ(built.second, hex_text(built.first));
        supported += built.second.empty() ? 0 : 1;
    }
    EXPECT_TRUE(log.lines().empty());
    for (const auto& built : builds(broken)) {
        EXPECT_TRUE(built.first.empty()) << built.second;
    }
    EXPECT_EQ(supported, log.count("E !package_protocol(byte_stream)"));
}

#endif
