// The part of the button checkers that is about AUTO switches.
#include "tests/simulation/button_checkers.h"
#include "tests/simulation/closings.h"
#include "tests/simulation/time_limits.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

namespace lumbrine::simulation {

namespace {

using Kind = WireAction::Kind;
using Violations = std::vector<std::string>;

constexpr Duration asking = seconds(0.15);
constexpr Duration settling = seconds(0.05); // before the mode button
constexpr Duration pressing = seconds(0.06);
constexpr Duration setting = settling + pressing + asking;
constexpr Duration givingUp = settling + asking; // its track has gone meanwhile

// One AUTO switch held, and the mode button pressed meanwhile.
struct Probe {
    TimePoint begin;
    TimePoint end;
    int strip; // 0-15
    std::optional<int> modePort;
    bool mayBeQuestion = false;
    bool mayBeGivenUp = false;
    bool mayBeCutShort = false; // another device had taken control

    std::string text() const {
        return "AUTO of strip " + std::to_string(strip) + " at " + std::to_string(inSeconds(begin.time_since_epoch())) +
               " s" + (modePort ? " with mode button " + std::to_string(*modePort) : "");
    }
};

class ProbeReader {
public:
    ProbeReader(const std::vector<WireAction>& actions, int surfaceNumber, const Acceptance& whoAsked,
                const Pauses& ofThreads)
        : wire(actions), surface(surfaceNumber), acceptance(whoAsked), pauses(ofThreads) {}

    void read(std::vector<Probe>& probes, TimePoint end, Violations& violations) {
        for (const WireAction& action : wire) {
            const bool mode = action.kind == Kind::edge && action.number == modeZone;
            const bool hold = action.kind == Kind::edge && action.number < 8 && action.port == autoPort;
            if (hold && action.value == 1) {
                if (open) violations.push_back("two AUTO switches at once: " + open->text());
                open =
                    Probe{.begin = action.at, .end = action.at, .strip = action.number + 8 * surface, .modePort = {}};
            } else if (hold) {
                close(action, probes, violations);
            } else if (mode && !modeFits(action)) {
                violations.push_back("a mode button out of place: " + action.text());
            }
        }
        if (open && end - open->begin > setting + pauses.within(open->begin, end))
            violations.push_back("held for ever: " + open->text());
    }

private:
    bool modeFits(const WireAction& action) {
        if (!open) return false;
        const auto isThen = [&](Duration after) { return pauses.mayTake(open->begin, after, action.at); };
        if (action.value == 0) return open->modePort == action.port && isThen(settling + pressing);
        if (open->modePort || !isThen(settling)) return false;
        open->modePort = action.port;
        return true;
    }

    void close(const WireAction& action, std::vector<Probe>& probes, Violations& violations) {
        if (!open || open->strip != action.number + 8 * surface)
            return violations.push_back("an AUTO switch let go that was not held: " + action.text());
        open->end = action.at;
        open->mayBeQuestion = !open->modePort && pauses.mayTake(open->begin, asking, action.at);
        open->mayBeGivenUp = !open->modePort && pauses.mayTake(open->begin, givingUp, action.at);
        open->mayBeCutShort = isCutShort(action.at);
        const bool held = open->modePort ? pauses.mayTake(open->begin, setting, action.at)
                                         : open->mayBeQuestion || open->mayBeGivenUp;
        if (!held && !open->mayBeCutShort) violations.push_back("not held for its time: " + open->text());
        probes.push_back(*open);
        open.reset();
    }

    // Once the button is up, if it was pressed.
    bool isCutShort(TimePoint up) const {
        const Duration whole = open->modePort ? setting : givingUp;
        return up - open->begin <= whole + pauses.within(open->begin, up) &&
               std::ranges::any_of(acceptance.changes, [&](const OwnerChange& change) {
                   return pauses.earliest(open->begin) <= change.at && change.at <= up;
               });
    }

    const std::vector<WireAction>& wire;
    const int surface;
    const Acceptance& acceptance;
    const Pauses& pauses;
    std::optional<Probe> open;
};

class ProbeChecker {
public:
    ProbeChecker(const SurfaceActions& surfaceWires, const JobRecord& jobRecord, const Requests& asked,
                 const Pauses& ofThreads)
        : wires(surfaceWires), jobs(jobRecord), requests(asked), pauses(ofThreads), closings(jobs.runs, ofThreads),
          open(asked.autoModes) {
        std::erase_if(open, [&](const AutoModeRequest& request) { return request.strip >= 8 * std::ssize(wires); });
    }

    void check(const Probe& probe, Violations& violations) {
        if (probe.modePort) {
            if (!isAskedFor(probe)) violations.push_back("nobody asked for " + probe.text());
            return;
        }
        if (duringWalk(probe)) return;
        if (probe.mayBeGivenUp) {
            if (!takeRequest(probe) && !probe.mayBeQuestion)
                violations.push_back("not held for its time: " + probe.text());
            return;
        }
        if (!probe.mayBeQuestion) {
            if (probe.mayBeCutShort && !takeRequest(probe)) violations.push_back("nobody asked for " + probe.text());
            return;
        }
        const TimePoint decided = pauses.earliest(probe.begin);
        const auto isThen = [&](const auto& stretch) { return stretch.first < decided && probe.begin < stretch.last; };
        const bool jobRuns = std::ranges::any_of(jobs.runs, isThen);
        if (jobRuns) violations.push_back("asked while the banks are moved: " + probe.text());
        if (std::ranges::any_of(jobs.transport, isThen))
            violations.push_back("asked while the transport runs: " + probe.text());
        if (const auto hand = handOn(decided, probe.begin))
            violations.push_back("asked while a hand is on a fader: " + probe.text() + ", " + hand->text());
    }

private:
    // A walk may set what somebody asked for just before it, and whose turn comes after it.
    bool isAskedFor(const Probe& probe) {
        const std::pair what(probe.strip, *probe.modePort);
        if (takeRequest(probe)) {
            if (ofModeWalk(probe)) maybeOfWalks.push_back(what);
            return true;
        }
        if (ofModeWalk(probe)) return true;
        const auto still = std::ranges::find(maybeOfWalks, what);
        if (still == maybeOfWalks.end()) return false;
        maybeOfWalks.erase(still);
        return true;
    }

    // The oldest that still may be set. One that met a job is set on whichever strip shows its track then.
    bool takeRequest(const Probe& probe) {
        const auto request = std::ranges::find_if(open, [&](const AutoModeRequest& asked) {
            return asked.at <= probe.begin &&
                   probe.begin <= asked.at + modeTime + pauses.within(asked.at, probe.begin) &&
                   (asked.strip == probe.strip || closings.mayMeet(asked.at) ||
                    closings.mayHaveBegun(asked.at, probe.begin)) &&
                   (!probe.modePort || asked.modePort == *probe.modePort);
        });
        if (request == open.end()) return false;
        open.erase(request);
        return true;
    }

    bool duringWalk(const Probe& probe) const {
        return std::ranges::any_of(
            jobs.runs, [&](const JobRun& run) { return run.job == Job::walk && run.mayHaveBeenAt(probe.begin); });
    }

    bool ofModeWalk(const Probe& probe) const {
        return duringWalk(probe) && std::ranges::any_of(requests.walks, [&](const WalkRequest& walk) {
                   return walk.at <= probe.begin && walk.modePort == *probe.modePort;
               });
    }

    // A client's finger that is on a fader, or a move less than 1.5 s ago.
    std::optional<WireAction> handOn(TimePoint decided, TimePoint begin) const {
        for (const std::vector<WireAction>& wire : wires) {
            std::map<int, WireAction> touched; // by strip
            for (const WireAction& action : wire) {
                if (action.at > begin) break;
                if (action.isTouchEnd()) touched.erase(action.number);
                if (action.at >= decided) continue;
                if (action.kind == Kind::fader && begin - pauses.earliest(action.at) < handRest) return action;
                if (action.isTouch()) touched.emplace(action.number, action);
            }
            if (!touched.empty()) return touched.begin()->second;
        }
        return std::nullopt;
    }

    const SurfaceActions& wires;
    const JobRecord& jobs;
    const Requests& requests;
    const Pauses& pauses;
    const Closings closings;
    std::vector<AutoModeRequest> open;
    std::vector<std::pair<int, int>> maybeOfWalks; // requests taken that a walk explains as well, by strip and mode
};

} // namespace

Violations checkAutomation(const SurfaceActions& wires, const JobRecord& jobs, const Requests& requests,
                           const Acceptance& acceptance, const Pauses& pauses) {
    Violations violations;
    std::vector<Probe> probes;
    for (std::size_t surface = 0; surface < wires.size(); ++surface)
        ProbeReader(wires[surface], static_cast<int>(surface), acceptance, pauses).read(probes, jobs.ended, violations);
    std::ranges::sort(probes, {}, &Probe::begin);
    ProbeChecker checker(wires, jobs, requests, pauses);
    for (std::size_t i = 0; i < probes.size(); ++i) {
        if (i > 0 && probes[i].begin < probes[i - 1].end)
            violations.push_back("two AUTO switches at once: " + probes[i].text());
        checker.check(probes[i], violations);
    }
    return violations;
}

} // namespace lumbrine::simulation
