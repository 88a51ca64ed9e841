#include "simulator/automation_keys.h"

#include "simulator/hui_address.h"

#include <string_view>

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

DisplayText automationText(const SimulatedTrack& track) {
    return shortName(modeName(track), ShortNameRule::cut, NonASCIIRule::blank);
}

void AutomationKeys::autoSwitch(Strip strip, bool down, bool everyTrack) {
    if (!down) {
        heldStrips.erase(strip);
        return;
    }
    heldStrips.insert(strip);
    for (const auto& [surface, port] : heldModes)
        apply(port, strip, everyTrack);
}

void AutomationKeys::modeKey(int surface, int port, bool down, bool everyTrack) {
    if (!down) {
        heldModes.erase({surface, port});
        return;
    }
    heldModes.insert({surface, port});
    if (everyTrack) {
        if (!heldStrips.empty()) apply(port, *heldStrips.begin(), true);
        return;
    }
    for (const Strip& strip : heldStrips)
        apply(port, strip, false);
}

void AutomationKeys::apply(int modePort, Strip strip, bool everyTrack) {
    const auto edit = [modePort](SimulatedTrack& track) { press(modePort, track); };
    if (everyTrack) {
        session.changeAll(edit);
    } else {
        session.change(trackShownOn(strip), edit);
    }
}

void AutomationKeys::releaseModes() {
    heldModes.clear();
}

void AutomationKeys::releaseAll(int surface) {
    std::erase_if(heldStrips, [surface](const Strip& strip) { return strip.surface == surface; });
    std::erase_if(heldModes, [surface](const auto& key) { return key.first == surface; });
}

} // namespace lumbrine
