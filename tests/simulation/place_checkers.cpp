// The part of the job checkers that is about where jobs leave the surfaces.
#include "tests/simulation/job_checkers.h"

#include <algorithm>

namespace lumbrine::simulation {

namespace {

using Violations = std::vector<std::string>;

class PlaceChecker {
public:
    PlaceChecker(const Scenario& decided, const Evidence& given, const Requests& asked, const SurfaceActions& wires,
                 const std::vector<WalkedFader>& walkedFaders)
        : scenario(decided), evidence(given), requests(asked), walked(walkedFaders) {
        for (const auto& wire : wires)
            for (const WireAction& action : wire)
                noteModeText(action);
    }

    void check() {
        if (!hostIsPlain()) return;
        for (const JobRun& run : evidence.jobs.runs) {
            if (!nobodyInterfered(run) || !mapIsTrue(run)) continue;
            if (run.job == Job::walk) {
                checkReturn(run);
                checkMembers(run);
            } else if (run.job == Job::seek) {
                checkArrival(run);
            }
        }
    }

    Violations violations;

private:
    // A held AUTO switch puts a mode into a display, and a mode that is set may stay there for a while.
    void noteModeText(const WireAction& action) {
        if (action.kind != WireAction::Kind::edge || action.value == 0) return;
        if (action.number < 8 && action.port == 4) modeTexts.push_back({action.at, action.at + seconds(0.6)});
        if (action.number == 24) modeTexts.push_back({action.at, action.at + seconds(2)});
    }

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
               std::ranges::none_of(requests.bankMoves, meanwhile, &BankMoveRequest::at) &&
               (run.job != Job::seek || std::ranges::none_of(modeTexts, [&run](const Stretch& shown) {
                    return shown.first <= run.last && shown.last >= run.before;
                }));
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

    void checkArrival(const JobRun& seek) {
        // Requests at the very ends of a seek may count for another one.
        const SeekRequest* last = nullptr;
        int targets = 0;
        for (const SeekRequest& request : requests.seeks) {
            if (request.at < seek.before || request.at > seek.after) continue;
            if (request.at >= seek.last) return;
            last = &request;
            ++targets;
        }
        // Under way to many targets, bank buttons that lead elsewhere use up the corrections.
        if (targets > 1 && !scenario.host.bankRightAligns) return;
        if (last == nullptr || !seek.origin || *seek.origin < 0) return;
        const int expected = std::clamp(last->target, 0, lastFullOffset(seek));
        if (seek.hostAfter.offset != expected)
            violations.push_back("the seek that began at " + timeText(seek.first) + " ended at " +
                                 std::to_string(seek.hostAfter.offset) + " instead of " + std::to_string(expected));
    }

    const Scenario& scenario;
    const Evidence& evidence;
    const Requests& requests;
    const std::vector<WalkedFader>& walked;
    std::vector<Stretch> modeTexts;
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
                       const SurfaceActions& wires, const std::vector<WalkedFader>& walked) {
    PlaceChecker checker(scenario, evidence, requests, wires, walked);
    checker.check();
    return checker.violations;
}

} // namespace lumbrine::simulation
