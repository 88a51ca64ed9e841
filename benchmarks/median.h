// The middle of measured samples.
#pragma once

#include <algorithm>
#include <vector>

namespace lumbrine {

// Of at least one sample.
inline double median(std::vector<double> samples) {
    const auto middle = samples.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2);
    std::ranges::nth_element(samples, middle);
    return *middle;
}

} // namespace lumbrine
