#include "tests/simulation/deadline_checkers.h"

#include "tests/simulation/closings.h"
#include "tests/simulation/time_limits.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>

namespace lumbrine::simulation {

namespace {

using Kind = WireAction::Kind;
using Violations = std::vector<std::string>;

constexpr Duration freeTimeLimit = seconds(1);
constexpr Duration settingTime = seconds(0.26); // of a mode
constexpr Duration grace = seconds(0.1);        // for what was begun when its time was over

// A mode button pressed while an AUTO switch is down.
struct Setting {
    TimePoint begin; // of the AUTO switch
    TimePoint pressed;
    TimePoint end = TimePoint::max();
    int strip = 0; // 0-15
    int modePort = 0;

    std::string text() const {
        return "mode " + std::to_string(modePort) + " of strip " + std::to_string(strip) + ", set at " +
               timeText(pressed);
    }
};

std::vector<Setting> settingsOn(const std::vector<WireAction>& wire, int surface) {
    std::vector<Setting> settings;
    std::map<int, TimePoint> held;   // by strip
    std::map<int, std::size_t> open; // the setting under that AUTO switch
    for (const WireAction& action : wire) {
        if (action.kind != Kind::edge) continue;
        if (action.number < 8 && action.port == autoPort && action.value == 1) held[action.number] = action.at;
        if (action.number < 8 && action.port == autoPort && action.value == 0) {
            if (open.contains(action.number)) settings[open[action.number]].end = action.at;
            open.erase(action.number);
            held.erase(action.number);
        }
        if (action.number != modeZone || action.value == 0 || held.empty()) continue;
        const auto& [strip, since] = *held.begin();
        open[strip] = settings.size();
        settings.push_back({since, action.at, TimePoint::max(), strip + 8 * surface, action.port});
    }
    return settings;
}

class ModeChecker {
public:
    ModeChecker(const SurfaceActions& wires, const JobRecord& jobRecord, const Requests& asked,
                const Acceptance& whoAsked, const std::vector<Stretch>& disturbed, const Pauses& ofThreads,
                const NameGaps& ofNames)
        : jobs(jobRecord), requests(asked), acceptance(whoAsked), disturbances(disturbed), pauses(ofThreads),
          gaps(ofNames), closings(jobs.runs, pauses), open(asked.autoModes) {
        for (std::size_t surface = 0; surface < wires.size(); ++surface)
            for (const Setting& setting : settingsOn(wires[surface], static_cast<int>(surface)))
                settings.push_back(setting);
        std::ranges::sort(settings, {}, &Setting::begin);
        strips = 8 * static_cast<int>(wires.size());
    }

    void check() {
        for (const Setting& setting : settings)
            if (!duringWalk(setting.pressed)) checkSetting(setting);
        for (const AutoModeRequest& request : open)
            if (couldBeSet(request))
                violations.push_back("mode " + std::to_string(request.modePort) + " of strip " +
                                     std::to_string(request.strip) + ", asked for at " + timeText(request.at) +
                                     ", was never set");
    }

    Violations violations;

private:
    void checkSetting(const Setting& setting) {
        const AutoModeRequest* const best = requestFor(setting);
        if (best == nullptr) return; // somebody else's business
        if (ageOf(*best, setting.begin) > modeTime) {
            complain(setting, *best, "too late");
        } else if (isOver(*best, setting.pressed)) {
            complain(setting, *best, "for a former owner");
        } else if (freeTime(best->at, setting.begin) > freeTimeLimit) {
            complain(setting, *best, "though the surfaces had been free for more than 1 s");
        }
        open.erase(open.begin() + (best - open.data()));
    }

    // For its strip, if there is one in time. What met a job is set on whichever strip shows its track then.
    const AutoModeRequest* requestFor(const Setting& setting) const {
        const AutoModeRequest* late = nullptr;
        const AutoModeRequest* elsewhere = nullptr;
        for (const AutoModeRequest& request : open) {
            if (request.modePort != setting.modePort || request.at > setting.pressed) continue;
            if (request.strip != setting.strip) {
                const bool mayMeetJob =
                    closings.mayMeet(request.at) || closings.mayHaveBegun(request.at, setting.begin);
                if (!elsewhere && mayMeetJob && isInTime(request, setting)) elsewhere = &request;
            } else if (isInTime(request, setting)) {
                return &request;
            } else {
                late = &request;
            }
        }
        return elsewhere ? elsewhere : late;
    }

    bool isInTime(const AutoModeRequest& request, const Setting& setting) const {
        return ageOf(request, setting.begin) <= modeTime && !isOver(request, setting.pressed);
    }

    Duration ageOf(const AutoModeRequest& request, TimePoint at) const {
        return at - request.at - pauses.within(request.at, at);
    }
    bool isOver(const AutoModeRequest& request, TimePoint at) const {
        const TimePoint end = acceptance.endOf(request.number);
        return at - grace > end && at - grace - pauses.within(end, at) > end;
    }

    void complain(const Setting& setting, const AutoModeRequest& request, const std::string& what) {
        violations.push_back(setting.text() + " " + what + ": asked for at " + timeText(request.at));
    }

    // Of that stretch: without jobs and without other modes being set. Those that are set on a surface that the host
    // does not have, it does not hear.
    Duration freeTime(TimePoint from, TimePoint to) const {
        Duration free = Duration::zero();
        TimePoint time = from;
        std::vector<Stretch> busy;
        for (const JobRun& run : jobs.runs)
            if (run.before < to && run.after > from) busy.push_back({run.before, run.after});
        for (const Setting& setting : settings)
            if (setting.begin < to && setting.end > from) busy.push_back({setting.begin, setting.end});
        std::ranges::sort(busy, {}, &Stretch::first);
        for (const Stretch& stretch : busy) {
            if (stretch.first > time) free += stretch.first - time;
            time = std::max(time, stretch.last);
        }
        if (to > time) free += to - time;
        return free - pauses.within(from, to) - unheard(from, to);
    }

    Duration unheard(TimePoint from, TimePoint to) const {
        std::set<int> others;
        for (const AutoModeRequest& request : requests.autoModes)
            if (request.strip >= strips && request.at > from - modeTime && request.at < to)
                others.insert(request.strip);
        return settingTime * static_cast<int>(others.size());
    }

    // Alone among the commands, for a name that its client was told, on surfaces that nobody takes or moves.
    bool couldBeSet(const AutoModeRequest& request) const {
        const TimePoint last = request.at + freeTimeLimit + grace;
        const auto meanwhile = [&](TimePoint at) { return request.at <= at && at <= last; };
        return request.strip < strips && last < jobs.ended && pauses.within(request.at, last) == Duration::zero() &&
               acceptance.endOf(request.number) > last &&
               !gaps.mayBeUntold(request.number, request.strip, request.at) &&
               !gaps.mayBeHidden(request.strip, request.at) && freeTime(request.at, last) == last - request.at &&
               std::ranges::none_of(requests.bankMoves, meanwhile, &BankMoveRequest::at) &&
               std::ranges::none_of(
                   requests.autoModes,
                   [&](const AutoModeRequest& other) {
                       return other.strip == request.strip && meanwhile(other.at) && other.modePort != request.modePort;
                   }) &&
               std::ranges::none_of(
                   disturbances,
                   [&](const Stretch& disturbed) { return disturbed.first <= last && disturbed.last >= request.at; });
    }

    bool duringWalk(TimePoint at) const {
        return std::ranges::any_of(jobs.runs,
                                   [at](const JobRun& run) { return run.job == Job::walk && run.mayHaveBeenAt(at); });
    }

    const JobRecord& jobs;
    const Requests& requests;
    const Acceptance& acceptance;
    const std::vector<Stretch>& disturbances;
    const Pauses& pauses;
    const NameGaps& gaps;
    const Closings closings;
    std::vector<AutoModeRequest> open;
    std::vector<Setting> settings;
    int strips = 0;
};

// The last act of a walk on the displays and faders, within that run.
std::optional<TimePoint> lastActIn(const JobRun& run, const SurfaceActions& wires,
                                   const std::vector<WalkedFader>& walked) {
    std::optional<TimePoint> last;
    const auto consider = [&](TimePoint at) {
        if (run.wasAt(at) && (!last || *last < at)) last = at;
    };
    for (const auto& wire : wires)
        for (const WireAction& action : wire)
            if (action.kind == Kind::edge && action.value == 1 &&
                (action.number == modeZone || (action.number < 8 && action.port == autoPort)))
                consider(action.at);
    for (const WalkedFader& fader : walked)
        consider(fader.at);
    return last;
}

} // namespace

Violations checkModesInTime(const SurfaceActions& wires, const JobRecord& jobs, const Requests& requests,
                            const Acceptance& acceptance, const std::vector<Stretch>& disturbances,
                            const Pauses& pauses, const NameGaps& gaps) {
    ModeChecker checker(wires, jobs, requests, acceptance, disturbances, pauses, gaps);
    checker.check();
    return std::move(checker.violations);
}

Violations checkWalksInTime(const SurfaceActions& wires, const std::vector<WalkedFader>& walked, const JobRecord& jobs,
                            const Requests& requests, const Acceptance& acceptance, const Pauses& pauses) {
    Violations violations;
    std::vector<WalkRequest> open = requests.walks;
    std::vector<JobRun> runs = jobs.runs;
    std::ranges::sort(runs, {}, &JobRun::first);
    for (const JobRun& run : runs) {
        if (run.job != Job::walk) continue;
        const std::string which = "the walk that began at " + timeText(run.first);
        // The oldest that may still be carried out; requests are in the order of their times.
        const auto request = std::ranges::find_if(open, [&](const WalkRequest& asked) {
            const TimePoint decided = pauses.earliest(run.before);
            return asked.at <= run.first && decided <= asked.at + walkTime + pauses.within(asked.at, decided) &&
                   decided <= acceptance.endOf(asked.number);
        });
        if (request == open.end()) {
            violations.push_back(which + " is for nobody, or nobody any more");
            continue;
        }
        const TimePoint over = acceptance.endOf(request->number);
        const auto last = lastActIn(run, wires, walked);
        if (run.first < over && last && *last - grace > over && *last - grace - pauses.within(over, *last) > over)
            violations.push_back(which + " went on until " + timeText(*last) + ", its client replaced at " +
                                 timeText(over));
        open.erase(request);
    }
    return violations;
}

Violations checkSettersInTime(const std::vector<ScriptingSetter>& setters, const Requests& requests,
                              const Acceptance& acceptance, const Pauses& pauses) {
    Violations violations;
    const std::map<std::int32_t, SetterRequest::Kind> kinds{
        {85, SetterRequest::Kind::mute}, {86, SetterRequest::Kind::solo}, {90, SetterRequest::Kind::inputMonitor}};
    for (const ScriptingSetter& setter : setters) {
        const auto kind = kinds.find(setter.command);
        const auto isFor = [&](const SetterRequest& request) {
            const bool switchedOver = request.kind == SetterRequest::Kind::inputMonitor;
            return kind != kinds.end() && request.kind == kind->second && request.at <= setter.at &&
                   (switchedOver || request.enabled == setter.request.enabled) &&
                   std::ssize(setter.request.trackNames) <= request.tracks;
        };
        const auto isInTime = [&](const SetterRequest& request) {
            const TimePoint at = pauses.earliest(setter.at);
            return isFor(request) && at <= request.at + setterTime + grace + pauses.within(request.at, at) &&
                   at - grace <= acceptance.endOf(request.number);
        };
        if (std::ranges::any_of(requests.setters, isInTime)) continue;
        const bool asked = std::ranges::any_of(requests.setters, isFor);
        violations.push_back("the scripting service's command " + std::to_string(setter.command) + " for " +
                             std::to_string(setter.request.trackNames.size()) + " tracks at " + timeText(setter.at) +
                             (asked ? " is too late, or for a former owner" : " is for nobody"));
    }
    return violations;
}

} // namespace lumbrine::simulation
