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
// display is unknown may show whatever its name allows. Where the window lies nowhere by its names, a strip that shows
// an automation mode may have any track. -1 when the window lies nowhere or at more than one place, and when all of it
// is blank. If all displays are known and none shows a mode, it takes about as many comparisons as there are tracks,
// and no allocation.
int locate(std::span<const Track> tracks, std::span<const std::string> window);

// The map followed by the window, without the largest overlap of the map's end with the window's start. Two different
// tracks that share a name and meet at that boundary become one.
TrackNames mergeWindow(TrackNames map, std::span<const std::string> window);

// Without the blank names at the end.
TrackNames trimTrailingEmpty(TrackNames names);

} // namespace lumbrine
