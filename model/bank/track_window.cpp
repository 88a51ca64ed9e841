#include "model/bank/track_window.h"

#include "base/blank_text.h"
#include "base/strip.h"
#include "model/hands/automation_mode_text.h"
#include "model/state/display_name.h"

#include <algorithm>
#include <array>
#include <cassert>

namespace lumbrine {

namespace {

constexpr int nowhere = -1;
constexpr int atSeveral = -2;

// The search of Knuth, Morris and Pratt: no track is looked at again for another place, however alike the names are,
// because what has fitted so far rules places out.
int locateAmongKnown(std::span<const Track> tracks, std::span<const std::string> window) {
    // How many names at the end of the window's first i + 1 are also its beginning.
    std::array<std::size_t, stripCount> borders{};
    for (std::size_t i = 1, same = 0; i < window.size(); ++i) {
        while (same > 0 && window[i] != window[same])
            same = borders[same - 1];
        if (window[i] == window[same]) ++same;
        borders[i] = same;
    }

    const std::string blank;
    int found = nowhere;
    for (std::size_t i = 0, same = 0; i < tracks.size() + window.size(); ++i) {
        const std::string& name = i < tracks.size() ? tracks[i].display : blank;
        while (same > 0 && name != window[same])
            same = borders[same - 1];
        if (name == window[same]) ++same;
        if (same < window.size()) continue;
        if (found >= 0) return atSeveral;
        found = static_cast<int>(i + 1 - window.size());
        same = borders[same - 1];
    }
    return found;
}

enum class Modes { areNames, mayHideNames };

bool showsAt(std::span<const Track> tracks, std::size_t offset, std::span<const std::string> window, Modes modes) {
    for (std::size_t strip = 0; strip < window.size(); ++strip) {
        const std::size_t track = offset + strip;
        if (track < tracks.size() && modes == Modes::mayHideNames && isAutoModeText(window[strip])) continue;
        if (track >= tracks.size() ? !window[strip].empty() : !isShownAs(tracks[track], window[strip])) return false;
    }
    return true;
}

int locateAmongAll(std::span<const Track> tracks, std::span<const std::string> window, Modes modes) {
    int found = nowhere;
    for (std::size_t offset = 0; offset <= tracks.size(); ++offset) {
        if (!showsAt(tracks, offset, window, modes)) continue;
        if (found >= 0) return atSeveral;
        found = static_cast<int>(offset);
    }
    return found;
}

int placeOf(std::span<const Track> tracks, std::span<const std::string> window) {
    assert(window.size() <= stripCount);
    if (std::ranges::all_of(window, isBlank)) return atSeveral;
    int place = std::ranges::all_of(tracks, &Track::displayKnown) ? locateAmongKnown(tracks, window)
                                                                  : locateAmongAll(tracks, window, Modes::areNames);
    const auto tellsNothing = [](const std::string& text) { return isBlank(text) || isAutoModeText(text); };
    if (place == nowhere && std::ranges::any_of(window, isAutoModeText) && !std::ranges::all_of(window, tellsNothing))
        place = locateAmongAll(tracks, window, Modes::mayHideNames);
    return place;
}

} // namespace

bool isShownAs(const Track& track, std::string_view display) {
    const bool showedItBefore = track.display == display && (track.displayKnown || !display.empty());
    return showedItBefore || (!track.displayKnown && mayShow(display, track.name.value_or("")));
}

bool fitsSomewhere(std::span<const Track> tracks, std::span<const std::string> window) {
    return placeOf(tracks, window) != nowhere;
}

int locate(std::span<const Track> tracks, std::span<const std::string> window) {
    return std::max(placeOf(tracks, window), nowhere);
}

} // namespace lumbrine
