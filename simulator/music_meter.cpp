#include "simulator/music_meter.h"

#include "simulator/seeded_random.h"

#include <cmath>
#include <numbers>

namespace lumbrine {

namespace {

using Instrument = SimulatedTrack::MeterProgram::Kind;

constexpr double silence = -200;
constexpr double beat = 0.5; // seconds: 120 beats a minute

// A random number for one place in the music: always the same for the same place.
double chance(std::uint32_t seed, std::int64_t place) {
    return SeededRandom(seed * 0x10001ULL + static_cast<std::uint64_t>(place) * 0x9E3779B1ULL).unit();
}

// The level after a hit: it falls from 0 dB by `fall` dB a second. The seed decides which steps have a hit.
double hits(std::uint32_t seed, double seconds, double step, double density, double fall) {
    const auto place = static_cast<std::int64_t>(seconds / step);
    // Looks back a few steps, so that a hit also sounds during the following steps without one.
    for (std::int64_t back = 0; back < 4 && place - back >= 0; ++back) {
        const std::int64_t hit = place - back;
        if (chance(seed, hit % 16) >= density) continue; // a pattern of sixteen steps
        const double since = seconds - static_cast<double>(hit) * step;
        return -since * fall - 4 * chance(seed + 1, hit);
    }
    return silence;
}

// Phrases with rests between them and a slow movement inside each.
double phrases(std::uint32_t seed, double seconds, double length, double presence, double movement) {
    const auto phrase = static_cast<std::int64_t>(seconds / length);
    if (chance(seed, phrase) >= presence) return silence;
    const double within = seconds / length - static_cast<double>(phrase);
    const double shape = std::sin(std::numbers::pi * within);
    return -movement * (1 - shape) - 3 * chance(seed + 2, static_cast<std::int64_t>(seconds * 12));
}

double levelOf(const SimulatedTrack::MeterProgram& program, double seconds, std::uint32_t side) {
    const std::uint32_t seed = program.seed + side * 7919;
    switch (program.kind) {
    case Instrument::silent:
        return silence;
    case Instrument::tone:
        return program.peak;
    case Instrument::drum:
        return program.peak + hits(program.seed, seconds, beat / 2, 0.5, 90) - chance(seed, 3);
    case Instrument::bass:
        return program.peak + hits(program.seed, seconds, beat, 0.8, 18) - chance(seed, 5);
    case Instrument::melody:
        return program.peak + phrases(seed, seconds, 2 * beat, 0.75, 18);
    case Instrument::pad:
        return program.peak + phrases(seed, seconds, 16 * beat, 0.95, 6);
    }
    return silence;
}

} // namespace

int meterLevelOf(double dBFS) {
    constexpr std::array thresholds{-60.0, -50.0, -40.0, -30.0, -20.0, -14.0, -10.0, -8.0, -6.0, -4.0, -2.0, 0.0};
    int level = 0;
    for (const double threshold : thresholds)
        if (dBFS >= threshold) ++level;
    return level;
}

MeterLevels meterLevels(const SimulatedTrack::MeterProgram& program, bool stereo, Duration position) {
    const double seconds = inSeconds(position);
    return {meterLevelOf(levelOf(program, seconds, 0)), stereo ? meterLevelOf(levelOf(program, seconds, 1)) : 0};
}

} // namespace lumbrine
