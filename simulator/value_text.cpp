#include "simulator/value_text.h"

#include "simulator/simulated_track.h"

#include <cmath>
#include <cstdio>

namespace lumbrine {

namespace {

constexpr double lowest = -60; // dB at the bottom of the fader; the end position itself is -oo
constexpr double highest = 12;

double decibels(FaderValue position) {
    const double unity = SimulatedTrack::unityGain.raw();
    const double above = position.raw() - unity;
    return above >= 0 ? highest * above / (FaderValue::fullScale - unity) : lowest * -above / unity;
}

DisplayText shown(const char* format, double value) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), format, value);
    return shortName(text.data(), ShortNameRule::cut, NonASCIIRule::blank);
}

} // namespace

DisplayText faderText(FaderValue position) {
    if (position.raw() == 0) return {'-', 'o', 'o', ' '};
    const double level = decibels(position);
    return shown(std::abs(level) < 9.95 ? "%+.1f" : "%+.0f", level);
}

DisplayText panText(double pan) {
    const double side = std::round(std::abs(pan));
    if (side == 0) return {'<', 'C', '>', ' '};
    return shown(pan < 0 ? "<%.0f" : "%.0f>", side);
}

} // namespace lumbrine
