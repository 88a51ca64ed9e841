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

bool looksLike(const SurveyedBank& left, const SurveyedBank& right) {
    int otherFaders = 0;
    for (std::size_t strip = 0; strip < left.faders.size() && strip < right.faders.size(); ++strip)
        otherFaders += left.faders[strip] != right.faders[strip] ? 1 : 0;
    return left.names == right.names && (otherFaders <= 1 || left.hasDistinctNames());
}

} // namespace lumbrine
