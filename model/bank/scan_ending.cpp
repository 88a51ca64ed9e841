#include "model/bank/scan_ending.h"

#include <algorithm>

namespace lumbrine {

namespace {

bool sameTrack(const SurveyedBank& left, std::size_t leftStrip, const SurveyedBank& right, std::size_t rightStrip) {
    return left.names[leftStrip] == right.names[rightStrip] && left.faders[leftStrip] == right.faders[rightStrip];
}

// Whether the last bank may lie that far behind the one before, by the tracks that both would show then.
bool overlap(const SurveyedBank& before, const SurveyedBank& last, std::size_t step) {
    constexpr std::size_t several = 3;
    const std::size_t shared = last.width() - step;
    SurveyedBank left, right;
    left.names.assign(before.names.end() - static_cast<std::ptrdiff_t>(shared), before.names.end());
    left.faders.assign(before.faders.end() - static_cast<std::ptrdiff_t>(shared), before.faders.end());
    right.names.assign(last.names.begin(), last.names.begin() + static_cast<std::ptrdiff_t>(shared));
    right.faders.assign(last.faders.begin(), last.faders.begin() + static_cast<std::ptrdiff_t>(shared));
    return shared >= several ? looksLike(left, right) : left.names == right.names && left.faders == right.faders;
}

// How many of its tracks from that strip on are like no other of the bank.
std::size_t distinct(const SurveyedBank& bank, std::size_t from) {
    std::size_t count = 0;
    for (std::size_t strip = from; strip < bank.width(); ++strip) {
        std::size_t alike = 0;
        for (std::size_t other = 0; other < bank.width(); ++other)
            alike += sameTrack(bank, strip, bank, other) ? 1 : 0;
        count += alike == 1 ? 1 : 0;
    }
    return count;
}

} // namespace

ScanEnding::ScanEnding(const std::vector<SurveyedBank>& banks) : banks(banks) {
    const std::size_t width = banks.back().width();
    for (std::size_t step = 1; step <= width; ++step) {
        if (banks.size() == 1 ? step == width : overlap(banks[banks.size() - 2], banks.back(), step))
            possible.push_back({.moved = false, .step = step});
        if (overlap(banks.back(), banks.back(), step)) possible.push_back({.moved = true, .step = step});
    }
}

void ScanEnding::sawBefore(std::size_t channels, SurveyedBank shown) {
    shown.resize(banks.back().width());
    std::erase_if(possible, [&](const Possible& ending) { return !wouldShow(ending, channels, shown); });
}

bool ScanEnding::isOpen() const {
    return possible.size() > 1 && !hasMoved();
}

bool ScanEnding::hasMoved() const {
    return !possible.empty() && std::ranges::all_of(possible, &Possible::moved);
}

std::size_t ScanEnding::lastStep() const {
    return possible.size() == 1 ? possible.front().step : 0;
}

std::size_t ScanEnding::offsetOf(const Possible& ending) const {
    const std::size_t seen = banks.size() + (ending.moved ? 1 : 0);
    return seen == 1 ? 0 : (seen - 2) * banks.back().width() + ending.step;
}

// Where strip 0 shows the track that many channels before the last bank, or the first track.
bool ScanEnding::wouldShow(const Possible& ending, std::size_t channels, const SurveyedBank& shown) const {
    const std::size_t width = shown.width();
    const auto bankBefore = [&](std::size_t back) -> const SurveyedBank& {
        return banks[banks.size() - 1 - (ending.moved && back > 0 ? back - 1 : back)];
    };
    const std::size_t seen = banks.size() + (ending.moved ? 1 : 0);
    const std::size_t first = offsetOf(ending);
    const std::size_t offset = first - std::min(first, channels);
    SurveyedBank expected = shown;
    for (std::size_t strip = 0; strip < width; ++strip) {
        const std::size_t track = offset + strip;
        const std::size_t bank = track >= first ? seen - 1 : track / width;
        const SurveyedBank& source = bankBefore(seen - 1 - bank);
        const std::size_t from = track >= first ? track - first : track % width;
        expected.names[strip] = source.names[from];
        expected.faders[strip] = source.faders[from];
    }
    return looksLike(expected, shown);
}

std::size_t ScanEnding::evidentLastStep(const std::vector<SurveyedBank>& banks) {
    constexpr std::size_t enough = 2;
    const SurveyedBank& last = banks.back();
    if (last.endsWithoutTrack()) return last.width();
    if (banks.size() == 1) return 0;
    std::size_t evident = 0;
    for (std::size_t step = 1; step < last.width(); ++step) {
        if (!overlap(banks[banks.size() - 2], last, step)) continue;
        if (evident != 0 || distinct(banks[banks.size() - 2], step) < enough) return 0;
        evident = step;
    }
    return evident;
}

} // namespace lumbrine
