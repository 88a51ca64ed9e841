#include "tests/simulation/job_checkers.h"

#include "tests/simulation/time_limits.h"

#include <algorithm>

namespace lumbrine::simulation {

namespace {

using Violations = std::vector<std::string>;
using Walk = WalkRequest::Kind;

constexpr Duration answerPeriod = seconds(0.25); // the full state is sent at most once in this time

std::string describe(const JobRun& run) {
    return nameOf(run.job) + " that began at " + std::to_string(inSeconds(run.first.time_since_epoch())) + " s";
}

bool within(TimePoint at, TimePoint first, TimePoint last) {
    return first <= at && at <= last;
}

bool seekWasAsked(const JobRun& run, const Requests& requests, const Pauses& pauses) {
    const TimePoint first = pauses.earliest(run.before);
    const auto atItsBeginning = [&](const auto& request) { return within(request.at, first, run.first); };
    return std::ranges::any_of(requests.seeks, atItsBeginning) ||
           std::ranges::any_of(requests.bankMoves, atItsBeginning);
}

// The line that announces a scan is written at its beginning, so that is known exactly.
bool scanHadAReason(const JobRun& scan, const Evidence& evidence, const Requests& requests, const Pauses& pauses) {
    const auto isThen = [&](TimePoint at) { return pauses.explain(at, scan.first); };
    const auto isAnsweredThen = [&](TimePoint hello) { // at once, or when the last answer is long enough ago
        return hello <= scan.first && scan.first - hello <= answerPeriod + pauses.within(hello, scan.first);
    };
    if (std::ranges::any_of(requests.scans, isThen) || std::ranges::any_of(requests.hellos, isAnsweredThen))
        return true;
    const TimePoint lastTick = scan.first - (scan.first - evidence.begun) % seconds(0.4);
    if (lastTick >= pauses.earliest(scan.first)) return true;
    return std::ranges::any_of(evidence.jobs.runs, [&](const JobRun& other) {
        return other.job == Job::scan && pauses.mayTake(other.after, seconds(2), scan.first);
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

Violations checkBeginnings(const Evidence& evidence, const Requests& requests, const Pauses& pauses) {
    Violations violations = evidence.jobs.violations;
    std::ptrdiff_t walks = 0;
    for (const JobRun& run : evidence.jobs.runs) {
        switch (run.job) {
        case Job::seek:
            if (!seekWasAsked(run, requests, pauses)) violations.push_back("nobody asked for the " + describe(run));
            break;
        case Job::scan:
            if (!scanHadAReason(run, evidence, requests, pauses))
                violations.push_back("no reason for the " + describe(run));
            if (run.transportRan) violations.push_back("the transport ran before the " + describe(run));
            break;
        case Job::walk:
            ++walks;
            if (std::ranges::count_if(requests.walks, [&](const WalkRequest& asked) { return asked.at <= run.first; }) <
                walks)
                violations.push_back("nobody asked for the " + describe(run));
            if (run.transportRan && run.after != TimePoint::max() && kindOf(run, evidence.jobs) != Walk::faders)
                violations.push_back("the transport ran before the " + describe(run));
            break;
        }
    }
    return violations;
}

Duration lengthOf(const JobRun& run, const Requests& requests) {
    TimePoint begin = run.first;
    if (run.job == Job::seek) {
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
