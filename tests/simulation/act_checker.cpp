#include "tests/simulation/act_checker.h"

#include "tests/simulation/actions.h"
#include "tests/simulation/pauses.h"

#include <algorithm>
#include <map>
#include <optional>
#include <span>

namespace lumbrine::simulation {

namespace {

using ActKind = HostAct::Kind;
using Tracks = ShownTracks::Tracks;

constexpr Duration longestWait = seconds(2);
constexpr Duration wholePanSeek = seconds(1.5); // 41 clicks, one in 35 ms
constexpr Duration longestWalk = seconds(120);  // a mode may wait for one
constexpr Duration stuckHost = seconds(1);      // to carry out a bank button: one that nobody can wait for
constexpr Duration touchIsForgotten = seconds(5);

// What a datagram asks for, and the tracks that may be meant.
struct Asked {
    TimePoint at;
    TimePoint until; // when it may go out at the latest
    ActKind kind;
    int strip;
    int detail;
    Tracks tracks;
    bool ofNewcomer = false;
    bool manyTimes = false; // the clicks of a pan seek
    bool done = false;

    bool asksFor(const HostAct& act, const Pauses& pauses) const {
        if (kind != act.kind || act.sent < at || done) return false;
        if (act.sent > until + pauses.within(at, act.sent)) return false;
        return detail == act.detail || (manyTimes && (act.detail == 1 || act.detail == -1));
    }
    bool means(int track) const { return std::ranges::find(tracks, track) != tracks.end(); }
};

std::string wordFor(const HostAct& act) {
    const std::string names[] = {"touch", "move", "press", "turn", "mode"};
    return names[static_cast<std::size_t>(act.kind)] + " " + std::to_string(act.detail) + " on strip " +
           std::to_string(act.strip) + " sent at " + std::to_string(inSeconds(act.sent.time_since_epoch())) +
           " s came to track " + std::to_string(act.track);
}

std::optional<Asked> directlyAsked(const ReceivedDatagram& datagram) {
    const auto action = actionAskedBy(datagram);
    if (!action) return std::nullopt;
    Asked asked{.at = datagram.at,
                .until = datagram.at + longestWait,
                .kind = ActKind::move,
                .strip = action->number,
                .detail = action->value,
                .tracks = {}};
    switch (action->kind) {
    case WireAction::Kind::fader:
        return asked;
    case WireAction::Kind::vpot:
        asked.kind = ActKind::turn;
        asked.detail = action->value > 64 ? action->value - 64 : -action->value;
        return asked;
    case WireAction::Kind::edge:
        break;
    }
    if (action->port == 0 && action->value == 0) return std::nullopt; // a release is the touch's
    asked.kind = action->port == 0 ? ActKind::touch : ActKind::press;
    asked.detail = action->port;
    return asked;
}

std::optional<Asked> askedOnTheWay(const ReceivedDatagram& datagram, const Requests& requests) {
    const Bytes& bytes = datagram.bytes;
    if (bytes.size() < 2 || bytes[0] != 1) return std::nullopt;
    const auto ofThis = [&](const auto& request) { return request.at == datagram.at && request.strip == bytes[2]; };
    if (bytes[1] == 0x09)
        if (const auto seek = std::ranges::find_if(requests.panSeeks, ofThis); seek != requests.panSeeks.end())
            return Asked{.at = datagram.at,
                         .until = datagram.at + longestWait + wholePanSeek,
                         .kind = ActKind::turn,
                         .strip = seek->strip,
                         .detail = 0,
                         .tracks = {},
                         .manyTimes = true};
    if (bytes[1] == 0x0F)
        if (const auto mode = std::ranges::find_if(requests.autoModes, ofThis); mode != requests.autoModes.end())
            return Asked{.at = datagram.at,
                         .until = datagram.at + longestWalk,
                         .kind = ActKind::mode,
                         .strip = mode->strip,
                         .detail = mode->modePort,
                         .tracks = {}};
    return std::nullopt;
}

class ActChecker {
public:
    ActChecker(const Evidence& given, const ShownTracks& shownTracks, const Acceptance& whoAsked,
               const Requests& requests)
        : evidence(given), pauses(given.pauses), acceptance(whoAsked), shown(shownTracks) {
        for (const ReceivedDatagram& datagram : acceptance.accepted)
            follow(datagram, requests);
        for (const WalkRequest& walk : requests.walks)
            addMembers(walk);
    }

    ActViolations check() {
        const std::vector<HostAct>& acts = evidence.record.acts;
        for (std::size_t i = 0; i < acts.size(); ++i) {
            if (acts[i].track == 0 || isBeforeAllNames(acts[i]) || isMeant(acts[i])) continue;
            if (acts[i].kind == ActKind::touch &&
                (isOfWalksMove(std::span(acts).subspan(i)) || isOfMemberInWalk(acts[i])))
                continue;
            complain(acts[i]);
        }
        return std::move(violations);
    }

private:
    void follow(const ReceivedDatagram& datagram, const Requests& requests) {
        while (change < acceptance.changes.size() && acceptance.changes[change].at <= datagram.at) {
            ownerSince = acceptance.changes[change++].at;
            fingers.clear();
        }
        if (datagram.at - lastHeard > touchIsForgotten) fingers.clear();
        lastHeard = datagram.at;
        auto request = directlyAsked(datagram);
        if (!request) request = askedOnTheWay(datagram, requests);
        if (!request) return liftFinger(datagram);
        const int strip = request->strip;
        request->ofNewcomer = !shown.wasToldNames(datagram.sender, ownerSince, datagram.at);
        if (request->kind == ActKind::touch) fingers[strip] = datagram.at;
        if (request->kind == ActKind::move && fingers.contains(strip)) {
            request->tracks = shown.underFinger(datagram.sender, strip, fingers[strip], datagram.at);
            add(request->tracks, shown.unseen(datagram.sender, strip, fingers[strip]));
        } else {
            request->tracks = shown.onStrip(datagram.sender, strip, datagram.at);
            add(request->tracks, shown.unseen(datagram.sender, strip, datagram.at));
        }
        if (request->kind != ActKind::move && request->kind != ActKind::touch)
            add(request->tracks, shown.byPosition(datagram.sender, strip, datagram.at));
        asked.push_back(*std::move(request));
    }

    static void add(Tracks& tracks, const Tracks& more) { tracks.insert(tracks.end(), more.begin(), more.end()); }

    void liftFinger(const ReceivedDatagram& datagram) {
        if (const auto action = actionAskedBy(datagram); action && action->kind == WireAction::Kind::edge)
            fingers.erase(action->number);
    }

    void addMembers(const WalkRequest& walk) {
        const auto datagram = std::ranges::find(acceptance.accepted, walk.at, &ReceivedDatagram::at);
        if (datagram == acceptance.accepted.end()) return;
        const auto addMember = [&](ActKind kind, int member, int detail) {
            members.push_back({.at = walk.at,
                               .until = walk.at + longestWalk,
                               .kind = kind,
                               .strip = 0,
                               .detail = detail,
                               .tracks = shown.inRow(datagram->sender, member, walk.at)});
            members.back().ofNewcomer = members.back().tracks.empty();
            add(members.back().tracks, shown.unseenInRow(datagram->sender, member, walk.at));
        };
        for (const auto& [member, value] : walk.faders)
            addMember(ActKind::move, member, value);
        for (const int member : walk.members)
            addMember(ActKind::mode, member, walk.modePort);
    }

    // Of a strip that has had no name so far, as on a host that sends none, its client means the strip itself.
    bool isBeforeAllNames(const HostAct& act) const { return act.sent <= shown.firstNamed(act.strip); }

    // A walk touches what it moves, and its move is looked at by itself. Between the two there may be what others do,
    // and the walk's thread may stand still.
    bool isOfWalksMove(std::span<const HostAct> touchAndLater) {
        const HostAct& touch = touchAndLater.front();
        const auto next = std::ranges::find(touchAndLater.subspan(1), touch.strip, &HostAct::strip);
        if (next == touchAndLater.end() || next->kind != ActKind::move) return false;
        return pauses.explain(touch.sent, next->sent) && memberAskedBy(*next) != members.end();
    }

    // A walk that nobody wants any more ends after the touch, also of the member that it is at.
    bool isOfMemberInWalk(const HostAct& touch) const {
        const auto isWalk = [&](const JobRun& run) { return run.job == Job::walk && run.mayHaveBeenAt(touch.sent); };
        return std::ranges::any_of(evidence.jobs.runs, isWalk) &&
               std::ranges::any_of(members, [&](const Asked& member) {
                   return member.kind == ActKind::move && member.at <= touch.sent &&
                          touch.sent <= member.until + pauses.within(member.at, touch.sent) &&
                          member.means(touch.track);
               });
    }

    bool isMeant(const HostAct& act) {
        const auto end = std::ranges::upper_bound(asked, act.sent, {}, &Asked::at);
        for (auto request = std::make_reverse_iterator(end); request != asked.rend(); ++request) {
            if (act.sent - request->at > longestWalk) break;
            if (!request->asksFor(act, pauses)) continue;
            if (!request->means(act.track) && !couldNotBeKnown(act, *request)) continue;
            request->done = !request->manyTimes;
            return true;
        }
        return isOfWalk(act);
    }

    bool isOfWalk(const HostAct& act) const {
        return std::ranges::any_of(members, [&](const Asked& member) {
            return member.asksFor(act, pauses) && (member.means(act.track) || couldNotBeKnown(act, member));
        });
    }

    std::vector<Asked>::iterator memberAskedBy(const HostAct& act) {
        return std::ranges::find_if(members, [&](const Asked& member) { return member.asksFor(act, pauses); });
    }

    bool couldNotBeKnown(const HostAct& act, const Asked& request) const {
        const std::vector<BankChange>& banks = evidence.record.banks;
        const auto ownBank = [&](const BankChange& bank) {
            return bank.pressed && *bank.pressed < act.sent && bank.at > act.sent && bank.at <= act.at &&
                   bank.at - *bank.pressed < stuckHost;
        };
        if (std::ranges::any_of(banks, ownBank)) return false;
        // What was shown at that very moment, or while the receiver's threads stood still, may have come too late.
        const TimePoint unread = pauses.earliest(act.sent);
        const std::vector<ShownTrack>& displays = evidence.record.shown;
        auto display = std::ranges::upper_bound(displays, act.sent, {}, &ShownTrack::at);
        while (display != displays.begin()) {
            --display;
            if (display->strip != act.strip) continue;
            if (request.means(display->track)) return true;
            if (display->at < unread) break;
        }
        return false;
    }

    void complain(const HostAct& act) {
        auto request = std::ranges::find_if(asked, [&](const Asked& each) { return each.asksFor(act, pauses); });
        std::string text = wordFor(act);
        if (request == asked.end()) {
            request = memberAskedBy(act);
            if (request == members.end()) return violations.wrongTracks.push_back(text + ", which nobody asked for");
            text += ", for a member";
        }
        text += ", its client was shown";
        for (const int track : request->tracks)
            text += " track " + std::to_string(track);
        if (request->tracks.empty()) text += " none";
        (request->ofNewcomer ? violations.ofNewcomers : violations.wrongTracks).push_back(text);
        request->done = !request->manyTimes;
    }

    const Evidence& evidence;
    const Pauses pauses;
    const Acceptance& acceptance;
    const ShownTracks& shown;
    std::vector<Asked> asked;   // on strips
    std::vector<Asked> members; // of walks

    // While the datagrams are followed.
    std::size_t change = 0;
    TimePoint ownerSince = distantPast;
    TimePoint lastHeard = distantPast;
    std::map<int, TimePoint> fingers; // by strip: when they were put on it

    ActViolations violations;
};

} // namespace

ActViolations checkActs(const Evidence& evidence, const ShownTracks& shown, const Acceptance& acceptance,
                        const Requests& requests) {
    return ActChecker(evidence, shown, acceptance, requests).check();
}

} // namespace lumbrine::simulation
