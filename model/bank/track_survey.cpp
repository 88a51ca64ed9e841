#include "model/bank/track_survey.h"

#include "base/blank_text.h"
#include "model/bank/scan_ending.h"
#include "model/state/display_name.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>

namespace lumbrine {

TrackSurvey::TrackSurvey(std::size_t width, std::vector<std::string> listed)
    : width(std::max<std::size_t>(width, 1)), listed(std::move(listed)) {}

void TrackSurvey::add(SurveyedBank bank) {
    bank.resize(width);
    banks.push_back(std::move(bank));
    lastStep.reset();
}

bool TrackSurvey::expectsAnother() const {
    return banks.size() < listedBanks() && fitsList(banks, offsetsByList(false));
}

bool TrackSurvey::isWholeByList() const {
    return !chosenByList(banks).empty() || !chosenByList(withoutRepeats()).empty();
}

bool TrackSurvey::looksDisturbed() const {
    const auto overlap = [this](const SurveyedBank& left, const SurveyedBank& right) {
        const std::size_t step = ScanEnding::evidentLastStep({left, right});
        return step > 0 && step < width;
    };
    for (std::size_t i = 1; i < banks.size(); ++i) {
        const SurveyedBank& before = banks[i - 1];
        const SurveyedBank& bank = banks[i];
        const bool isLast = i + 1 == banks.size(); // which alone may overlap the one before
        if (bank.isWithoutTracks() || before.isWithoutTracks() || differOnlyByModes(bank, before) ||
            (!isLast && overlap(before, bank)) || overlap(bank, before))
            return true;
        if (std::ranges::any_of(std::span(banks).first(isLast ? i - 1 : i),
                                [&](const SurveyedBank& earlier) { return shareTracks(earlier, bank); }))
            return true;
    }
    return false;
}

Session TrackSurvey::session() const {
    // A press that changed nothing may have been lost, or led to a bank that looks the same.
    for (const Banks& chosen : {banks, withoutRepeats()})
        if (const Offsets offsets = chosenByList(chosen); !offsets.empty())
            return placed(chosen, offsets, listed.size());
    return byDisplays();
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

// Empty where the list disagrees.
TrackSurvey::Offsets TrackSurvey::chosenByList(const Banks& chosen) const {
    if (chosen.size() != listedBanks()) return {};
    Offsets filled = offsetsByList(true), unfilled = offsetsByList(false);
    const bool fitsUnfilled = fitsList(chosen, unfilled);
    if (fitsList(chosen, filled) && (!fitsUnfilled || hasSameFaders(chosen, filled))) return filled;
    return fitsUnfilled ? unfilled : Offsets{};
}

bool TrackSurvey::fitsList(const Banks& chosen, const Offsets& offsets) const {
    for (std::size_t bank = 0; bank < chosen.size(); ++bank)
        for (std::size_t strip = 0; strip < width; ++strip) {
            const std::size_t track = offsets[bank] + strip;
            const std::string& shown = chosen[bank].names[strip];
            if (track < listed.size() ? !mayShow(shown, listed[track]) : !isBlank(shown)) return false;
        }
    return agree(chosen, offsets, [](const SurveyedBank& bank, std::size_t strip) { return bank.names[strip]; });
}

bool TrackSurvey::hasSameFaders(const Banks& chosen, const Offsets& offsets) const {
    return agree(chosen, offsets, [](const SurveyedBank& bank, std::size_t strip) { return bank.faders[strip]; });
}

// Whether banks that overlap show the same of the tracks that both show.
template <typename ValueOf>
bool TrackSurvey::agree(const Banks& chosen, const Offsets& offsets, ValueOf valueOf) const {
    for (std::size_t bank = 1; bank < chosen.size(); ++bank) {
        const std::size_t step = offsets[bank] - offsets[bank - 1];
        for (std::size_t strip = 0; strip + step < width; ++strip)
            if (valueOf(chosen[bank], strip) != valueOf(chosen[bank - 1], strip + step)) return false;
    }
    return true;
}

// ---- Without a list

TrackSurvey::Banks TrackSurvey::withoutRepeats() const {
    Banks different;
    std::ranges::unique_copy(banks, std::back_inserter(different), {}, &SurveyedBank::names);
    return different;
}

Session TrackSurvey::byDisplays() const {
    // What a list expected that does not agree after all may have been lost as well.
    const bool expectedMore = !listed.empty() && withoutRepeats().size() != banks.size();
    const Banks chosen = expectedMore ? withoutRepeats() : banks;
    const std::size_t step = lastStep.value_or(ScanEnding::evidentLastStep(chosen));
    Offsets offsets;
    for (std::size_t bank = 0; bank < chosen.size(); ++bank)
        offsets.push_back(bank * width);
    if (chosen.size() > 1 && step > 0) offsets.back() = offsets[offsets.size() - 2] + step;
    std::size_t tracks = offsets.back() + width;
    while (tracks > offsets.back() && !chosen.back().hasTrack(tracks - 1 - offsets.back()))
        --tracks;
    Session session = placed(chosen, offsets, tracks);
    session.sure = step > 0 && !expectedMore;
    // A blank strip may be one without a track, or one whose name has yet to come.
    for (Track& track : session.tracks)
        if (isBlank(track.display)) track.fader.reset();
    return session;
}

// In the order of the banks: where two overlap, the later one counts.
Session TrackSurvey::placed(const Banks& chosen, const Offsets& offsets, std::size_t tracks) const {
    Session session;
    session.tracks.resize(tracks);
    for (std::size_t bank = 0; bank < chosen.size(); ++bank)
        for (std::size_t strip = 0; strip < width && offsets[bank] + strip < tracks; ++strip) {
            Track& track = session.tracks[offsets[bank] + strip];
            track.display = chosen[bank].names[strip];
            track.fader = chosen[bank].faders[strip];
        }
    return session;
}

} // namespace lumbrine
