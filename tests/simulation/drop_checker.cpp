#include "tests/simulation/drop_checker.h"

#include "tests/simulation/host_timeline.h"
#include "tests/simulation/time_limits.h"

#include <algorithm>

namespace lumbrine::simulation {

namespace {

using Tracks = ShownTracks::Tracks;

constexpr Duration toBegin = seconds(1.5);
constexpr Duration toTell = seconds(1);
constexpr Duration runOfDrops = seconds(10);
constexpr Duration longestWait = seconds(120); // what is late all the same is another checker's

class DropChecker {
public:
    DropChecker(const Scenario& decided, const Evidence& given, const ShownTracks& shownTracks,
                const Acceptance& whoAsked, const Requests& asked)
        : scenario(decided), evidence(given), shown(shownTracks), acceptance(whoAsked), requests(asked) {}

    std::vector<std::string> check() {
        for (const AutoModeRequest& mode : requests.autoModes)
            look(mode);
        for (const WalkRequest& walk : requests.walks)
            look(walk);
        for (const SetterRequest& setter : requests.setters)
            look(setter);
        for (const SeekRequest& seek : requests.seeks)
            if (isShownRow(seek.at, seek.target)) lookAtMove(seek.at, "seek to row " + std::to_string(seek.target));
        for (const BankMoveRequest& tap : requests.bankMoves)
            lookAtMove(tap.at, "tap of bank button " + std::to_string(tap.button));
        return std::move(violations);
    }

private:
    void look(const AutoModeRequest& mode) {
        if (mode.strip >= scenario.strips() || shown.onStrip(clientAt(mode.at), mode.strip, mode.at).empty()) return;
        if (!isSure(mode.at, modeTime, mode.number)) return;
        const bool isReplaced = std::ranges::any_of(requests.autoModes, [&](const AutoModeRequest& other) {
            return other.strip == mode.strip && other.at > mode.at && other.at <= mode.at + modeTime;
        });
        const bool isDone = std::ranges::any_of(evidence.record.acts, [&](const HostAct& act) {
            return act.kind == HostAct::Kind::mode && act.detail == mode.modePort && act.sent >= mode.at &&
                   act.sent <= mode.at + longestWait;
        });
        if (!isReplaced && !isDone)
            expectLine(mode.at, modeTime,
                       "mode " + std::to_string(mode.modePort) + " for strip " + std::to_string(mode.strip));
    }

    // What of a group was reached is the checker's of its members.
    void look(const WalkRequest& walk) {
        const auto isShown = [&](int member) { return isShownRow(walk.at, member); };
        const bool known = walk.kind == WalkRequest::Kind::range
                               ? isShownRow(walk.at, 0)
                               : std::ranges::any_of(walk.members, isShown) ||
                                     std::ranges::any_of(walk.faders, isShown, &std::pair<int, int>::first);
        if (walk.steps == 0 || !known || !isSure(walk.at, walkTime, walk.number)) return;
        const bool isReplaced = std::ranges::any_of(requests.walks, [&](const WalkRequest& other) {
            return other.kind == walk.kind && other.at > walk.at && other.at <= walk.at + walkTime;
        });
        if (isReplaced || anyRun(Job::walk, walk.at, walk.at + walkTime + toTell)) return;
        // Without another bank to go to there is no walk.
        if (std::ssize(listAt(evidence.record, walk.at)) <= scenario.strips()) return;
        expectLine(walk.at, walkTime, "walk");
    }

    void look(const SetterRequest& setter) {
        const auto isShown = [&](int member) { return isShownRow(setter.at, member); };
        const bool known = setter.kind == SetterRequest::Kind::inputMonitor
                               ? !shown.onStrip(clientAt(setter.at), setter.strip, setter.at).empty()
                               : std::ranges::any_of(setter.members, isShown);
        if (!known || !isSure(setter.at, setterTime, setter.number)) return;
        const bool isReplaced = std::ranges::any_of(requests.setters, [&](const SetterRequest& other) {
            return other.kind == setter.kind && other.at > setter.at && other.at <= setter.at + setterTime;
        });
        const bool isSent = std::ranges::any_of(evidence.setters, [&](const ScriptingSetter& sent) {
            return sent.at >= setter.at && sent.at <= setter.at + longestWait && isOfKind(sent.command, setter.kind);
        });
        if (!isReplaced && !isSent) expectLine(setter.at, setterTime, "wish to the scripting service");
    }

    static bool isOfKind(std::int32_t command, SetterRequest::Kind kind) {
        switch (kind) {
        case SetterRequest::Kind::mute:
            return command == 85;
        case SetterRequest::Kind::solo:
            return command == 86;
        case SetterRequest::Kind::inputMonitor:
            break;
        }
        return command == 90;
    }

    // One that meets a scan or a walk: it waits or is dropped. The others are the checkers' of arrivals.
    void lookAtMove(TimePoint at, const std::string& what) {
        const auto job = std::ranges::find_if(evidence.jobs.runs, [at](const JobRun& run) {
            const bool takesMoves = run.job == Job::seek || run.job == Job::tap; // while it has the surfaces
            return !takesMoves && run.wasAt(at) && run.after != TimePoint::max();
        });
        if (job == evidence.jobs.runs.end() || std::ssize(listAt(evidence.record, at)) <= scenario.strips()) return;
        const TimePoint end = job->after + toBegin;
        const auto isNewer = [&](TimePoint other) { return at < other && other <= end; };
        if (std::ranges::any_of(requests.seeks, isNewer, &SeekRequest::at) ||
            std::ranges::any_of(requests.bankMoves, isNewer, &BankMoveRequest::at) ||
            !isSure(at, end - at, numberAt(at)) || anyRun(Job::seek, at, end))
            return;
        expectLine(at, end - at, what);
    }

    bool isShownRow(TimePoint at, int row) const { return !shown.inRow(clientAt(at), row, at).empty(); }

    bool anyRun(Job job, TimePoint first, TimePoint last) const {
        return std::ranges::any_of(evidence.jobs.runs, [&](const JobRun& run) {
            return run.job == job && run.before <= last && run.after >= first;
        });
    }

    // Its client stays, and so does the host.
    bool isSure(TimePoint at, Duration time, int number) const {
        const TimePoint last = at + time + toTell;
        return last < evidence.jobs.ended && acceptance.endOf(number) > last && !clientAt(at).empty() &&
               std::ranges::none_of(evidence.disturbances, [&](const Stretch& trouble) {
                   return trouble.first <= last && trouble.last >= at;
               });
    }

    void expectLine(TimePoint at, Duration time, const std::string& what) {
        const bool isTold = std::ranges::any_of(evidence.jobs.lines, [&](const auto& line) {
            return line.first >= at - runOfDrops && line.first <= at + time + toTell && tellsOfADrop(line.second);
        });
        if (!isTold)
            violations.push_back("a " + what + ", asked for at " + timeText(at) +
                                 ", was not carried out, and the log does not tell");
    }

    std::vector<ReceivedDatagram>::const_iterator datagramAt(TimePoint at) const {
        return std::ranges::lower_bound(acceptance.accepted, at, {}, &ReceivedDatagram::at);
    }
    std::string clientAt(TimePoint at) const {
        const auto datagram = datagramAt(at);
        return datagram == acceptance.accepted.end() ? "" : datagram->sender;
    }
    int numberAt(TimePoint at) const {
        return acceptance.numbers[static_cast<std::size_t>(datagramAt(at) - acceptance.accepted.begin())];
    }

    const Scenario& scenario;
    const Evidence& evidence;
    const ShownTracks& shown;
    const Acceptance& acceptance;
    const Requests& requests;
    std::vector<std::string> violations;
};

} // namespace

bool tellsOfADrop(const std::string& line) {
    constexpr std::array words{"ropped", "borted", "ancelled"};
    return !line.starts_with("Scan:") &&
           std::ranges::any_of(words, [&](const char* word) { return line.find(word) != std::string::npos; });
}

std::vector<std::string> checkDropsAreTold(const Scenario& scenario, const Evidence& evidence, const ShownTracks& shown,
                                           const Acceptance& acceptance, const Requests& requests) {
    return DropChecker(scenario, evidence, shown, acceptance, requests).check();
}

} // namespace lumbrine::simulation
