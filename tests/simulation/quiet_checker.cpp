// The part of told_checker.h that looks at quiet moments.
#include "remote/receiver_message.h"
#include "tests/simulation/actions.h"
#include "tests/simulation/host_timeline.h"
#include "tests/simulation/source_truth.h"
#include "tests/simulation/told_checker.h"

#include <algorithm>
#include <map>
#include <set>

namespace lumbrine::simulation {

namespace {

constexpr Duration quietTime = seconds(3);
constexpr Duration modeAge = seconds(30);
constexpr Duration betweenLooks = seconds(1);

class QuietChecker {
public:
    QuietChecker(const Scenario& scenario, const Evidence& given, const Acceptance& whoAsked)
        : evidence(given), acceptance(whoAsked), host(given.record, scenario.host) {}

    std::vector<std::string> check() {
        const TimePoint end = evidence.jobs.ended;
        for (now = evidence.begun + quietTime; now <= end; now += betweenLooks) {
            if (!isQuiet()) continue;
            const remote::SessionPicture* told = picture();
            if (told == nullptr) continue;
            lookAtStrips(*told);
            lookAtRows(*told);
            for (int strip = 0; strip < told->shownStrips; ++strip)
                if (const SimulatedTrack* track = trackOn(strip)) seen[track->id] = now;
        }
        return {violations.begin(), violations.end()};
    }

private:
    bool isQuiet() {
        const TimePoint since = now - quietTime;
        const auto overlaps = [&](TimePoint first, TimePoint last) { return first <= now && last >= since; };
        if (host.lastChangeBefore(now) > since) return false;
        if (std::ranges::any_of(evidence.jobs.runs, [&](const JobRun& run) { return overlaps(run.before, run.after); }))
            return false;
        if (std::ranges::any_of(evidence.disturbances,
                                [&](const Stretch& trouble) { return overlaps(trouble.first, trouble.last); }))
            return false;
        if (std::ranges::any_of(evidence.jobs.transport,
                                [&](const Stretch& run) { return overlaps(run.first, run.last); }))
            return false;
        const auto heard = std::ranges::upper_bound(acceptance.accepted, now, {}, &ReceivedDatagram::at);
        if (heard == acceptance.accepted.begin() || std::prev(heard)->at < since) return false;
        client = std::prev(heard)->sender;
        // What was asked for may be on its way.
        for (auto datagram = heard; datagram != acceptance.accepted.begin() && (--datagram)->at >= since;)
            if (actionAskedBy(*datagram)) return false;
        // A new owner has yet to say hello.
        return std::ranges::none_of(acceptance.changes,
                                    [&](const OwnerChange& change) { return overlaps(change.at, change.at); });
    }

    // What that client was told until now, and moved itself.
    const remote::SessionPicture* picture() {
        const auto& [peers, list] = evidence.sent;
        for (; next < list.size() && list[next].at <= now; ++next) {
            movesUntil(list[next].at);
            if (const auto message = remote::parseReceiverMessage(list[next].bytes))
                pictures[peers[list[next].peer]].apply(*message);
        }
        movesUntil(now);
        const auto found = pictures.find(client);
        return found == pictures.end() ? nullptr : &found->second;
    }

    void movesUntil(TimePoint end) {
        for (; nextMove < evidence.datagrams.size() && evidence.datagrams[nextMove].at < end; ++nextMove) {
            const ReceivedDatagram& datagram = evidence.datagrams[nextMove];
            const auto action = actionAskedBy(datagram);
            if (!action || action->kind != WireAction::Kind::fader) continue;
            pictures[datagram.sender].moveFader(*Strip::of(action->number),
                                                FaderValue::ofRaw(static_cast<std::uint16_t>(action->value)));
        }
    }

    const SimulatedTrack* trackOn(int strip) const {
        const ShownTrack* shown = host.shownOn(strip, now);
        return shown == nullptr ? nullptr : host.trackAt(shown->track, now);
    }

    bool anySolo() const {
        return std::ranges::any_of(host.listAt(now), [&](int id) { return host.trackAt(id, now)->solo; });
    }

    // ---- The strips

    void lookAtStrips(const remote::SessionPicture& told) {
        const bool mutesFlash = anySolo();
        for (int i = 0; i < told.shownStrips; ++i) {
            const remote::StripPicture& strip = told.strips[static_cast<std::size_t>(i)];
            const ShownTrack* shown = host.shownOn(i, now);
            if (shown == nullptr) continue;
            which = " of strip " + std::to_string(i);
            const SimulatedTrack* track = host.trackAt(shown->track, now);
            const std::string name = track == nullptr ? "" : host.displayOf(*track);
            expect(strip.name == name, "name " + strip.name + " instead of " + name);
            if (track == nullptr) continue;
            expect(strip.fullName.empty() || strip.fullName == track->name, "full name " + strip.fullName);
            expect(strip.fader.raw() == host.faderOf(*track), "fader " + std::to_string(strip.fader.raw()) +
                                                                  " instead of " +
                                                                  std::to_string(host.faderOf(*track)));
            expect(!strip.color || *strip.color == colorOf(track->color), "colour");
            expect(!strip.inputMonitor || track->inputMonitor, "monitor");
            expect(strip.select == track->selected, "select");
            expect(strip.lights.solo == track->solo, "solo");
            if (!mutesFlash || track->mute) expect((strip.lights.mute == remote::Light::on) == track->mute, "mute");
            if (!track->recordArmed) expect(strip.lights.record == remote::Light::off, "record light");
            lookAtMode(strip.autoMode, *track);
            for (const bool right : {false, true})
                lookAtPan(strip.pan[right ? 1 : 0], right, *track);
        }
    }

    void lookAtMode(int mode, const SimulatedTrack& track) {
        expect(
            mode == 0 || host.everWas(track.id, now - modeAge, now,
                                      [&](const SimulatedTrack& then) { return HostTimeline::modeOf(then) == mode; }),
            "automation mode " + std::to_string(mode) + " instead of " + std::to_string(HostTimeline::modeOf(track)));
    }

    // The surfaces show one side at a time, so the other may be an older one.
    void lookAtPan(const remote::RingPosition& ring, bool right, const SimulatedTrack& track) {
        expect(ring.position == 0 || host.everWas(track.id, distantPast, now,
                                                  [&](const SimulatedTrack& then) {
                                                      return HostTimeline::ringOf(then, right) == ring.position;
                                                  }),
               std::string("pan, ") + (right ? "right" : "left"));
    }

    // ---- The rows

    // A position that is told as unknown tells that the map may be wrong.
    void lookAtRows(const remote::SessionPicture& told) {
        if (!told.bankOffset) return;
        const std::vector<int>& list = host.listAt(now);
        for (int i = 0; i < told.shownStrips; ++i) {
            const std::size_t index = *told.bankOffset + static_cast<std::size_t>(i);
            const ShownTrack* shown = host.shownOn(i, now);
            if (shown == nullptr || shown->track == 0) continue;
            which = " of strip " + std::to_string(i);
            expect(index < list.size() && list[index] == shown->track,
                   "position " + std::to_string(*told.bankOffset) + ", which is another's than that");
        }
        for (const auto& [index, row] : told.session) {
            if (index >= told.trackCount || index >= list.size()) continue;
            const SimulatedTrack* track = host.trackAt(list[index], now);
            which = " of row " + std::to_string(index);
            if (row.row) lookAtRow(*row.row, *track);
            if (seen.contains(track->id)) lookAtSessionMode(row, *track);
        }
    }

    // Since the surfaces showed the track at a quiet moment.
    template <typename Was>
    bool was(const SimulatedTrack& track, Was so) const {
        const auto last = seen.find(track.id);
        return host.everWas(track.id, last == seen.end() ? distantPast : last->second, now, so);
    }

    void lookAtRow(const remote::TrackRow& row, const SimulatedTrack& track) {
        const bool known = seen.contains(track.id);
        if (row.fader)
            expect(was(track, [&](const auto& then) { return host.faderOf(then) == row.fader->raw(); }), "fader");
        const auto flag = [&](bool told, bool SimulatedTrack::* field, const char* what) {
            if (told || known) expect(was(track, [&](const auto& then) { return then.*field == told; }), what);
        };
        flag(row.solo, &SimulatedTrack::solo, "solo");
        flag(row.select, &SimulatedTrack::selected, "select");
        flag(row.record, &SimulatedTrack::recordArmed, "record enable");
        if (!anySolo()) flag(row.mute, &SimulatedTrack::mute, "mute");
        if (row.inputMonitor) expect(was(track, [](const auto& then) { return then.inputMonitor; }), "monitor");
        if (row.color) expect(*row.color == colorOf(track.color), "colour");
        expect(row.comment.empty() || isCommentOn(track.id, row.comment), "comment " + row.comment);
    }

    void lookAtSessionMode(const remote::SessionTrack& row, const SimulatedTrack& track) {
        const int mode = row.autoMode;
        expect(mode == 0 || host.everWas(track.id, seen.at(track.id) - modeAge, now,
                                         [&](const auto& then) { return HostTimeline::modeOf(then) == mode; }),
               "session automation mode");
    }

    void expect(bool holds, const std::string& what) {
        if (!holds)
            violations.insert("at " + std::to_string(inSeconds(now.time_since_epoch())) + " s the " + what + which +
                              " is not the host's");
    }

    const Evidence& evidence;
    const Acceptance& acceptance;
    const HostTimeline host;

    TimePoint now;
    std::string client;                                     // in control
    std::size_t next = 0;                                   // of what was sent
    std::size_t nextMove = 0;                               // of what was received
    std::map<std::string, remote::SessionPicture> pictures; // by client
    std::map<int, TimePoint> seen;                          // by track: when strips showed it at a quiet moment
    std::string which;
    std::set<std::string> violations;
};

} // namespace

std::vector<std::string> checkQuietMoments(const Scenario& scenario, const Evidence& evidence,
                                           const Acceptance& acceptance) {
    return QuietChecker(scenario, evidence, acceptance).check();
}

} // namespace lumbrine::simulation
