#ifndef BENCH_LINK_ROUND_TRIP_STATISTICS_H
#define BENCH_LINK_ROUND_TRIP_STATISTICS_H

#include <algorithm>
#include <cmath>
#include <vector>

// Nearest-rank percentile (fraction 0.5 is the median) of the samples; 0 when there are none.
inline double percentile(std::vector<double> samples, double fraction) {
    if (samples.empty()) {
        return 0.0;
    }
    std::sort(samples.begin(), samples.end());
    const double rank = std::ceil(fraction * static_cast<double>(samples.size()));
    const size_t index = static_cast<size_t>(std::max(rank, 1.0)) - 1;
    return samples[std::min(index, samples.size() - 1)];
}

#endif
