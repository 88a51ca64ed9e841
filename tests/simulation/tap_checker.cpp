// The part of arrival_checker.h that looks at taps of bank and channel buttons.
#include "simulator/bank_rules.h"
#include "tests/simulation/arrival_checker.h"
#include "tests/simulation/host_timeline.h"

#include <algorithm>
#include <array>

namespace lumbrine::simulation {

namespace {

constexpr Duration quick = seconds(1);     // between the taps of one run
constexpr Duration stillness = seconds(3); // before a run

// Where a run of taps may lead: by the host's own buttons, and by a receiver that counts banks itself.
struct Ends {
    int byButtons;
    int byCounting;

    void tap(int button, int tracks, int width, const SimulatorOptions& host) {
        const std::array distances{-1, -width, 1, width};
        byButtons = bankOffsetAfter(static_cast<BankButton>(button), byButtons, tracks, width, host);
        byCounting =
            std::clamp(byCounting + distances[static_cast<std::size_t>(button)], 0, std::max(tracks - width, 0));
    }
};

class TapChecker {
public:
    TapChecker(const Scenario& decided, const Evidence& given, const Acceptance& whoAsked, const Requests& asked)
        : scenario(decided), evidence(given), acceptance(whoAsked), requests(asked) {}

    std::vector<std::string> check() {
        const auto& taps = requests.bankMoves;
        for (std::size_t first = 0; first < taps.size();) {
            std::size_t last = first;
            while (last + 1 < taps.size() && taps[last + 1].at - taps[last].at < quick)
                ++last;
            look(first, last);
            first = last + 1;
        }
        return std::move(violations);
    }

private:
    void look(std::size_t first, std::size_t last) {
        const TimePoint begin = requests.bankMoves[first].at;
        const TimePoint end = endOf(requests.bankMoves[last].at);
        if (!isLeftAlone(begin, end)) return;
        const int tracks = static_cast<int>(listAt(evidence.record, begin).size());
        Ends ends{offsetAt(evidence.record, begin), offsetAt(evidence.record, begin)};
        const int start = ends.byButtons;
        for (std::size_t i = first; i <= last; ++i)
            ends.tap(requests.bankMoves[i].button, tracks, scenario.strips(), scenario.host);
        const int reached = offsetAt(evidence.record, end);
        // The last bank of a host that leaves its rest blank begins further on than the last full one.
        const int lastOffset = lastBankOffset(tracks, scenario.strips(), scenario.host.endOfSession);
        const bool isLast = reached == lastOffset && ends.byCounting == std::max(tracks - scenario.strips(), 0);
        if (reached == ends.byButtons || reached == ends.byCounting || isLast) return;
        violations.push_back(std::to_string(last - first + 1) + " taps from " +
                             std::to_string(inSeconds(begin.time_since_epoch())) + " s on led from " +
                             std::to_string(start) + " to " + std::to_string(reached) + " instead of " +
                             std::to_string(ends.byButtons));
    }

    // The host has acted on the last press, of the last seek that the taps became.
    TimePoint endOf(TimePoint lastTap) const {
        TimePoint end = lastTap + quick;
        for (const JobRun& run : evidence.jobs.runs)
            if (run.job == Job::seek && run.before <= lastTap + quick && run.after >= lastTap &&
                run.after != TimePoint::max())
                end = std::max(end, run.after);
        return end + scenario.host.latency + seconds(0.1);
    }

    bool isLeftAlone(TimePoint begin, TimePoint end) const {
        const TimePoint before = begin - stillness;
        const auto isNear = [&](TimePoint at) { return before <= at && at <= end; };
        const auto taps = std::ranges::count_if(requests.bankMoves, isNear, &BankMoveRequest::at);
        const auto ofRun = std::ranges::count_if(
            requests.bankMoves, [&](TimePoint at) { return begin <= at && at <= end; }, &BankMoveRequest::at);
        return taps == ofRun && end < evidence.jobs.ended &&
               std::ranges::none_of(requests.seeks, isNear, &SeekRequest::at) &&
               std::ranges::none_of(requests.scans, isNear) &&
               std::ranges::none_of(evidence.record.lists, isNear, &TrackList::at) &&
               std::ranges::none_of(acceptance.changes, isNear, &OwnerChange::at) &&
               std::ranges::none_of(
                   evidence.record.banks, [&](const BankChange& bank) { return !bank.pressed && isNear(bank.at); }) &&
               std::ranges::none_of(
                   evidence.disturbances,
                   [&](const Stretch& trouble) { return trouble.first <= end && trouble.last >= before; }) &&
               std::ranges::none_of(
                   evidence.jobs.runs,
                   [&](const JobRun& run) {
                       const bool isOfTaps = run.job == Job::seek && run.before >= begin;
                       return !isOfTaps && run.before <= end && run.after >= before;
                   });
    }

    const Scenario& scenario;
    const Evidence& evidence;
    const Acceptance& acceptance;
    const Requests& requests;
    std::vector<std::string> violations;
};

} // namespace

std::vector<std::string> checkTaps(const Scenario& scenario, const Evidence& evidence, const Acceptance& acceptance,
                                   const Requests& requests) {
    if (scenario.host.dropOnePressIn > 0) return {};
    return TapChecker(scenario, evidence, acceptance, requests).check();
}

} // namespace lumbrine::simulation
