#include "tests/simulation/calm.h"

#include "model/testing/session_columns.h"
#include "remote/command_builder.h"
#include "tests/simulation/time_limits.h"

#include <algorithm>

namespace lumbrine::simulation {

namespace {

constexpr Duration look = seconds(0.1);
constexpr Duration longestScan = seconds(300);

std::string listOf(const Names& names) {
    std::string list;
    for (const std::string& name : names)
        list += " [" + name + "]";
    return list;
}

} // namespace

Recovery Calm::run() {
    endTrouble();
    recover();
    world.runtime.runFor(seconds(4)); // a quiet moment
    tryFader();
    awaitSources();
    refreshPicture();
    checkScans();
    return std::move(recovery);
}

void Calm::endTrouble() {
    world.network.setFaults({});
    for (const auto& phone : world.phones)
        phone->rest();
    if (world.forger) world.forger->rest();
    world.proTools->rest();
    world.proTools->edit([](SimulatedSession& session) { session.stop(); });
    ended = world.runtime.now();
    world.runtime.runFor(seconds(2));
    world.phones.resize(1);
    world.phones.front()->rest(); // it may have been out of the network just before
    world.proTools->edit([](SimulatedSession& session) {
        session.changeAll([](SimulatedTrack& track) { track.solo = track.mute = track.recordArmed = false; });
    });
}

void Calm::recover() {
    const int tracks = static_cast<int>(viewOf(*world.proTools).names.size());
    const Duration limit = recoveryLimit({.tracks = tracks, .strips = world.scenario.strips()});
    const bool mapIsPossible = world.scenario.hostIsQuick();
    if (!mapIsPossible) world.runtime.runFor(seconds(5)); // for what was asked for last
    for (;;) {
        const std::string wrong = mapIsPossible ? wrongWithPeace() : wrongWithRest();
        if (wrong.empty()) {
            if (!peaceSince) peaceSince = world.runtime.now();
            if (!mapIsPossible || mapIsRight()) break;
            askForScan();
        }
        if (world.runtime.now() - ended > limit) {
            complain("after " + std::to_string(inSeconds(limit)) +
                     " s: " + (wrong.empty() ? "the map is wrong" : wrong));
            break;
        }
        world.runtime.runFor(look);
    }
    recovery.took = world.runtime.now() - ended;
}

// What changed elsewhere in the session the receiver cannot know.
void Calm::askForScan() {
    recovery.mapWasStale = true;
    world.phones.front()->rest();
    world.phone().send(remote::recalibrateCommand());
    world.runtime.runFor(look);
    world.runtime.runUntil([this] { return !world.watch->anyJob(); }, longestScan);
}

std::string Calm::wrongWithRest() const {
    const PublishedState& published = world.model->published();
    if (world.phones.front()->client().state() != remote::LinkState::connected) return "the phone is not connected";
    if (!published.huiConnected) return "Pro Tools counts as gone";
    if (published.winW != world.scenario.strips()) return "another number of strips";
    if (jobsRanSince(world.runtime.now() - seconds(1))) return "the banks are still being moved";
    return {};
}

std::string Calm::wrongWithPeace() const {
    if (std::string wrong = wrongWithRest(); !wrong.empty()) return wrong;
    // An AUTO switch whose end was not heard is let go when that strip's mode is asked for again.
    if (anyModeIsShown()) return "a mode is shown, or will be";
    if (!positionIsRight()) {
        const HostView host = viewOf(*world.proTools);
        return "the bank offset " + std::to_string(world.model->published().bankOffset) + " is wrong, the host at " +
               std::to_string(host.offset) + " of" + listOf(host.names) + ", the map" +
               listOf(displaysOf(world.model->published().session));
    }
    return {};
}

bool Calm::anyModeIsShown() const {
    const HostView host = viewOf(*world.proTools);
    const SimulatorSnapshot shown = world.proTools->snapshot();
    const Names names = windowAt(host, host.offset);
    for (std::size_t i = 0; i < names.size(); ++i) {
        const SimulatorSnapshot::Strip& strip = shown.surfaces[i / 8].strips[i % 8];
        if (strip.autoHeld || trimmed(strip.display) != names[i]) return true;
    }
    return false;
}

// By the host. A position may be unknown where it cannot be told.
bool Calm::positionIsRight() const {
    const HostView host = viewOf(*world.proTools);
    const int offset = world.model->published().bankOffset;
    if (offset < 0) return !everyOffsetLooksDifferent(host, world.scenario.host);
    return mapIsRight() && offset == host.offset;
}

bool Calm::mapIsRight() const {
    return isRight(knownDisplays());
}

// By the tracks that the host has. Where banks look alike it may be another map, as long as the position is unknown.
bool Calm::isRight(const Names& map) const {
    const HostView host = viewOf(*world.proTools);
    return isMapOf(host, map) ||
           (world.model->published().bankOffset < 0 && !everyOffsetLooksDifferent(host, world.scenario.host));
}

// A track whose name has changed is known by that name until a strip shows it.
Names Calm::knownDisplays() const {
    const std::vector<Track>& map = world.model->published().session.tracks;
    const std::vector<HostTrack> tracks = tracksOf(*world.proTools);
    Names displays = displaysOf(world.model->published().session);
    for (std::size_t i = 0; i < map.size() && i < tracks.size(); ++i)
        if (!map[i].displayKnown && map[i].name == tracks[i].name) displays[i] = tracks[i].display;
    return displays;
}

bool Calm::jobsRanSince(TimePoint since) const {
    const std::vector<JobRun>& runs = world.watch->record().runs;
    return world.watch->anyJob() || (!runs.empty() && runs.back().after >= since);
}

// ---- A fader both ways

void Calm::tryFader() {
    constexpr int attempts = 20;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const auto strip = someStripWithATrack();
        if (!strip) return;
        world.runtime.runUntil([this] { return !world.watch->anyJob(); }, longestScan);
        const TimePoint begin = world.runtime.now();
        const bool arrived = faderGoesBothWays(*strip);
        if (jobsRanSince(begin)) continue; // the surfaces showed something else meanwhile
        if (!arrived) complain("the fader of strip " + std::to_string(strip->index()) + " does not go both ways");
        return;
    }
    complain("the surfaces are never at rest");
}

bool Calm::faderGoesBothWays(Strip strip) {
    constexpr std::uint16_t fromPhone = 11111;
    constexpr std::uint16_t fromHost = 4321;
    remote::RemoteClient& phone = world.phone();
    phone.touch(strip);
    phone.move(strip, FaderValue::ofRaw(fromPhone));
    phone.release(strip);
    const Duration there = seconds(0.8) + world.scenario.host.latency;
    world.runtime.runFor(there);
    if (faderOfHost(strip) != fromPhone) return false;

    const int track = world.proTools->snapshot().surfaces[strip.slot() / 8].strips[strip.slot() % 8].trackID;
    world.proTools->edit([track](SimulatedSession& session) {
        session.change(track, [](SimulatedTrack& moved) { moved.fader = FaderValue::ofRaw(fromHost); });
    });
    world.runtime.runFor(there);
    const int unsentBits = 14 - world.scenario.host.faderBits;
    return phone.picture().at(strip).fader.raw() == fromHost >> unsentBits << unsentBits;
}

std::optional<Strip> Calm::someStripWithATrack() const {
    const SimulatorSnapshot host = world.proTools->snapshot();
    for (int i = world.scenario.strips() - 1; i >= 0; --i) {
        const Strip strip = *Strip::of(i);
        if (host.surfaces[strip.slot() / 8].strips[strip.slot() % 8].trackID != 0) return strip;
    }
    return std::nullopt;
}

int Calm::faderOfHost(Strip strip) const {
    return world.proTools->snapshot().surfaces[strip.slot() / 8].strips[strip.slot() % 8].fader.raw();
}

// ---- Names, colours, comments

// Every 12 s the comments are read, once the screen has rested for up to 42 s from a reading that a host that sticks
// did not answer.
void Calm::awaitSources() {
    constexpr Duration limit = seconds(60);
    const auto mapIsTrue = [this] {
        const PublishedState& published = world.model->published();
        return published.bankOffset >= 0 && displaysOf(published.session) == viewOf(*world.proTools).names;
    };
    const auto wrong = [this] { return wrongWithSources(world.scenario.sources, world.state(), *world.proTools); };
    if (!world.scenario.hostIsQuick() || !mapIsTrue()) return;
    const TimePoint end = world.runtime.now() + limit;
    while (!wrong().empty() && world.runtime.now() < end)
        world.runtime.runFor(seconds(0.5));
    if (const std::string what = wrong(); !what.empty() && mapIsTrue()) complain("at rest, " + what);
}

// ---- The picture

// Where names cannot tell the position the receiver scans again and again; in between the line is quiet.
void Calm::refreshPicture() {
    constexpr int attempts = 20;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        world.runtime.runUntil([this] { return !world.watch->anyJob(); }, longestScan);
        const TimePoint begin = world.runtime.now();
        world.phone().connect(receiverAddress, receiverPort);
        world.runtime.runFor(seconds(2));
        // A comment that is read in these seconds goes out with the rows that follow.
        world.runtime.runUntil([this] { return commentsAreTold() || world.watch->anyJob(); }, seconds(1.5));
        if (!jobsRanSince(begin)) break;
    }
}

bool Calm::commentsAreTold() const {
    const Names comments = column(world.state().published.session, &Track::comment);
    return std::ranges::all_of(world.phone().picture().session, [&comments](const auto& numbered) {
        const auto& [index, track] = numbered;
        return !track.row || track.row->comment == (index < comments.size() ? comments[index] : std::string());
    });
}

// A scan of a host that does what a host does finds what there is to be found.
void Calm::checkScans() {
    if (!world.scenario.hostIsQuick()) return;
    for (const JobRun& run : world.watch->record().runs)
        if (run.job == Job::scan && peaceSince && run.first >= *peaceSince && !isRight(run.mapAfter))
            complain("the scan that began at " + std::to_string(inSeconds(run.first.time_since_epoch())) +
                     " s ended with a wrong map");
}

} // namespace lumbrine::simulation
