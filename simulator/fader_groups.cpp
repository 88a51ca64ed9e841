#include "simulator/fader_groups.h"

#include <algorithm>

namespace lumbrine {

int FaderGroups::groupOf(int trackID) const {
    const SimulatedTrack* track = session.find(trackID);
    return linked && track != nullptr ? track->group : 0;
}

bool FaderGroups::isTouched(int trackID) const {
    return std::ranges::find(touched, trackID) != touched.end();
}

void FaderGroups::touch(int trackID) {
    if (isTouched(trackID)) return;
    touched.push_back(trackID);
    const int group = groupOf(trackID);
    if (group != 0 && !leads.contains(group)) beginLead(group, trackID);
}

void FaderGroups::release(int trackID) {
    std::erase(touched, trackID);
    const auto lead = std::ranges::find_if(leads, [&](const auto& entry) { return entry.second.leader == trackID; });
    if (lead == leads.end()) return;
    const int group = lead->first;
    leads.erase(lead);
    const auto heir = std::ranges::find_if(touched, [&](int id) { return groupOf(id) == group; });
    if (heir != touched.end()) beginLead(group, *heir);
}

void FaderGroups::beginLead(int group, int leader) {
    Lead lead{leader, {}};
    for (const SimulatedTrack& track : session.tracks())
        if (track.group == group) lead.start.emplace(track.id, track.fader);
    leads.insert_or_assign(group, std::move(lead));
}

void FaderGroups::move(int trackID, FaderValue position) {
    session.change(trackID, [position](SimulatedTrack& track) { track.fader = position; });
    const auto found = leads.find(groupOf(trackID));
    if (found == leads.end() || found->second.leader != trackID) return;

    const Lead& lead = found->second;
    const int moved = position.raw() - lead.start.at(trackID).raw();
    for (const auto& [member, start] : lead.start) {
        if (isTouched(member)) continue;
        const int raw = std::clamp(start.raw() + moved, 0, static_cast<int>(FaderValue::fullScale));
        session.change(
            member, [raw](SimulatedTrack& track) { track.fader = FaderValue::ofRaw(static_cast<std::uint16_t>(raw)); });
    }
}

} // namespace lumbrine
