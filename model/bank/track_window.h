// Finding the shown part of the session by names. Pure functions.
//
// The window is what the displays show, strip by strip; the map is the display names of all tracks in order. Names are
// compared exactly. A name of nothing but spaces and tabs is blank.
#pragma once

#include "model/state/session.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine {

using TrackNames = std::vector<std::string>;

// Whether a strip that shows the track has that text.
bool isShownAs(const Track& track, std::string_view display);

// Where the window, of at most 16 names, lies among the tracks. Blank strips may follow the last track. A track whose
// display is unknown may show what it did before, and whatever its name allows. Where the window lies nowhere by its
// names, a strip that shows an automation mode may have any track. -1 when the window lies nowhere or at more than one
// place, and when all of it is blank. If all displays are known and none shows a mode, it takes about as many
// comparisons as there are tracks, and no allocation.
int locate(std::span<const Track> tracks, std::span<const std::string> window);

// Whether it lies at one place or at several. A blank window tells nothing, and may lie anywhere.
bool fitsSomewhere(std::span<const Track> tracks, std::span<const std::string> window);

} // namespace lumbrine
