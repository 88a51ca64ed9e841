// The part of the job checkers that is about where jobs leave the surfaces.
#include "tests/simulation/job_checkers.h"

#include <algorithm>

namespace lumbrine::simulation {

namespace {

using Violations = std::vector<std::string>;

class PlaceChecker {
public:
    PlaceChecker(const Scenario& decided, const Evidence& given, const Requests& asked,
                 const std::vector<WalkedFader>& walkedFaders)
        : scenario(decided), evidence(given), requests(asked), walked(walkedFaders) {}

    void check() {
        if (!hostIsPlain()) return;
        for (const JobRun& run : evidence.jobs.runs) {
            if (!nobodyInterfered(run) || !mapIsTrue(run)) continue;
            if (run.job != Job::walk) continue;
            checkReturn(run);
            checkMembers(run);
        }
    }

    Violations violations;

private:
    // Presses count, and bank buttons lead where they are expected to, at least those that go back.
    bool hostIsPlain() const {
        const SimulatorOptions& host = scenario.host;
        return scenario.hostIsQuick() && host.dropOnePressIn == 0 && host.restlessUserEvery == Duration::zero() &&
               host.bankLeftAligns && host.modeShown <= seconds(1);
    }

    bool nobodyInterfered(const JobRun& run) const {
        const TimePoint begin = run.before - seconds(0.5);
        const auto meanwhile = [&](TimePoint at) { return begin <= at && at <= run.after; };
        const auto overlaps = [&](const Stretch& stretch) {
            return stretch.first <= run.after && stretch.last >= begin;
        };
        return run.after != TimePoint::max() && std::ranges::none_of(evidence.disturbances, overlaps) &&
               std::ranges::none_of(requests.bankMoves, meanwhile, &BankMoveRequest::at);
    }

    bool mapIsTrue(const JobRun& run) const {
        return run.mapAtFirst == run.hostAtFirst.names && run.width == run.hostAtFirst.width &&
               everyOffsetLooksDifferent(run.hostAtFirst, scenario.host);
    }

    static int lastFullOffset(const JobRun& run) {
        return std::max(static_cast<int>(run.mapAtFirst.size()) - run.width, 0);
    }

    void checkReturn(const JobRun& walk) {
        if (!walk.origin || *walk.origin < 0) return;
        // Modes that stay in displays use up attempts, and so do bank buttons that lead elsewhere.
        const bool modesStay = scenario.host.modeShown > Duration::zero() && !scenario.host.bankRightAligns;
        if (modesStay && kindOf(walk, evidence.jobs) == WalkRequest::Kind::modes) return;
        const int expected = std::min(*walk.origin, lastFullOffset(walk));
        if (walk.hostAfter.offset != expected)
            violations.push_back("the walk that began at " + timeText(walk.first) + " left the surfaces at " +
                                 std::to_string(walk.hostAfter.offset) + " instead of " + std::to_string(expected));
    }

    void checkMembers(const JobRun& walk) {
        for (const WalkedFader& fader : walked) {
            if (!walk.wasAt(fader.at)) continue;
            const auto next =
                std::ranges::upper_bound(evidence.jobs.hostOffsets, fader.at, {}, &std::pair<TimePoint, int>::first);
            // Before the first look in this walk it is not known where the host was.
            if (next == evidence.jobs.hostOffsets.begin() || std::prev(next)->first < walk.first) continue;
            const int member = std::prev(next)->second + fader.strip;
            const bool asked = std::ranges::any_of(requests.walks, [&](const WalkRequest& request) {
                return request.at <= fader.at && std::ranges::count(request.faders, std::pair(member, fader.value)) > 0;
            });
            if (!asked)
                violations.push_back("a walk moved track " + std::to_string(member) + " at " + timeText(fader.at) +
                                     ", which is not its member");
        }
    }

    const Scenario& scenario;
    const Evidence& evidence;
    const Requests& requests;
    const std::vector<WalkedFader>& walked;
};

} // namespace

Violations checkPositions(const Evidence& evidence) {
    Violations violations;
    const std::vector<PositionSample>& positions = evidence.jobs.positions;
    for (std::size_t i = 1; i < positions.size(); ++i) {
        const PositionSample& before = positions[i - 1];
        const PositionSample& now = positions[i];
        const bool hasBeenShown =
            before.host == now.host && now.at - before.at < seconds(0.5) &&
            std::ranges::none_of(
                evidence.disturbances,
                [&](const Stretch& disturbed) { return disturbed.first <= now.at && disturbed.last >= before.at; });
        if (hasBeenShown && now.known != now.host)
            violations.push_back("taken to be at " + std::to_string(now.known) + " instead of " +
                                 std::to_string(now.host) + " at " + timeText(now.at));
    }
    return violations;
}

Violations checkPlaces(const Scenario& scenario, const Evidence& evidence, const Requests& requests,
                       const std::vector<WalkedFader>& walked) {
    PlaceChecker checker(scenario, evidence, requests, walked);
    checker.check();
    return checker.violations;
}

} // namespace lumbrine::simulation
