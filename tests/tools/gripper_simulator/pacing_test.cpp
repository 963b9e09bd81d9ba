// The simulator's line pacing: byte times at a baud rate, USB adapter windows.

#include <gtest/gtest.h>

#include <chrono>

#include "tests/test_support/fd_stream.h"
#include "tools/gripper_simulator/line_pacer.h"
#include "tools/gripper_simulator/simulator.h"

namespace {

using gripper_sim::LinePacer;
using Clock = std::chrono::steady_clock;

const int kBaud = 115200;
// Ten bits at 115200 baud.
const auto kByteTime = std::chrono::nanoseconds(86805);
const Bytes kAnswer = {0x07, 0x03, 0x02, 0x00, 0x00, 0x00, 0x00};

Bytes bytes_of(const std::vector<LinePacer::Piece>& pieces) {
    Bytes all;
    for (const LinePacer::Piece& piece : pieces) {
        all.insert(all.end(), piece.bytes.begin(), piece.bytes.end());
    }
    return all;
}

// Modbus read of the position (0x0202) at slave 7, with its CRC.
const Bytes kPositionRead = {0x07, 0x03, 0x02, 0x02, 0x00, 0x01, 0x24, 0x14};

}  // namespace

// Without a rate a frame is handed over at once, as every other test of the simulator sees. At
// 115200 baud each byte is handed over after
// its time on the wire, and the next frame follows the first; a USB adapter's 1 ms windows hand
// over what arrived when a window ends (seven bytes take 608 µs: one window, or two).
TEST(LinePacer, HandsBytesOverAfterTheirTimeOnTheWireAndAtWindowEnds) {
    const Clock::time_point start = Clock::now();
    for (int window_us : {0, 1000}) {
        SCOPED_TRACE(window_us);
        LinePacer pacer(kBaud, window_us);
        const std::vector<LinePacer::Piece> pieces = pacer.schedule(kAnswer, start);
        EXPECT_TRUE(0 == window_us ? kAnswer.size() == pieces.size() : pieces.size() <= 2u);
        EXPECT_EQ(kAnswer, bytes_of(pieces));
        size_t sent = 0;
        for (const LinePacer::Piece& piece : pieces) {
            sent += piece.bytes.size();
            const auto since_start = (piece.due - start).count();
            if (0 == window_us) {
                EXPECT_NEAR(static_cast<double>(sent * kByteTime.count()), since_start, 8.0);
            } else {
                EXPECT_LE(static_cast<long>(sent * kByteTime.count()), since_start);
                EXPECT_EQ(0, piece.due.time_since_epoch().count() % 1000000);
            }
            EXPECT_EQ(sent == kAnswer.size(), !piece.frame.empty());
        }
    }
    LinePacer wire(kBaud, 0);
    EXPECT_NEAR(8 * kByteTime.count(), (wire.request_end(start, 8) - start).count(), 8);
    wire.schedule(kAnswer, start);
    EXPECT_NEAR(static_cast<double>(8 * kByteTime.count()),
                static_cast<double>((wire.schedule(kAnswer, start).front().due - start).count()),
                8.0);
}

// The client end of a paced gripper's line: no byte of the answer comes before the request and
// the answer up to that byte could have crossed the wire.
TEST(PacedGripper, AnswersNoFasterThanTheWireAllows) {
    for (int window_us : {0, 1000}) {
        SCOPED_TRACE(window_us);
        gripper_sim::Simulator simulator;
        gripper_sim::GripperOptions options;
        options.id = 7;
        options.baud = kBaud;
        options.window_us = window_us;
        const int n = simulator.add_modbus_pty(options);
        FdStream line = open_raw_terminal(simulator.endpoint(n));
        ASSERT_TRUE(line.valid());
        const Clock::time_point written = Clock::now();
        ASSERT_TRUE(line.write(kPositionRead));
        Bytes answer;
        while (answer.size() < kAnswer.size()) {
            const Bytes piece = line.read(1, std::chrono::seconds(3));
            ASSERT_EQ(1u, piece.size());
            answer.push_back(piece[0]);
            EXPECT_LE(written + (kPositionRead.size() + answer.size()) * kByteTime, Clock::now());
        }
        EXPECT_EQ(0x07, answer[0]);
        EXPECT_EQ(0x03, answer[1]);
    }
}
