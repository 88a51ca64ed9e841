#include "tests/simulation/finger_checker.h"

#include "tests/simulation/actions.h"
#include "tests/simulation/time_limits.h"
#include "tests/simulation/touch_repeats.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <optional>

namespace lumbrine::simulation {

namespace {

using Kind = WireAction::Kind;

bool isMoveOrTouch(const WireAction& action) {
    return action.kind == Kind::fader || action.isTouch();
}
bool isRelease(const WireAction& action) {
    return action.isTouchEnd();
}

// On a fader, since its touch came, or went out.
struct Finger {
    TimePoint since;
    bool isDown;                 // its touch went out
    bool maybeForgotten = false; // its client was silent for about as long as that takes
};

class FingerChecker {
public:
    FingerChecker(const std::vector<WireAction>& wire, int surfaceNumber, const Closings& ofSurfaces,
                  const Pauses& ofThreads, const NameGaps& ofNames)
        : surface(surfaceNumber), closings(ofSurfaces), pauses(ofThreads), gaps(ofNames) {
        std::ranges::copy_if(wire, std::back_inserter(sent), isMoveOrTouch);
        std::ranges::copy_if(wire, std::back_inserter(releases), isRelease);
    }

    void check(const Acceptance& acceptance) {
        const TouchRepeats repeats(acceptance, pauses);
        for (std::size_t i = 0; i < acceptance.accepted.size(); ++i)
            follow(acceptance.accepted[i], acceptance.numbers[i], {repeats.mayRepeat(i), repeats.surelyRepeats(i)});
        for (; next < sent.size(); ++next)
            complain(sent[next], "that nobody asked for");
    }

    std::vector<std::string> violations;

private:
    // Whether a touch is of a finger that is down already.
    struct Repeat {
        bool maybe;
        bool surely;
    };

    void follow(const ReceivedDatagram& datagram, int number, Repeat repeat) {
        if (number != owner) fingers.clear();
        owner = number;
        hear(datagram);
        auto asked = actionAskedBy(datagram);
        if (!asked || asked->number / 8 != surface) return;
        asked->number %= 8;
        if (isRelease(*asked)) {
            release(*asked);
        } else if (isMoveOrTouch(*asked)) {
            look(*asked, repeat);
        }
    }

    void hear(const ReceivedDatagram& datagram) {
        if (datagram.bytes.empty() || datagram.bytes[0] != 1) return;
        const Duration gap = datagram.at - lastHeard;
        if (gap - pauses.within(lastHeard, datagram.at) > noticedSilence) fingers.clear();
        if (gap + pauses.within(lastHeard - silence, lastHeard) >= silence)
            for (auto& [strip, finger] : fingers)
                finger.maybeForgotten = true;
        lastHeard = datagram.at;
    }

    void look(const WireAction& asked, Repeat repeat) {
        const auto finger = fingers.find(asked.number);
        const bool isMove = asked.kind == Kind::fader;
        const bool there = finger != fingers.end();
        // What went out later may be an equal one that came doubled, after the finger had gone.
        const bool onlyAtOnce = isMove && there && isStray(finger->second, asked.at);
        const auto out = take(asked, onlyAtOnce);
        const bool mayBeHeld = mayMeetClosed(asked) || (there && (isMove || repeat.maybe) &&
                                                        mayBeStray(asked.number, finger->second, asked.at));
        if (!out) {
            if (!mayBeHeld) complain(asked, "lost");
        } else if (closings.surelyWas(*out)) {
            complain(asked, "while a job has the surfaces");
        } else if (there && (isMove || repeat.surely) && isStray(finger->second, *out)) {
            complain(asked, "of a finger that a job has met");
        }
        if (!isMove) fingers[asked.number] = {.since = out.value_or(asked.at), .isDown = out || !mayBeHeld};
    }

    void release(const WireAction& asked) {
        const auto finger = fingers.find(asked.number);
        const bool mayBeUp = finger == fingers.end() || mayBeStray(asked.number, finger->second, asked.at);
        const bool mustGoOut = !mayBeUp && !mayMeetClosed(asked);
        if (const auto out = takeOf(releases, asked)) {
            if (!mustGoOut) spare.push_back(*out);
        } else if (mustGoOut && !takeOf(spare, asked)) {
            complain(asked, "lost");
        }
        if (finger != fingers.end()) fingers.erase(finger);
    }

    std::optional<WireAction> takeOf(std::vector<WireAction>& actions, const WireAction& asked) const {
        const auto found = std::ranges::find_if(actions, [&](const WireAction& action) {
            return action.sameAs(asked) && pauses.explain(asked.at, action.at);
        });
        if (found == actions.end()) return std::nullopt;
        const WireAction taken = *found;
        actions.erase(found);
        return taken;
    }

    bool mayMeetClosed(const WireAction& asked) const {
        return closings.mayMeet(asked.at) || gaps.mayBeUntold(owner, 8 * surface + asked.number, asked.at);
    }
    bool mayBeStray(int strip, const Finger& finger, TimePoint at) const {
        return !finger.isDown || closings.mayHaveBegun(finger.since, at) ||
               gaps.mayHaveChanged(8 * surface + strip, finger.since, at);
    }
    bool isStray(const Finger& finger, TimePoint sentAt) const {
        return !finger.maybeForgotten && (!finger.isDown || closings.surelyBegan(finger.since, sentAt));
    }

    // When it went out. What comes before it on the wire is of nobody.
    std::optional<TimePoint> take(const WireAction& asked, bool onlyAtOnce) {
        for (; next < sent.size() && sent[next].at < asked.at; ++next)
            complain(sent[next], "that nobody asked for");
        if (next == sent.size() || !sent[next].sameAs(asked)) return std::nullopt;
        if (onlyAtOnce ? sent[next].at != asked.at : !pauses.explain(asked.at, sent[next].at)) return std::nullopt;
        return sent[next++].at;
    }

    void complain(const WireAction& action, const std::string& what) {
        const std::string kind = action.kind == Kind::fader ? "move " : action.value == 1 ? "touch " : "release ";
        violations.push_back(kind + what + " on surface " + std::to_string(surface) + ": " + action.text());
    }

    const int surface;
    const Closings& closings;
    const Pauses& pauses;
    const NameGaps& gaps;
    std::vector<WireAction> sent; // moves and touches
    std::size_t next = 0;         // of them
    std::vector<WireAction> releases;
    std::vector<WireAction> spare; // releases that may be those of later ones, because theirs need not have gone out
    std::map<int, Finger> fingers; // by strip
    int owner = 0;
    TimePoint lastHeard;
};

} // namespace

std::vector<std::string> checkFingers(const std::vector<WireAction>& wire, int surface, const Acceptance& acceptance,
                                      const Closings& closings, const Pauses& pauses, const NameGaps& gaps) {
    FingerChecker checker(wire, surface, closings, pauses, gaps);
    checker.check(acceptance);
    return std::move(checker.violations);
}

} // namespace lumbrine::simulation
