#include "remote/track_facts.h"

namespace lumbrine::remote {
namespace {

TrackFacts toldOf(const SessionTrack& track) {
    TrackFacts facts{.autoMode = track.autoMode, .pan = track.pan};
    if (!track.row) return facts;
    const TrackRow& row = *track.row;
    facts.name = row.name;
    facts.fader = row.fader;
    facts.lights = {
        .mute = row.mute ? Light::on : Light::off, .solo = row.solo, .record = row.record ? Light::on : Light::off};
    facts.inputMonitor = row.inputMonitor;
    facts.select = row.select;
    facts.color = row.color;
    facts.comment = row.comment;
    return facts;
}

void lookAtStrip(TrackFacts& facts, const StripPicture& strip, PanSide side) {
    if (facts.name.empty()) facts.name = strip.fullName.empty() ? strip.name : strip.fullName;
    facts.fader = strip.fader;
    facts.lights = strip.lights;
    facts.inputMonitor = strip.inputMonitor;
    facts.select = strip.select;
    if (strip.color) facts.color = strip.color;
    if (strip.autoMode != 0) facts.autoMode = strip.autoMode;
    if (strip.ring(side).position != 0) facts.pan = {.side = side, .ring = strip.ring(side)};
}

} // namespace

TrackFacts factsOf(const SessionPicture& picture, Offset offset, std::uint16_t track) {
    const auto told = picture.session.find(track);
    TrackFacts facts = told != picture.session.end() ? toldOf(told->second) : TrackFacts{};
    facts.strip = stripShowing(picture, offset, track);
    if (facts.strip && offset == picture.settledOffset)
        lookAtStrip(facts, picture.at(*facts.strip), picture.panRight ? PanSide::right : PanSide::left);
    return facts;
}

std::optional<std::uint16_t> trackOn(const SessionPicture& picture, Offset offset, Strip strip) {
    if (!offset || strip.index() >= picture.shownStrips) return std::nullopt;
    const int track = *offset + strip.index();
    if (track >= picture.trackCount) return std::nullopt;
    return static_cast<std::uint16_t>(track);
}

std::optional<Strip> stripShowing(const SessionPicture& picture, Offset offset, std::uint16_t track) {
    if (!offset || track < *offset || track >= picture.trackCount) return std::nullopt;
    const int index = track - *offset;
    if (index >= picture.shownStrips) return std::nullopt;
    return Strip::of(index);
}

} // namespace lumbrine::remote
