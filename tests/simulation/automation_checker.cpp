// The part of the button checkers that is about AUTO switches.
#include "tests/simulation/button_checkers.h"

#include <algorithm>
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

// One AUTO switch held, and the mode button pressed meanwhile.
struct Probe {
    TimePoint begin;
    TimePoint end;
    int strip; // 0-15
    std::optional<int> modePort;

    std::string text() const {
        return "AUTO of strip " + std::to_string(strip) + " at " + std::to_string(inSeconds(begin.time_since_epoch())) +
               " s" + (modePort ? " with mode button " + std::to_string(*modePort) : "");
    }
};

class ProbeReader {
public:
    ProbeReader(const std::vector<WireAction>& actions, int surfaceNumber, const Pauses& ofThreads)
        : wire(actions), surface(surfaceNumber), pauses(ofThreads) {}

    void read(std::vector<Probe>& probes, TimePoint end, Violations& violations) {
        for (const WireAction& action : wire) {
            const bool mode = action.kind == Kind::edge && action.number == modeZone;
            const bool hold = action.kind == Kind::edge && action.number < 8 && action.port == autoPort;
            if (hold && action.value == 1) {
                if (open) violations.push_back("two AUTO switches at once: " + open->text());
                open = Probe{action.at, action.at, action.number + 8 * surface, std::nullopt};
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
        if (!pauses.mayTake(open->begin, open->modePort ? setting : asking, action.at))
            violations.push_back("not held for its time: " + open->text());
        probes.push_back(*open);
        open.reset();
    }

    const std::vector<WireAction>& wire;
    const int surface;
    const Pauses& pauses;
    std::optional<Probe> open;
};

class ProbeChecker {
public:
    ProbeChecker(const JobRecord& jobRecord, const Requests& asked, const Acceptance& whoAsked, const Pauses& ofThreads)
        : jobs(jobRecord), requests(asked), acceptance(whoAsked), pauses(ofThreads), open(asked.autoModes) {}

    void check(const Probe& probe, Violations& violations) {
        if (probe.modePort) {
            if (!isAskedFor(probe)) violations.push_back("nobody asked for " + probe.text());
            return;
        }
        if (duringWalk(probe)) return;
        const TimePoint decided = pauses.earliest(probe.begin);
        const auto isThen = [&](const auto& stretch) { return stretch.first < decided && probe.begin < stretch.last; };
        const bool jobRuns = std::ranges::any_of(jobs.runs, isThen);
        if (jobRuns) violations.push_back("asked while the banks are moved: " + probe.text());
        if (std::ranges::any_of(jobs.transport, isThen))
            violations.push_back("asked while the transport runs: " + probe.text());
        if (isHeld(probe)) violations.push_back("asked while the fader is held: " + probe.text());
    }

    // A mode that was asked for on a strip of those surfaces and never set.
    void checkRest(int strips, Violations& violations) const {
        for (const AutoModeRequest& request : open)
            if (request.strip < strips)
                violations.push_back("mode " + std::to_string(request.modePort) + " of strip " +
                                     std::to_string(request.strip) + ", asked for at " +
                                     std::to_string(inSeconds(request.at.time_since_epoch())) + " s, was never set");
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

    // Requests are carried out in their order, so the first that fits has to be the oldest of those surfaces.
    bool takeRequest(const Probe& probe) {
        const auto request = std::ranges::find_if(open, [&](const AutoModeRequest& asked) {
            return asked.at <= probe.begin && asked.strip == probe.strip && asked.modePort == *probe.modePort;
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

    // By a device that has been in control for a while and was heard all the time; its hold is forgotten otherwise.
    bool isHeld(const Probe& probe) const {
        const Duration tick = seconds(0.4);
        bool held = false;
        TimePoint lastHeard;
        TimePoint changed = distantPast;
        const TimePoint decided = pauses.earliest(probe.begin);
        for (const OwnerChange& change : acceptance.changes)
            if (change.at <= probe.begin) changed = change.at;
        for (const ReceivedDatagram& datagram : acceptance.accepted) {
            if (datagram.at > probe.begin) break; // what comes at the same moment may have come before
            if (datagram.at - lastHeard > seconds(4.5)) held = false;
            lastHeard = datagram.at;
            const Bytes& bytes = datagram.bytes;
            if (bytes.size() < 3 || bytes[0] != 1 || bytes[2] != probe.strip) continue;
            // The one who takes the datagram may stand still before anybody knows of the touch.
            const bool isKnown = decided - datagram.at > pauses.within(datagram.at, decided);
            if (bytes[1] == 0x02 && datagram.at < decided && isKnown) held = datagram.at - changed > 2 * tick;
            if (bytes[1] == 0x03) held = false;
        }
        return held && probe.begin - lastHeard < seconds(4.5);
    }

    const JobRecord& jobs;
    const Requests& requests;
    const Acceptance& acceptance;
    const Pauses& pauses;
    std::vector<AutoModeRequest> open;
    std::vector<std::pair<int, int>> maybeOfWalks; // requests taken that a walk explains as well, by strip and mode
};

ProbeChecker checkProbes(const SurfaceActions& wires, const JobRecord& jobs, const Requests& requests,
                         const Acceptance& acceptance, const Pauses& pauses, Violations& violations) {
    std::vector<Probe> probes;
    for (std::size_t surface = 0; surface < wires.size(); ++surface)
        ProbeReader(wires[surface], static_cast<int>(surface), pauses).read(probes, jobs.ended, violations);
    std::ranges::sort(probes, {}, &Probe::begin);
    ProbeChecker checker(jobs, requests, acceptance, pauses);
    for (std::size_t i = 0; i < probes.size(); ++i) {
        if (i > 0 && probes[i].begin < probes[i - 1].end)
            violations.push_back("two AUTO switches at once: " + probes[i].text());
        checker.check(probes[i], violations);
    }
    return checker;
}

} // namespace

Violations checkAutomation(const SurfaceActions& wires, const JobRecord& jobs, const Requests& requests,
                           const Acceptance& acceptance, const Pauses& pauses) {
    Violations violations;
    checkProbes(wires, jobs, requests, acceptance, pauses, violations);
    return violations;
}

Violations checkModesAreSet(const SurfaceActions& wires, const JobRecord& jobs, const Requests& requests,
                            const Acceptance& acceptance, const Pauses& pauses) {
    Violations ofProbes;
    const ProbeChecker checker = checkProbes(wires, jobs, requests, acceptance, pauses, ofProbes);
    Violations violations;
    checker.checkRest(8 * static_cast<int>(wires.size()), violations);
    return violations;
}

} // namespace lumbrine::simulation
