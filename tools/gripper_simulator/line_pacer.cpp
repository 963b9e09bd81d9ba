#include "tools/gripper_simulator/line_pacer.h"

#include <algorithm>

namespace gripper_sim {
namespace {

// Start bit, 8 data bits, stop bit.
constexpr long long kBitsPerByte = 10;

}  // namespace

LinePacer::LinePacer(int baud, int window_us)
    : baud_(baud), window_(std::chrono::microseconds(window_us)) {}

LinePacer::Clock::time_point LinePacer::request_end(Clock::time_point seen, size_t size) const {
    return paced() ? seen + byte_time(size) : seen;
}

std::vector<LinePacer::Piece> LinePacer::schedule(const Bytes& frame, Clock::time_point earliest) {
    if (!paced()) {
        return {Piece{earliest, frame, frame}};
    }
    const Clock::time_point start = std::max(earliest, line_free_);
    std::vector<Piece> pieces;
    for (size_t i = 0; i < frame.size(); ++i) {
        const Clock::time_point due = window_end(start + byte_time(i + 1));
        if (pieces.empty() || pieces.back().due != due) {
            pieces.push_back(Piece{due, {}, {}});
        }
        pieces.back().bytes.push_back(frame[i]);
    }
    line_free_ = start + byte_time(frame.size());
    if (!pieces.empty()) {
        pieces.back().frame = frame;
    }
    return pieces;
}

LinePacer::Clock::duration LinePacer::byte_time(size_t count) const {
    const long long nanos = static_cast<long long>(count) * kBitsPerByte * 1000000000LL / baud_;
    return std::chrono::duration_cast<Clock::duration>(std::chrono::nanoseconds(nanos));
}

// The end of the adapter's window in which `time` falls; `time` itself without windows.
LinePacer::Clock::time_point LinePacer::window_end(Clock::time_point time) const {
    if (window_.count() <= 0) {
        return time;
    }
    const auto since_epoch = time.time_since_epoch();
    const auto windows = (since_epoch + window_ - Clock::duration(1)) / window_;
    return Clock::time_point(windows * window_);
}

}  // namespace gripper_sim
