// The median of measured samples.
#pragma once

#include <algorithm>
#include <vector>

namespace lumbrine {

// `samples` must not be empty. Of an even number of samples, the upper of the two in the middle.
inline double median(std::vector<double> samples) {
    const auto middle = samples.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2);
    std::ranges::nth_element(samples, middle);
    return *middle;
}

} // namespace lumbrine
