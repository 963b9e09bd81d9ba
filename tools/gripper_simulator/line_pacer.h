#ifndef TOOLS_GRIPPER_SIMULATOR_LINE_PACER_H
#define TOOLS_GRIPPER_SIMULATOR_LINE_PACER_H

#include <chrono>
#include <vector>

#include "tools/gripper_simulator/types.h"

namespace gripper_sim {

// Paces a gripper's frames like a serial line at a baud rate: each byte is handed over no
// earlier than its last bit has crossed the wire (10 bits per byte at 8N1), one byte at a time,
// or in fixed windows as a USB serial adapter delivers what it has received. A pacer without a
// baud rate hands every frame over at once.
class LinePacer {
public:
    using Clock = std::chrono::steady_clock;

    // A part of a frame and when it is due; `frame` holds the whole frame in its last piece.
    struct Piece {
        Clock::time_point due;
        Bytes bytes;
        Bytes frame;
    };

    // baud 0: no pacing; window_us 0: byte by byte.
    LinePacer(int baud, int window_us);

    bool paced() const { return baud_ > 0; }
    // When a request of `size` bytes, seen whole at `seen`, would have ended on a real line: the
    // gripper cannot begin its answer before.
    Clock::time_point request_end(Clock::time_point seen, size_t size) const;
    // The pieces of `frame`, sent no earlier than `earliest` and after the frames before it.
    std::vector<Piece> schedule(const Bytes& frame, Clock::time_point earliest);

private:
    Clock::duration byte_time(size_t count) const;
    Clock::time_point window_end(Clock::time_point time) const;

    const int baud_;
    const Clock::duration window_;
    Clock::time_point line_free_;
};

}  // namespace gripper_sim

#endif
