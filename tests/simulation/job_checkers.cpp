#include "tests/simulation/job_checkers.h"

#include "tests/simulation/actions.h"
#include "tests/simulation/time_limits.h"

#include <algorithm>
#include <map>

namespace lumbrine::simulation {

namespace {

using Violations = std::vector<std::string>;
using Walk = WalkRequest::Kind;

constexpr Duration answerPeriod = seconds(0.25); // the full state is sent at most once in this time
constexpr Duration longestTurn = seconds(1);     // until a command's turn has come on free surfaces
constexpr Duration look = seconds(0.04);         // for hands that rest again
constexpr Duration tapLimit = seconds(2);        // from the last tap on

std::string describe(const JobRun& run) {
    return nameOf(run.job) + " that began at " + std::to_string(inSeconds(run.first.time_since_epoch())) + " s";
}

bool within(TimePoint at, TimePoint first, TimePoint last) {
    return first <= at && at <= last;
}

// Taps that follow each other are one job, which a seek waits for.
TimePoint waitingSince(const JobRun& seek, const std::vector<JobRun>& runs) {
    const auto before = std::ranges::find_if(runs, [&](const JobRun& other) {
        return other.job == Job::tap && other.first < seek.before && other.after >= seek.before;
    });
    return before == runs.end() ? seek.before : before->before;
}

bool seekWasAsked(const JobRun& run, const std::vector<JobRun>& runs, const Requests& requests, const Pauses& pauses) {
    const TimePoint latest = pauses.before(run.before, longestTurn);
    const TimePoint tooOld = pauses.before(run.before, modeTime);
    const TimePoint first = pauses.earliest(std::clamp(waitingSince(run, runs), tooOld, latest));
    const auto isInTime = [&](const auto& request) { return within(request.at, first, run.first); };
    return (run.job == Job::seek && std::ranges::any_of(requests.seeks, isInTime)) ||
           std::ranges::any_of(requests.bankMoves, isInTime);
}

// What a scan may have waited for, and when that was over.
class Waits {
public:
    Waits(const Evidence& evidence, const SurfaceActions& wires, const Acceptance& acceptance, const Pauses& ofThreads)
        : runs(evidence.jobs.runs), pauses(ofThreads) {
        for (const auto& wire : wires)
            for (const WireAction& action : wire)
                if (action.isOfStrip() && action.port == autoPort && action.value == 0) ends.push_back(action.at);
        for (const auto& [at, line] :
             evidence.jobs.lines) // a host of one surface does not see the AUTO keys of the other
            if (line.starts_with("← auto ch")) ends.push_back(at);
        for (int surface = 0; surface < 2; ++surface)
            for (const WireAction& action : askedOf(acceptance.accepted, surface)) {
                if (action.isTouchEnd()) ends.push_back(action.at);
                if (!action.isTouch() && action.kind != WireAction::Kind::fader) continue;
                ends.push_back(action.at + handRest);
                hands.push_back({action.at, action.at + handRest});
            }
        for (const auto& wire : wires)
            noteTouches(wire);
        // The receiver has two surfaces, however many the host has.
        for (std::size_t surface = wires.size(); surface < 2; ++surface)
            noteTouches(askedOf(acceptance.accepted, static_cast<int>(surface)));
    }

    // A hand may have been on a fader.
    bool handAt(TimePoint time) const {
        return std::ranges::any_of(hands, [&](const Stretch& hand) {
            return hand.first <= time && time <= hand.last + pauses.within(hand.last, time);
        });
    }

    bool endAt(TimePoint beginning) const {
        const TimePoint decided = pauses.earliest(beginning);
        return std::ranges::any_of(runs,
                                   [&](const JobRun& run) { return run.last <= beginning && decided <= run.after; }) ||
               std::ranges::any_of(ends, [&](TimePoint end) {
                   return end <= beginning && beginning - end <= look + pauses.within(end, beginning);
               });
    }

private:
    void noteTouches(const std::vector<WireAction>& wire) {
        std::map<int, TimePoint> touched; // by strip
        for (const WireAction& action : wire) {
            if (action.isTouch()) touched.emplace(action.number, action.at);
            if (action.isTouchEnd() && touched.contains(action.number)) {
                hands.push_back({touched[action.number], action.at});
                touched.erase(action.number);
            }
        }
        for (const auto& [strip, since] : touched)
            hands.push_back({since, TimePoint::max()});
    }

    const std::vector<JobRun>& runs;
    const Pauses& pauses;
    std::vector<TimePoint> ends;
    std::vector<Stretch> hands;
};

// The line that announces a scan is written at its beginning, so that is known exactly.
TimePoint beginningOf(const JobRun& scan, const JobRecord& jobs) {
    for (const auto& [at, line] : jobs.lines)
        if (within(at, scan.before, scan.first) && line.starts_with("▶ Scanning")) return at;
    return scan.first;
}

// Two seconds after a scan, and two seconds later for as long as a hand was on a fader.
bool isNextAttempt(TimePoint ended, TimePoint begun, const Waits& waits, const Pauses& pauses) {
    constexpr Duration pause = seconds(2);
    TimePoint earliest = ended + pause;
    TimePoint latest = pauses.latest(earliest);
    while (latest < begun && waits.handAt(earliest)) {
        earliest += pause;
        latest = pauses.latest(latest + pause);
    }
    return within(begun, earliest, latest);
}

bool scanHadAReason(const JobRun& scan, const Evidence& evidence, const Requests& requests, const Waits& waits,
                    const Pauses& pauses) {
    const TimePoint begun = beginningOf(scan, evidence.jobs);
    const auto isInTime = [&](TimePoint asked) {
        return asked <= begun && begun <= asked + walkTime + pauses.within(asked, begun);
    };
    const auto isAnsweredThen = [&](TimePoint hello) { // at once, or when the last answer is long enough ago
        return hello <= begun && begun - hello <= answerPeriod + pauses.within(hello, begun);
    };
    if (std::ranges::any_of(requests.scans, isInTime) || std::ranges::any_of(requests.hellos, isAnsweredThen))
        return true;
    const TimePoint lastTick = begun - (begun - evidence.begun) % seconds(0.4);
    if (lastTick >= pauses.earliest(begun)) return true;
    return waits.endAt(begun) || std::ranges::any_of(evidence.jobs.runs, [&](const JobRun& other) {
               return other.job == Job::scan && other.after < begun && isNextAttempt(other.after, begun, waits, pauses);
           });
}

// One that ends for nobody any more says nothing.
bool mayPlayFaders(const JobRun& walk, const Evidence& evidence, const Requests& requests) {
    const auto kind = kindOf(walk, evidence.jobs);
    if (kind) return *kind == Walk::faders;
    return std::ranges::any_of(requests.walks, [&](const WalkRequest& asked) {
        return asked.kind == Walk::faders && within(asked.at, walk.first - walkTime, walk.first);
    });
}

// By its client or its successor, while the job began.
bool isLetGo(int strip, int surface, const Acceptance& acceptance, TimePoint first, TimePoint last) {
    return std::ranges::any_of(askedOf(acceptance.accepted, surface),
                               [&](const WireAction& action) {
                                   return action.isTouchEnd() && action.number == strip &&
                                          within(action.at, first, last);
                               }) ||
           std::ranges::any_of(acceptance.changes,
                               [&](const OwnerChange& change) { return within(change.at, first, last); });
}

// For the silence of its client, while the job began.
bool isForgotten(int strip, const std::vector<WireAction>& wire, const Acceptance& acceptance, TimePoint first,
                 TimePoint last) {
    return std::ranges::any_of(wire, [&](const WireAction& action) {
        if (!action.isTouchEnd() || action.number != strip || !within(action.at, first, last)) return false;
        const auto next = std::ranges::lower_bound(acceptance.accepted, action.at, {}, &ReceivedDatagram::at);
        return next == acceptance.accepted.begin() || action.at - std::prev(next)->at >= repeatedSilence;
    });
}

SessionSize sizeOf(const JobRun& run) {
    return {.tracks = static_cast<int>(std::max(run.mapAtFirst.size(), run.mapAfter.size())), .strips = run.width};
}

Duration limitOf(const JobRun& run, const Requests& requests) {
    // The width may change under way, and the fewer strips the longer the way.
    const SessionSize size{.tracks = sizeOf(run).tracks, .strips = 8};
    if (run.job == Job::seek) return seekLimit(size);
    if (run.job == Job::scan) return scanLimit(size);
    if (run.job == Job::tap) return tapLimit;
    Duration longest = Duration::zero();
    for (const WalkRequest& walk : requests.walks)
        if (walk.at <= run.first) longest = std::max(longest, walkLimit(walk, size));
    return longest;
}

} // namespace

std::optional<Walk> kindOf(const JobRun& walk, const JobRecord& jobs) {
    for (const auto& [at, line] : jobs.lines) {
        if (!within(at, walk.last, walk.after)) continue;
        if (line.starts_with("✓ Applied faders")) return Walk::faders;
        if (line.starts_with("✓ Applied automation mode")) return Walk::modes;
        if (line.starts_with("✓ Captured auto/pan")) return Walk::range;
    }
    return std::nullopt;
}

Violations checkBeginnings(const Evidence& evidence, const SurfaceActions& wires, const Acceptance& acceptance,
                           const Requests& requests, const Pauses& pauses) {
    Violations violations = evidence.jobs.violations;
    const Waits waits(evidence, wires, acceptance, pauses);
    std::ptrdiff_t walks = 0;
    for (const JobRun& run : evidence.jobs.runs) {
        switch (run.job) {
        case Job::seek:
        case Job::tap:
            if (!seekWasAsked(run, evidence.jobs.runs, requests, pauses))
                violations.push_back("nobody asked for the " + describe(run));
            break;
        case Job::scan:
            if (!scanHadAReason(run, evidence, requests, waits, pauses))
                violations.push_back("no reason for the " + describe(run));
            if (run.transportRan) violations.push_back("the transport ran before the " + describe(run));
            break;
        case Job::walk:
            ++walks;
            if (std::ranges::count_if(requests.walks, [&](const WalkRequest& asked) { return asked.at <= run.first; }) <
                walks)
                violations.push_back("nobody asked for the " + describe(run));
            if (run.transportRan && run.after != TimePoint::max() && !mayPlayFaders(run, evidence, requests))
                violations.push_back("the transport ran before the " + describe(run));
            break;
        }
    }
    return violations;
}

Violations checkHandsRest(const std::vector<JobRun>& runs, const SurfaceActions& wires, const Acceptance& acceptance,
                          const Pauses& pauses) {
    Violations violations;
    for (const JobRun& run : runs) {
        if (run.job != Job::scan && run.job != Job::walk) continue;
        const TimePoint decided = pauses.earliest(run.before);
        for (std::size_t surface = 0; surface < wires.size(); ++surface) {
            std::map<int, TimePoint> touched; // by strip, as it was decided
            for (const WireAction& action : wires[surface]) {
                if (action.at > run.before) break;
                if (action.isTouchEnd()) touched.erase(action.number);
                if (action.at >= decided) continue;
                if (action.kind == WireAction::Kind::fader && run.first - pauses.earliest(action.at) < handRest)
                    violations.push_back("the " + describe(run) + " moves away from " + action.text());
                if (action.isTouch()) touched[action.number] = action.at;
            }
            for (const auto& [strip, since] : touched)
                if (!isLetGo(strip, static_cast<int>(surface), acceptance, decided, run.first) &&
                    !isForgotten(strip, wires[surface], acceptance, decided, run.first))
                    violations.push_back("the " + describe(run) + " begins under the finger on strip " +
                                         std::to_string(strip + 8 * static_cast<int>(surface)) + " since " +
                                         timeText(since));
        }
    }
    return violations;
}

Duration lengthOf(const JobRun& run, const Requests& requests) {
    TimePoint begin = run.first;
    if (run.job == Job::seek || run.job == Job::tap) {
        for (const SeekRequest& seek : requests.seeks)
            if (within(seek.at, run.first, run.last)) begin = std::max(begin, seek.at);
        for (const BankMoveRequest& move : requests.bankMoves)
            if (within(move.at, run.first, run.last)) begin = std::max(begin, move.at);
    }
    return run.last - begin;
}

Violations checkLengths(const JobRecord& jobs, const Requests& requests, const Pauses& pauses) {
    Violations violations;
    for (const JobRun& run : jobs.runs)
        if (lengthOf(run, requests) > limitOf(run, requests) + pauses.within(run.first, run.last))
            violations.push_back("the " + describe(run) + " took " +
                                 std::to_string(inSeconds(lengthOf(run, requests))) + " s, more than " +
                                 std::to_string(inSeconds(limitOf(run, requests))) + " s");
    return violations;
}

} // namespace lumbrine::simulation
