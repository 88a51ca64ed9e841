#include "simulator/automation_keys.h"

#include "simulator/hui_address.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace lumbrine {

namespace {

using Automation = SimulatedTrack::Automation;

std::string_view modeName(const SimulatedTrack& track) {
    switch (track.automation) {
    case Automation::read:
        return track.trim ? "TRd" : "Read";
    case Automation::touch:
        return track.trim ? "TTch" : "Tch";
    case Automation::latch:
        return track.trim ? "TLch" : "Ltch";
    case Automation::write:
        return track.trim ? "TWrt" : "Wrt";
    case Automation::touchLatch:
        return track.trim ? "TT/L" : "T/L";
    case Automation::off:
        break;
    }
    return "Off";
}

void press(int modePort, SimulatedTrack& track) {
    switch (modePort) {
    case hui_address::trim:
        track.trim = !track.trim;
        break;
    case hui_address::latch:
        track.automation = Automation::latch;
        break;
    case hui_address::read:
        track.automation = Automation::read;
        break;
    case hui_address::off:
        track.automation = Automation::off;
        break;
    case hui_address::write:
        track.automation = Automation::write;
        break;
    case hui_address::touchMode:
        track.automation = Automation::touch;
        break;
    default:
        break;
    }
}

} // namespace

DisplayText automationText(const SimulatedTrack& track, TrimWords trimWords) {
    const bool trimAlone = track.trim && trimWords == TrimWords::alone;
    return shortName(trimAlone ? "Trim" : modeName(track), ShortNameRule::cut, NonASCIIRule::blank);
}

void AutomationKeys::autoSwitch(Strip strip, bool down, Scope scope) {
    if (!down) {
        heldStrips.erase(strip);
        return;
    }
    heldStrips.insert(strip);
    for (const auto& [surface, port] : heldModes)
        apply(port, {strip}, scope);
}

void AutomationKeys::modeKey(int surface, int port, bool down, Scope scope) {
    if (!down) {
        heldModes.erase({surface, port});
        return;
    }
    heldModes.insert({surface, port});
    apply(port, heldStrips, scope);
}

void AutomationKeys::apply(int modePort, const std::set<Strip>& strips, Scope scope) {
    if (onSet)
        for (const Strip& strip : strips)
            onSet(modePort, strip);
    std::vector<int> meant;
    for (const SimulatedTrack& track : session.tracks())
        if (isMeant(track, strips, scope)) meant.push_back(track.id);
    for (const int id : meant)
        session.change(id, [modePort](SimulatedTrack& track) { press(modePort, track); });
}

bool AutomationKeys::isMeant(const SimulatedTrack& track, const std::set<Strip>& strips, Scope scope) const {
    if (scope == Scope::allTracks) return true;
    if (scope == Scope::selected) return track.selected;
    return std::ranges::any_of(strips, [&](const Strip& strip) {
        const SimulatedTrack* shown = session.find(trackShownOn(strip));
        if (shown == nullptr) return false;
        const bool follows = scope == Scope::strips && shown->group != 0 && shown->group == track.group;
        return shown->id == track.id || follows;
    });
}

void AutomationKeys::releaseModes() {
    heldModes.clear();
}

void AutomationKeys::releaseAll(int surface) {
    std::erase_if(heldStrips, [surface](const Strip& strip) { return strip.surface == surface; });
    std::erase_if(heldModes, [surface](const auto& key) { return key.first == surface; });
}

} // namespace lumbrine
