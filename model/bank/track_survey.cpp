#include "model/bank/track_survey.h"

#include "base/blank_text.h"
#include "model/state/display_name.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace lumbrine {

TrackSurvey::TrackSurvey(std::size_t width, std::vector<std::string> listed)
    : width(width), listed(std::move(listed)) {}

void TrackSurvey::add(SurveyedBank bank) {
    bank.names.resize(width); // a surface may have come or gone
    bank.faders.resize(width);
    banks.push_back(std::move(bank));
}

bool TrackSurvey::expectsAnother() const {
    return banks.size() < listedBanks() && fitsList(banks, offsetsByList(false));
}

Session TrackSurvey::session() const {
    // A press that changed nothing may have been lost, or led to a bank that looks the same.
    for (const Banks& seen : {banks, withoutRepeats()}) {
        if (seen.size() != listedBanks()) continue;
        const Offsets filled = offsetsByList(true), unfilled = offsetsByList(false);
        const bool fitsUnfilled = fitsList(seen, unfilled);
        if (fitsList(seen, filled) && (!fitsUnfilled || hasSameFaders(seen, filled)))
            return placed(seen, filled, listed.size());
        if (fitsUnfilled) return placed(seen, unfilled, listed.size());
    }
    return joined(withoutRepeats());
}

// ---- By the list

std::size_t TrackSurvey::listedBanks() const {
    return (listed.size() + width - 1) / width;
}

// Bank keys go by the width, but the last bank of Pro Tools may be filled with tracks of the one before.
TrackSurvey::Offsets TrackSurvey::offsetsByList(bool lastBankIsFilled) const {
    Offsets offsets;
    for (std::size_t bank = 0; bank < listedBanks(); ++bank)
        offsets.push_back(bank * width);
    if (lastBankIsFilled && listed.size() > width) offsets.back() = listed.size() - width;
    return offsets;
}

bool TrackSurvey::fitsList(const Banks& seen, const Offsets& offsets) const {
    for (std::size_t bank = 0; bank < seen.size(); ++bank)
        for (std::size_t strip = 0; strip < width; ++strip) {
            const std::size_t track = offsets[bank] + strip;
            const std::string& shown = seen[bank].names[strip];
            if (track < listed.size() ? !mayShow(shown, listed[track]) : !isBlank(shown)) return false;
        }
    return agree(seen, offsets, [](const SurveyedBank& bank, std::size_t strip) { return bank.names[strip]; });
}

bool TrackSurvey::hasSameFaders(const Banks& seen, const Offsets& offsets) const {
    return agree(seen, offsets, [](const SurveyedBank& bank, std::size_t strip) { return bank.faders[strip]; });
}

// Whether banks that overlap show the same of the tracks that both show.
template <typename ValueOf>
bool TrackSurvey::agree(const Banks& seen, const Offsets& offsets, ValueOf valueOf) const {
    for (std::size_t bank = 1; bank < seen.size(); ++bank) {
        const std::size_t step = offsets[bank] - offsets[bank - 1];
        for (std::size_t strip = 0; strip + step < width; ++strip)
            if (valueOf(seen[bank], strip) != valueOf(seen[bank - 1], strip + step)) return false;
    }
    return true;
}

// ---- Without a list

TrackSurvey::Banks TrackSurvey::withoutRepeats() const {
    Banks different;
    std::ranges::unique_copy(banks, std::back_inserter(different), {}, &SurveyedBank::names);
    return different;
}

Session TrackSurvey::joined(const Banks& seen) const {
    TrackNames map;
    Offsets offsets;
    for (const SurveyedBank& bank : seen) {
        const TrackNames shown = &bank == &seen.back() ? trimTrailingEmpty(bank.names) : bank.names;
        map = mergeWindow(std::move(map), shown);
        offsets.push_back(map.size() - shown.size());
    }
    Session session = placed(seen, offsets, map.size());
    // A blank strip may be one without a track, or one whose name has yet to come.
    for (Track& track : session.tracks)
        if (isBlank(track.display)) track.fader.reset();
    return session;
}

// In the order of the banks: where two overlap, the later one counts.
Session TrackSurvey::placed(const Banks& seen, const Offsets& offsets, std::size_t tracks) const {
    Session session;
    session.tracks.resize(tracks);
    for (std::size_t bank = 0; bank < seen.size(); ++bank)
        for (std::size_t strip = 0; strip < width && offsets[bank] + strip < tracks; ++strip) {
            Track& track = session.tracks[offsets[bank] + strip];
            track.display = seen[bank].names[strip];
            track.fader = seen[bank].faders[strip];
        }
    return session;
}

} // namespace lumbrine
