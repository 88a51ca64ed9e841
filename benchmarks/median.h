// The median and the 99th percentile of measured samples.
#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace lumbrine {

// `samples` must not be empty; `hundredths` is below 100. Between two samples, the upper one.
inline double percentile(std::vector<double> samples, std::size_t hundredths) {
    const auto place = samples.begin() + static_cast<std::ptrdiff_t>(samples.size() * hundredths / 100);
    std::ranges::nth_element(samples, place);
    return *place;
}

inline double median(std::vector<double> samples) {
    return percentile(std::move(samples), 50);
}

} // namespace lumbrine
