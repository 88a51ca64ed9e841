#include "tests/simulation/hands_checker.h"

#include "tests/simulation/closings.h"
#include "tests/simulation/time_limits.h"
#include "tests/simulation/touch_repeats.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

namespace lumbrine::simulation {

namespace {

using Kind = WireAction::Kind;

constexpr Duration lettingGo = seconds(0.1);

constexpr int touchPort = 0;
constexpr int nobody = 0; // the receiver itself

struct Key {
    int surface;
    int zone;
    int port;
    auto operator<=>(const Key&) const = default;

    bool isOfStrip() const { return zone < 8; }
    bool isTouch() const { return isOfStrip() && port == touchPort; }
    int strip() const { return zone + 8 * surface; }
};

// A key that is down, or was.
struct Hold {
    TimePoint down;
    int owner = nobody;
};

// When it is over, and why.
struct Gone {
    TimePoint at;
    const char* why;
};

std::string text(const Key& key, const Hold& hold) {
    const std::string what = key.zone == modeZone   ? "mode button " + std::to_string(key.port)
                             : !key.isOfStrip()     ? "zone " + std::to_string(key.zone)
                             : key.isTouch()        ? "the touch of strip " + std::to_string(key.strip())
                             : key.port == autoPort ? "AUTO of strip " + std::to_string(key.strip())
                                                    : "a switch of strip " + std::to_string(key.strip());
    return what + ", down since " + timeText(hold.down) + " by owner " + std::to_string(hold.owner) + ",";
}

// The opcode of the datagram that has this key pressed; 0 when there is none of its own.
int opcodeOf(const Key& key) {
    if (!key.isOfStrip()) return 0;
    switch (key.port) {
    case touchPort:
        return 0x02;
    case 1:
        return 0x0D;
    case 2:
        return 0x04;
    case 3:
        return 0x05;
    case 7:
        return 0x06;
    default:
        return 0;
    }
}

class HandsChecker {
public:
    explicit HandsChecker(const HandsEvidence& given)
        : evidence(given), closings(evidence.runs, evidence.pauses), repeats(evidence.acceptance, evidence.pauses) {
        for (const ReceivedDatagram& datagram : evidence.acceptance.accepted)
            if (!datagram.bytes.empty() && datagram.bytes[0] == 1) heard.push_back(datagram.at);
        if (evidence.wires.empty()) return;
        for (const WireAction& action : evidence.wires.front())
            if (action.kind == Kind::edge && action.number == bankZone && action.value == 1)
                bankPresses.push_back(action.at);
    }

    void check() {
        for (std::size_t surface = 0; surface < evidence.wires.size(); ++surface)
            for (const WireAction& action : evidence.wires[surface])
                if (action.kind == Kind::edge) follow({static_cast<int>(surface), action.number, action.port}, action);
        for (const auto& [key, hold] : holds)
            checkLength(key, hold, std::nullopt);
    }

    HandsViolations violations;

private:
    void follow(const Key& key, const WireAction& action) {
        const auto held = holds.find(key);
        if (action.value == 1) {
            const int owner = ownerOf(key, action.at);
            if (key.zone == modeZone) ownAutoOf(key.surface, owner);
            if (held == holds.end() || held->second.owner != owner) holds[key] = {action.at, owner};
        } else if (held != holds.end()) {
            checkLength(key, held->second, action.at);
            if (key.isTouch()) checkReason(key, held->second, action.at);
            holds.erase(held);
        }
    }

    // Whose newest command asked for this.
    int ownerOf(const Key& key, TimePoint at) const {
        if (key.zone == modeZone) return ownerOfMode(key, at);
        const int opcode = opcodeOf(key);
        return opcode == 0 ? nobody : newest(at, [&](const ReceivedDatagram& datagram) {
            return datagram.bytes[1] == opcode && datagram.bytes[2] == key.strip();
        });
    }

    // Of the strip whose AUTO switch is down, or of a group. What met a job is for whichever strip shows its track.
    int ownerOfMode(const Key& key, TimePoint at) const {
        return newest(at, [&](const ReceivedDatagram& datagram) {
            const Bytes& bytes = datagram.bytes;
            if (bytes[1] == 0x20) return bytes[2] == key.port;
            return bytes[1] == 0x0F && bytes.size() > 3 && bytes[3] == key.port &&
                   (closings.mayMeet(datagram.at) ||
                    holds.contains({key.surface, bytes[2] - 8 * key.surface, autoPort}));
        });
    }

    void ownAutoOf(int surface, int owner) {
        for (auto& [key, hold] : holds)
            if (key.surface == surface && key.isOfStrip() && key.port == autoPort) hold.owner = owner;
    }

    template <typename Wanted>
    int newest(TimePoint at, Wanted wanted) const {
        const Acceptance& acceptance = evidence.acceptance;
        auto i = static_cast<std::size_t>(std::ranges::upper_bound(acceptance.accepted, at, {}, &ReceivedDatagram::at) -
                                          acceptance.accepted.begin());
        while (i-- > 0) {
            const Bytes& bytes = acceptance.accepted[i].bytes;
            if (bytes.size() > 2 && bytes[0] == 1 && wanted(acceptance.accepted[i])) return acceptance.numbers[i];
        }
        return nobody;
    }

    void complain(const Key& key, std::string what) {
        const bool isOfAuto = key.zone == modeZone || (key.isOfStrip() && key.port == autoPort);
        (isOfAuto ? violations.ofAuto : violations.ofClients).push_back(std::move(what));
    }

    void checkLength(const Key& key, const Hold& hold, std::optional<TimePoint> up) {
        const TimePoint last = up.value_or(evidence.end);
        const Gone gone = goneOf(key, hold, last);
        if (last - lettingGo > gone.at && last - lettingGo > gone.at + evidence.pauses.within(gone.at, last))
            complain(key, text(key, hold) + " is still down 0.1 s after " + gone.why + " at " + timeText(gone.at));
        if (!key.isOfStrip() && key.zone != modeZone) return;
        const auto press = std::ranges::upper_bound(bankPresses, hold.down);
        if (press != bankPresses.end() && last > *press + evidence.pauses.within(hold.down, last))
            complain(key, text(key, hold) + " is down when the banks are moved at " + timeText(*press));
    }

    Gone goneOf(const Key& key, const Hold& hold, TimePoint last) const {
        Gone gone{TimePoint::max(), ""};
        const auto consider = [&gone](TimePoint at, const char* why) {
            if (at < gone.at) gone = {at, why};
        };
        // What is pressed right at the end, while the ports still stand, has its hand gone with its own moment.
        consider(std::max(evidence.programEnd, hold.down), "the end of the program");
        if (hold.owner != nobody) consider(evidence.acceptance.endOf(hold.owner), "another owner");
        if (key.isTouch()) {
            if (const auto release = releaseAfter(key, hold, last)) consider(*release, "its release");
            consider(forgottenAfter(hold), "its client's silence");
        }
        return gone;
    }

    // After its touch, where that came at the same moment.
    std::vector<ReceivedDatagram>::const_iterator afterTouch(const Key& key, const Hold& hold) const {
        const auto moment =
            std::ranges::equal_range(evidence.acceptance.accepted, hold.down, {}, &ReceivedDatagram::at);
        auto after = moment.begin();
        for (auto datagram = moment.begin(); datagram != moment.end(); ++datagram) {
            const Bytes& bytes = datagram->bytes;
            if (bytes.size() > 2 && bytes[0] == 1 && bytes[1] == 0x02 && bytes[2] == key.strip()) after = datagram + 1;
        }
        return after;
    }

    std::optional<TimePoint> releaseAfter(const Key& key, const Hold& hold, TimePoint last) const {
        const Acceptance& acceptance = evidence.acceptance;
        for (auto datagram = afterTouch(key, hold); datagram != acceptance.accepted.end() && datagram->at <= last;
             ++datagram) {
            const Bytes& bytes = datagram->bytes;
            const auto i = static_cast<std::size_t>(datagram - acceptance.accepted.begin());
            if (bytes.size() > 2 && bytes[0] == 1 && bytes[1] == 0x03 && bytes[2] == key.strip() &&
                acceptance.numbers[i] == hold.owner)
                return datagram->at;
        }
        return std::nullopt;
    }

    // At the latest. While the machine slept nobody was silent.
    TimePoint forgottenAfter(const Hold& hold) const {
        TimePoint time = hold.down;
        auto next = std::ranges::upper_bound(heard, time);
        const auto limit = [&] {
            const bool soon = repeats.longestSilence(hold.owner, time) == repeatedSilence;
            return soon ? repeatedSilence : noticedSilence;
        };
        for (; next != heard.end() && *next - time - evidence.pauses.within(time, *next) < limit(); ++next)
            time = *next;
        return time + limit();
    }

    void checkReason(const Key& key, const Hold& hold, TimePoint up) {
        if (hold.owner == nobody || up >= evidence.programEnd || up >= evidence.acceptance.endOf(hold.owner)) return;
        if (releaseAfter(key, hold, up) || isSilentAt(up, hold.owner) || banksMoveAt(up)) return;
        if (evidence.gaps.mayHaveChanged(key.strip(), hold.down, up)) return;
        // A walk that presses no bank button is not seen at the moment when it begins.
        if (key.isTouch() && up == hold.down) return;
        complain(key, text(key, hold) + " is lifted by nobody at " + timeText(up));
    }

    // What comes at the moment of the tick that notices may come after it, also when the machine slept.
    bool isSilentAt(TimePoint time, int owner) const {
        const auto next = std::ranges::lower_bound(heard, evidence.pauses.earliest(time));
        return next == heard.begin() || time - *std::prev(next) >= repeats.shortestSilence(owner, time);
    }

    bool banksMoveAt(TimePoint time) const {
        const auto press = std::ranges::lower_bound(bankPresses, time);
        return (press != bankPresses.end() && *press - time <= lettingGo) ||
               std::ranges::any_of(evidence.runs, [time](const JobRun& run) { return run.mayHaveBeenAt(time); });
    }

    const HandsEvidence& evidence;
    const Closings closings;
    const TouchRepeats repeats;
    std::vector<TimePoint> heard; // times of the datagrams with our protocol version from the client in control
    std::vector<TimePoint> bankPresses;
    std::map<Key, Hold> holds;
};

} // namespace

HandsViolations checkHands(const HandsEvidence& evidence) {
    HandsChecker checker(evidence);
    checker.check();
    return std::move(checker.violations);
}

} // namespace lumbrine::simulation
