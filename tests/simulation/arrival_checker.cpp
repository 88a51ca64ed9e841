#include "tests/simulation/arrival_checker.h"

#include "tests/simulation/host_timeline.h"
#include "tests/simulation/time_limits.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace lumbrine::simulation {

namespace {

constexpr Duration toBegin = seconds(1.2); // a command is carried out within a second
constexpr Duration modeIsShown = seconds(3.5);
constexpr Duration runOfDrops = seconds(10); // which is logged once
constexpr Duration silence = seconds(2);     // after which Pro Tools counts as gone
constexpr std::string_view dropped = "✗ Dropped bank move";

class ArrivalChecker {
public:
    ArrivalChecker(const Scenario& decided, const Evidence& given, const ShownTracks& shownTracks,
                   const Acceptance& whoAsked, const Requests& asked, const SurfaceActions& wires)
        : scenario(decided), evidence(given), shown(shownTracks), acceptance(whoAsked), requests(asked) {
        for (const auto& wire : wires)
            for (const WireAction& action : wire)
                if (action.kind == WireAction::Kind::edge && action.value == 1 &&
                    (action.number == modeZone || (action.number < 8 && action.port == autoSwitch)))
                    modeTexts.push_back(action.at);
        std::ranges::sort(modeTexts);
    }

    std::vector<LostSeek> check() {
        for (const SeekRequest& seek : requests.seeks)
            look(seek);
        return std::move(lost);
    }

private:
    static constexpr int autoSwitch = 4;

    void look(const SeekRequest& seek) {
        const auto datagram = std::ranges::find(acceptance.accepted, seek.at, &ReceivedDatagram::at);
        if (datagram == acceptance.accepted.end()) return;
        const ShownTracks::Tracks target = shown.inRow(datagram->sender, seek.target, seek.at);
        if (target.size() != 1 || !isAdmitted(seek.at)) return;
        const JobRun* run = runOf(seek.at);
        const SessionSize size{.tracks = static_cast<int>(listAt(evidence.record, seek.at).size()), .strips = 8};
        const TimePoint end = (run == nullptr ? seek.at + toBegin : run->after) + reaction();
        if (run != nullptr && run->after > seek.at + toBegin + seekLimit(size)) return; // the lengths' checker
        if (!isLeftAlone(seek.at, end) || hasArrived(target.front(), end) || isGivenUp(seek, run, end)) return;
        lost.push_back({difficulty(seek, datagram->sender, run, end),
                        "the seek to row " + std::to_string(seek.target) + " asked for at " +
                            std::to_string(inSeconds(seek.at.time_since_epoch())) + " s " +
                            (run == nullptr ? "did not begin" : "ended") + " with the bank at " +
                            std::to_string(offsetAt(evidence.record, end)) + ", without track " +
                            std::to_string(target.front())});
    }

    // The host has acted on the last press.
    Duration reaction() const { return scenario.host.latency + seconds(0.1); }

    bool isAdmitted(TimePoint at) const {
        return std::ranges::none_of(evidence.jobs.runs,
                                    [&](const JobRun& run) { return run.job != Job::seek && run.mayHaveBeenAt(at); });
    }

    // The seek that was under way then, or the next one that began in time.
    const JobRun* runOf(TimePoint at) const {
        const JobRun* found = nullptr;
        for (const JobRun& run : evidence.jobs.runs)
            if (run.job == Job::seek && run.after >= at && run.before <= at + toBegin &&
                (found == nullptr || run.before < found->before))
                found = &run;
        return found;
    }

    bool isLeftAlone(TimePoint begin, TimePoint end) const {
        const TimePoint before = begin - seconds(3);
        const auto isNear = [&](TimePoint at) { return before <= at && at <= end; };
        const auto isLater = [&](TimePoint at) { return begin < at && at <= end; };
        return std::ranges::count_if(requests.seeks,
                                     [&](const SeekRequest& other) { return begin <= other.at && other.at <= end; }) ==
                   1 &&
               std::ranges::none_of(requests.bankMoves, isNear, &BankMoveRequest::at) &&
               std::ranges::none_of(requests.scans, isLater) &&
               std::ranges::none_of(evidence.record.lists, isNear, &TrackList::at) &&
               std::ranges::none_of(acceptance.changes, isNear, &OwnerChange::at) &&
               std::ranges::none_of(evidence.record.banks,
                                    [&](const BankChange& bank) { return !bank.pressed && isNear(bank.at); }) &&
               std::ranges::none_of(
                   evidence.disturbances,
                   [&](const Stretch& trouble) { return trouble.first <= end && trouble.last >= before; }) &&
               std::ranges::none_of(evidence.jobs.runs, [&](const JobRun& run) {
                   return run.job != Job::seek && run.before <= end && run.after >= begin;
               });
    }

    // Its map is not the session's, or may not be, so it cannot know where the surfaces are, and tells.
    bool isGivenUp(const SeekRequest& seek, const JobRun* run, TimePoint end) const {
        const bool mapIsWrong = run != nullptr && !isMapOf(run->hostAtFirst, run->mapAtFirst);
        return (mapIsWrong || mapMayBeWrong(seek.at)) && std::ranges::any_of(evidence.lines, [&](const auto& line) {
                   return line.first >= seek.at - runOfDrops && line.first <= end && line.second.starts_with(dropped);
               });
    }

    // What happened during the last scan may have misled it, until another one says the same. So may a machine that
    // slept, to which Pro Tools was silent.
    bool mapMayBeWrong(TimePoint at) const {
        const JobRun* last = nullptr;
        for (const JobRun& run : evidence.jobs.runs)
            if (run.job == Job::scan && run.after <= at) last = &run;
        if (last == nullptr) return false;
        const auto overlaps = [&](TimePoint from, TimePoint until) {
            return from <= last->after && until >= last->before;
        };
        return std::ranges::any_of(evidence.record.lists,
                                   [&](const TrackList& list) { return last->mayHaveBeenAt(list.at); }) ||
               std::ranges::any_of(evidence.disturbances,
                                   [&](const Stretch& trouble) { return overlaps(trouble.first, trouble.last); }) ||
               std::ranges::any_of(evidence.pauses, [&](const Pause& pause) {
                   return pause.until - pause.from > silence && overlaps(pause.from, pause.until);
               });
    }

    bool hasArrived(int track, TimePoint at) const {
        const std::vector<int>& list = listAt(evidence.record, at);
        const auto place = static_cast<int>(std::ranges::find(list, track) - list.begin());
        const int count = static_cast<int>(list.size());
        if (place == count) return true; // it is gone
        const int lastFull = std::max(count - scenario.strips(), 0);
        const int offset = offsetAt(evidence.record, at);
        return offset == place || (place > lastFull && offset == lastFull);
    }

    std::string difficulty(const SeekRequest& seek, const std::string& client, const JobRun* run, TimePoint end) const {
        const SimulatorOptions& host = scenario.host;
        const auto sinceStart = std::ranges::count_if(requests.seeks, [&](const SeekRequest& other) {
            return run != nullptr && run->before <= other.at && other.at <= seek.at;
        });
        const auto mode = std::ranges::lower_bound(modeTexts, seek.at - modeIsShown);
        if (host.dropOnePressIn > 0) return "arrivals-with-lost-presses";
        if (host.restlessUserEvery > Duration::zero()) return "arrivals-beside-a-user";
        if (!scenario.hostIsQuick()) return "arrivals-on-slow-hosts";
        if (!host.bankLeftAligns || !host.bankRightAligns) return "arrivals-on-unaligned-banks";
        if (mode != modeTexts.end() && *mode <= end) return "arrivals-beside-probes";
        if (shown.byPosition(client, 0, seek.at).empty()) return "arrivals-from-anywhere";
        if (sinceStart > 1) return "arrivals-of-the-latest";
        return "arrivals";
    }

    const Scenario& scenario;
    const Evidence& evidence;
    const ShownTracks& shown;
    const Acceptance& acceptance;
    const Requests& requests;
    std::vector<TimePoint> modeTexts; // when switches were pressed that put one into a display
    std::vector<LostSeek> lost;
};

} // namespace

std::vector<LostSeek> checkArrivals(const Scenario& scenario, const Evidence& evidence, const ShownTracks& shown,
                                    const Acceptance& acceptance, const Requests& requests,
                                    const SurfaceActions& wires) {
    return ArrivalChecker(scenario, evidence, shown, acceptance, requests, wires).check();
}

std::vector<std::string> checkScanRepeats(const Evidence& evidence, const Requests& requests) {
    std::vector<std::string> violations;
    const JobRun* last = nullptr;
    int repeats = 0;
    for (const JobRun& run : evidence.jobs.runs) {
        if (run.job != Job::scan || run.after == TimePoint::max()) continue;
        const auto isBetween = [&](TimePoint at) { return last->before <= at && at <= run.after; };
        const bool isRepeat = last != nullptr && last->mapAfter == run.mapAfter && last->width == run.width &&
                              std::ranges::none_of(requests.scans, isBetween) &&
                              std::ranges::none_of(evidence.record.lists, isBetween, &TrackList::at) &&
                              std::ranges::none_of(evidence.disturbances, [&](const Stretch& trouble) {
                                  return trouble.first <= run.after && trouble.last >= last->before;
                              });
        repeats = isRepeat ? repeats + 1 : 0;
        if (repeats > 1)
            violations.push_back("the scan that began at " + std::to_string(inSeconds(run.first.time_since_epoch())) +
                                 " s was the " + std::to_string(repeats + 1) + "th with the same map and no reason");
        last = &run;
    }
    return violations;
}

} // namespace lumbrine::simulation
