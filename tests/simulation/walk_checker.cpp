#include "tests/simulation/walk_checker.h"

#include "tests/simulation/drop_checker.h"
#include "tests/simulation/host_timeline.h"
#include "tests/simulation/time_limits.h"

#include <algorithm>
#include <cctype>
#include <set>

namespace lumbrine::simulation {

namespace {

using Walk = WalkRequest::Kind;

constexpr Duration longestWaitAndWalk = seconds(130);
constexpr Duration nearby = seconds(30);
constexpr Duration runOfDrops = seconds(10);
constexpr Duration lineMayFollow = seconds(1);
constexpr Duration reaction = seconds(1.5); // of a slow host to the last press

// The numbers of "n of m" in a line.
std::optional<std::pair<std::size_t, std::size_t>> countsIn(const std::string& line) {
    const std::size_t of = line.find(" of ");
    if (of == std::string::npos || of == 0 || of + 4 >= line.size()) return std::nullopt;
    const auto isDigit = [&](std::size_t at) { return std::isdigit(static_cast<unsigned char>(line[at])) != 0; };
    if (!isDigit(of - 1) || !isDigit(of + 4)) return std::nullopt;
    std::size_t begin = of;
    while (begin > 0 && isDigit(begin - 1))
        --begin;
    return std::pair<std::size_t, std::size_t>(std::stoul(line.substr(begin)), std::stoul(line.substr(of + 4)));
}

class MemberChecker {
public:
    MemberChecker(const Evidence& given, const ShownTracks& shownTracks, const Acceptance& whoAsked,
                  const Requests& asked)
        : evidence(given), shown(shownTracks), acceptance(whoAsked), requests(asked) {}

    std::vector<std::string> check() {
        for (const WalkRequest& walk : requests.walks)
            if (walk.kind != Walk::range && !mayBeDropped(walk)) look(walk);
        return std::move(violations);
    }

private:
    // Nobody knows whether a disturbed host did what the surfaces said.
    bool mayBeDropped(const WalkRequest& walk) const {
        const TimePoint end = walk.at + nearby;
        const auto isNear = [&](TimePoint first, TimePoint last) { return first <= end && last >= walk.at; };
        return std::ranges::any_of(evidence.disturbances,
                                   [&](const Stretch& trouble) { return isNear(trouble.first, trouble.last); }) ||
               std::ranges::any_of(acceptance.changes,
                                   [&](const OwnerChange& change) { return isNear(change.at, change.at); });
    }

    void look(const WalkRequest& walk) {
        const auto datagram = std::ranges::find(acceptance.accepted, walk.at, &ReceivedDatagram::at);
        if (datagram == acceptance.accepted.end()) return;
        std::set<int> open;
        std::set<int> reached;
        for (const auto& [member, value] : walk.faders)
            note(walk, datagram->sender, member, value, open, reached);
        for (const int member : walk.members)
            note(walk, datagram->sender, member, walk.modePort, open, reached);
        for (const int member : reached)
            open.erase(member);
        std::erase_if(open, [&](int member) { return isReplaced(walk, member); });
        if (open.empty() || isAccountedFor(walk, reached.size(), reached.size() + open.size())) return;
        violations.push_back(
            "of what was asked of a group at " + std::to_string(inSeconds(walk.at.time_since_epoch())) + " s, " +
            std::to_string(open.size()) + " of " + std::to_string(open.size() + reached.size()) +
            " members were not reached, first " + std::to_string(*open.begin()) + ", and the log does not tell");
    }

    // A member that the client was never told a row of is nobody's.
    void note(const WalkRequest& walk, const std::string& client, int member, int detail, std::set<int>& open,
              std::set<int>& reached) const {
        const ShownTracks::Tracks tracks = shown.inRow(client, member, walk.at);
        if (tracks.empty()) return;
        const auto kind = walk.kind == Walk::faders ? HostAct::Kind::move : HostAct::Kind::mode;
        const bool done = std::ranges::any_of(evidence.record.acts, [&](const HostAct& act) {
            return act.kind == kind && act.detail == detail && act.sent >= walk.at &&
                   act.sent <= walk.at + longestWaitAndWalk && std::ranges::find(tracks, act.track) != tracks.end();
        });
        (done ? reached : open).insert(member);
    }

    bool isReplaced(const WalkRequest& walk, int member) const {
        return std::ranges::any_of(requests.walks, [&](const WalkRequest& other) {
            const auto isIt = [member](const auto& fader) { return fader.first == member; };
            return other.at > walk.at && other.kind == walk.kind &&
                   (std::ranges::any_of(other.faders, isIt) || std::ranges::count(other.members, member) > 0);
        });
    }

    // By a line about groups that comes by the end of the very walk.
    bool isAccountedFor(const WalkRequest& walk, std::size_t reached, std::size_t asked) const {
        const TimePoint end = endOf(walk);
        const TimePoint last = end == TimePoint::max() ? end : end + lineMayFollow;
        return std::ranges::any_of(evidence.jobs.lines, [&](const auto& line) {
            if (line.first > last || line.second.find("roup") == std::string::npos) return false;
            if (tellsOfADrop(line.second)) return line.first >= walk.at - runOfDrops; // one line stands for a run
            return line.first >= walk.at && countsIn(line.second) == std::pair(reached, asked);
        });
    }

    // Walks are carried out in the order of their commands; one that never begins is over when it is too old.
    TimePoint endOf(const WalkRequest& walk) const {
        TimePoint free = distantPast;
        for (const WalkRequest& other : requests.walks) {
            const auto isIts = [&](const JobRun& run) {
                return run.job == Job::walk && run.first >= std::max(free, other.at) &&
                       run.before <= other.at + walkTime;
            };
            const auto run = std::ranges::find_if(evidence.jobs.runs, isIts);
            const bool begins = run != evidence.jobs.runs.end();
            if (&other == &walk) return begins ? run->after : walk.at + walkTime;
            if (begins) free = run->after;
        }
        return walk.at + walkTime;
    }

    const Evidence& evidence;
    const ShownTracks& shown;
    const Acceptance& acceptance;
    const Requests& requests;
    std::vector<std::string> violations;
};

} // namespace

std::vector<std::string> checkMembers(const Evidence& evidence, const ShownTracks& shown, const Acceptance& acceptance,
                                      const Requests& requests) {
    return MemberChecker(evidence, shown, acceptance, requests).check();
}

std::vector<std::string> checkReturns(const Evidence& evidence, const Requests& requests) {
    std::vector<std::string> violations;
    const std::vector<BankChange>& banks = evidence.record.banks;
    for (const JobRun& run : evidence.jobs.runs) {
        if (run.job != Job::walk || run.after == TimePoint::max()) continue;
        const TimePoint begin = run.before - reaction;
        const TimePoint end = run.after + reaction;
        const auto isNear = [&](TimePoint at) { return begin <= at && at <= end; };
        const bool others =
            std::ranges::any_of(requests.seeks, isNear, &SeekRequest::at) ||
            std::ranges::any_of(requests.bankMoves, isNear, &BankMoveRequest::at) ||
            std::ranges::any_of(evidence.record.lists, isNear, &TrackList::at) ||
            std::ranges::any_of(banks, [&](const BankChange& bank) { return !bank.pressed && isNear(bank.at); }) ||
            std::ranges::any_of(
                evidence.disturbances,
                [&](const Stretch& trouble) { return trouble.first <= end && trouble.last >= begin; }) ||
            std::ranges::any_of(evidence.jobs.runs, [&](const JobRun& other) {
                return &other != &run && other.before <= end && other.after >= begin;
            });
        if (others || offsetAt(evidence.record, end) == offsetAt(evidence.record, run.before)) continue;
        violations.push_back("the walk that began at " + std::to_string(inSeconds(run.first.time_since_epoch())) +
                             " s left the surfaces at " + std::to_string(offsetAt(evidence.record, end)) +
                             " instead of " + std::to_string(offsetAt(evidence.record, run.before)));
    }
    return violations;
}

} // namespace lumbrine::simulation
