// What all strips of the surfaces show at one place of the session: the names, and the faders, which tell banks apart
// where names do not. Pure.
#pragma once

#include "model/bank/track_window.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace lumbrine {

struct SurveyedBank {
    TrackNames names; // of all strips, from the left
    std::vector<std::optional<double>> faders;

    std::size_t width() const { return names.size(); }

    // A surface may have come or gone.
    void resize(std::size_t width);

    // A blank name beside a fader at the bottom: a strip behind the last track.
    bool hasTrack(std::size_t strip) const;
    bool isWithoutTracks() const;
    bool endsWithoutTrack() const { return names.empty() || !hasTrack(width() - 1); }

    // At least three names occur once: enough to tell banks apart without the faders.
    bool hasDistinctNames() const;

    // All strips look alike, and have a track: a press that moves the surfaces may show nothing.
    bool isUniform() const;
};

// Whether they are alike but for strips that show an automation mode in one of them.
bool differOnlyByModes(const SurveyedBank& left, const SurveyedBank& right);

// Whether both show some of the same tracks: as many as half of the strips in a row have the same names and faders,
// and neither are all alike.
bool shareTracks(const SurveyedBank& left, const SurveyedBank& right);

// Whether both show the same. Somebody may have moved one fader meanwhile; where names differ, all of them.
bool looksLike(const SurveyedBank& left, const SurveyedBank& right);

} // namespace lumbrine
