// Finding the shown part of the session in the list of its tracks, by names. Pure functions.
//
// The window is what the displays show, strip by strip; the map the display names of all tracks in order. Names are
// compared exactly; blank means empty but for spaces and tabs.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine {

using TrackNames = std::vector<std::string>;

// Where the window, of at most 16 names, lies in the map, whose end may be followed by blank strips; -1 when nowhere,
// when at more than one place, and when the whole window is blank. Takes about as many comparisons as the map has
// names, and no allocation.
int locate(std::span<const std::string> map, std::span<const std::string> window);

// The map and behind it the window, without the largest overlap of the map's end with the window's start. Two different
// tracks that share a name and meet at that boundary become one.
TrackNames mergeWindow(TrackNames map, std::span<const std::string> window);

// Without the blank names at the end.
TrackNames trimTrailingEmpty(TrackNames names);

bool isBlank(std::string_view name);

// Without spaces at either end.
std::string_view trimSpaces(std::string_view text);

} // namespace lumbrine
