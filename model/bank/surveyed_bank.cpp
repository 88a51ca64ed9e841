#include "model/bank/surveyed_bank.h"

#include "base/blank_text.h"
#include "model/hands/automation_mode_text.h"

#include <algorithm>

namespace lumbrine {

void SurveyedBank::resize(std::size_t width) {
    names.resize(width);
    faders.resize(width);
}

bool SurveyedBank::hasTrack(std::size_t strip) const {
    return !isBlank(names[strip]) || faders[strip].value_or(0.0) > 0.0;
}

bool SurveyedBank::isWithoutTracks() const {
    for (std::size_t strip = 0; strip < width(); ++strip)
        if (hasTrack(strip)) return false;
    return true;
}

bool SurveyedBank::isUniform() const {
    for (std::size_t strip = 1; strip < width(); ++strip)
        if (names[strip] != names[0] || faders[strip] != faders[0]) return false;
    return !endsWithoutTrack();
}

bool SurveyedBank::hasDistinctNames() const {
    constexpr int enough = 3;
    return std::ranges::count_if(names, [this](const std::string& name) {
               return !isBlank(name) && std::ranges::count(names, name) == 1;
           }) >= enough;
}

bool differOnlyByModes(const SurveyedBank& left, const SurveyedBank& right) {
    if (left.names == right.names) return false;
    return std::ranges::equal(left.names, right.names, [](const std::string& one, const std::string& other) {
        return one == other || isAutoModeText(one) || isAutoModeText(other);
    });
}

bool shareTracks(const SurveyedBank& left, const SurveyedBank& right) {
    const std::size_t width = std::min(left.width(), right.width());
    const auto runFrom = [&](std::size_t from, std::size_t to) {
        std::size_t same = 0, changes = 0;
        for (; from < width && to < width; ++from, ++to) {
            if (!left.faders[from] || left.names[from] != right.names[to] || left.faders[from] != right.faders[to]) {
                same = changes = 0;
                continue;
            }
            const bool differs =
                same > 0 && left.names[from] != left.names[from - 1] && left.faders[from] != left.faders[from - 1];
            changes += differs ? 1 : 0;
            if (++same >= width / 2 && changes >= 2) return true;
        }
        return false;
    };
    for (std::size_t shift = 0; shift < width; ++shift)
        if (runFrom(shift, 0) || runFrom(0, shift)) return true;
    return false;
}

bool looksLike(const SurveyedBank& left, const SurveyedBank& right) {
    int otherFaders = 0;
    for (std::size_t strip = 0; strip < left.faders.size() && strip < right.faders.size(); ++strip)
        otherFaders += left.faders[strip] != right.faders[strip] ? 1 : 0;
    return left.names == right.names && (otherFaders <= 1 || left.hasDistinctNames());
}

} // namespace lumbrine
