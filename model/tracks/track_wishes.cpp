#include "model/tracks/track_wishes.h"

#include <algorithm>
#include <cassert>
#include <set>
#include <utility>

namespace lumbrine {

TrackWishes::TrackWishes(const Jobs& jobs, ActivityLog& log, Parts parts) : jobs(jobs), log(log), parts(parts) {}

// ---- What is asked for

void TrackWishes::setGroup(TrackSwitch which, std::vector<int> members, bool enabled, Asked origin) {
    jobs.runOnMain([this, which, members = std::move(members), enabled, origin] {
        Wish wish{.which = which, .enabled = enabled, .owner = origin.owner, .arrived = origin.at};
        std::set<int> known;
        bool isShown = false;
        for (const int member : members) {
            if (!known.insert(member).second) continue;
            const auto track = parts.table.identityMeant(static_cast<std::size_t>(member), origin.owner);
            isShown = isShown || track;
            if (track && !track->name.empty()) wish.open.push_back(*track);
        }
        wish.asked = known.size();
        if (wish.asked > 0 && !isShown) return logDrop(wish, Reason::notShown);
        if (wish.asked > 0) add(std::move(wish));
    });
}

void TrackWishes::toggleInputMonitor(Strip strip, Asked origin) {
    assert(jobs.runtime.onMain());
    const auto told = parts.mirror.toldMonitor(strip, origin.owner);
    Wish wish{.which = TrackSwitch::inputMonitor,
              .enabled = told && !told->on,
              .owner = origin.owner,
              .arrived = origin.at,
              .asked = 1};
    if (!told) return logDrop(wish, Reason::notShown);
    if (told->since > origin.at) return logDrop(wish, Reason::otherTrack); // told while the wish waited for this thread
    if (!told->track.name.empty()) wish.open.push_back(told->track);
    add(std::move(wish));
}

void TrackWishes::add(Wish wish) {
    if (wish.open.empty()) return logDrop(wish, Reason::nameUnknown);
    if (const auto oldest = wishes.add(std::move(wish))) finish(*oldest, Reason::tooMany);
    watchExpiry();
    serveSoon();
}

// ---- When it is attempted

void TrackWishes::serveSoon() {
    const auto next = wishes.nextAttempt();
    if (served || !next) return;
    const TimePoint now = jobs.runtime.now();
    if (*next <= now) {
        served = true;
        parts.scripting.onQueue([this](PTSLClient& ptsl) { serve(ptsl); });
    } else if (!std::exchange(attemptWaits, true)) {
        jobs.onMainAfter(*next - now, [this] {
            attemptWaits = false;
            serveSoon();
        });
    }
}

// One wish for each job, so that other work on the queue gets its turn.
void TrackWishes::serve(PTSLClient& ptsl) {
    const auto ready = ptsl.prepare();
    if (!ready) {
        jobs.runOnMain([this] { putOff(); });
    } else if (const auto attempt = jobs.runtime.syncMain([this] { return begin(); })) {
        if (attempt->wish.inDoubt) {
            look(ptsl, *attempt);
        } else {
            jobs.runOnMain([this, attempt = *attempt, outcome = carryOut(ptsl, *attempt)] { end(attempt, outcome); });
        }
    }
    jobs.runOnMain([this] {
        served = false;
        serveSoon();
    });
}

std::optional<TrackWishes::Attempt> TrackWishes::begin() {
    dropExpired();
    const TimePoint now = jobs.runtime.now();
    while (Wish* wish = wishes.next(now)) {
        Attempt attempt{.wish = *wish};
        if (findTracks(attempt)) {
            wish->open = attempt.wish.open;
            wish->inHand = true;
            return attempt;
        }
        wishes.remove(attempt.wish.number);
        finish(attempt.wish, Reason::trackGone);
    }
    return std::nullopt;
}

// The tracks that are still there, by the names that they have now. False when there are none.
bool TrackWishes::findTracks(Attempt& attempt) {
    std::erase_if(attempt.wish.open, [&](const TrackIdentity& track) {
        const auto name = parts.metadata.currentName(track);
        if (name) attempt.names.push_back(*name);
        return !name;
    });
    return !attempt.names.empty();
}

// ---- The attempt

TrackWishes::Outcome TrackWishes::carryOut(PTSLClient& ptsl, const Attempt& attempt) {
    Outcome outcome;
    set(ptsl, attempt, 0, attempt.names.size(), outcome);
    return outcome;
}

// The service carries out a command for all its tracks or for none, so where it refuses one, each half is tried.
void TrackWishes::set(PTSLClient& ptsl, const Attempt& attempt, std::size_t first, std::size_t count,
                      Outcome& outcome) {
    if (outcome.failure || isFormer(attempt.wish) || WishList::isExpired(attempt.wish, jobs.runtime.now())) return;
    const auto begin = attempt.names.begin() + static_cast<std::ptrdiff_t>(first);
    const std::vector<std::string> names(begin, begin + static_cast<std::ptrdiff_t>(count));
    PTSLClient::Result<void> done;
    switch (attempt.wish.which) {
    case TrackSwitch::mute:
        done = ptsl.setMute(names, attempt.wish.enabled);
        break;
    case TrackSwitch::solo:
        done = ptsl.setSolo(names, attempt.wish.enabled);
        break;
    case TrackSwitch::inputMonitor:
        done = ptsl.setInputMonitor(names.front(), attempt.wish.enabled);
        break;
    }
    const bool isRefused = !done && verdictOn(done.error()) == Verdict::refused;
    if (isRefused && count > 1) {
        set(ptsl, attempt, first, count / 2, outcome);
        set(ptsl, attempt, first + count / 2, count - count / 2, outcome);
    } else if (done || isRefused) {
        for (std::size_t track = first; track < first + count; ++track)
            (done ? outcome.reached : outcome.refused).push_back(track);
    } else {
        outcome.failure = done.error();
    }
}

void TrackWishes::end(const Attempt& attempt, const Outcome& outcome) {
    if (!outcome.reached.empty()) parts.metadata.refreshFullNames();
    Wish* const wish = wishes.find(attempt.wish.number);
    if (wish == nullptr) return;
    const auto close = [&](std::size_t track) {
        std::erase_if(wish->open, [&](const TrackIdentity& open) { return isSame(open, attempt.wish.open[track]); });
    };
    std::ranges::for_each(outcome.reached, close);
    std::ranges::for_each(outcome.refused, close);
    wish->reached += outcome.reached.size();
    wish->refused += outcome.refused.size();
    if (outcome.failure) {
        wish->inDoubt = verdictOn(*outcome.failure) == Verdict::unknown;
        if (!wish->inDoubt) wish->notBefore = jobs.runtime.now() + pause;
    }
    putBack(*wish);
}

void TrackWishes::look(PTSLClient& ptsl, const Attempt& attempt) {
    auto list = ptsl.trackList();
    jobs.runOnMain([this, attempt, list = std::move(list)] {
        if (list) {
            parts.metadata.takeList(*list);
            settle(attempt);
        }
        Wish* const wish = wishes.find(attempt.wish.number);
        if (wish == nullptr) return;
        wish->notBefore = jobs.runtime.now() + pause;
        putBack(*wish);
    });
}

// The newest list says which of the tracks were reached after all.
void TrackWishes::settle(const Attempt& attempt) {
    Wish* const wish = wishes.find(attempt.wish.number);
    if (wish == nullptr) return;
    wish->inDoubt = false;
    wish->reached += std::erase_if(wish->open, [&](const TrackIdentity& track) {
        const PTSLTrack* const listed = parts.metadata.listed(track);
        if (listed == nullptr) return false;
        switch (wish->which) {
        case TrackSwitch::mute:
            return listed->isMuted == wish->enabled;
        case TrackSwitch::solo:
            return listed->isSoloed == wish->enabled;
        case TrackSwitch::inputMonitor:
            break;
        }
        return listed->isInputMonitoringOn == wish->enabled;
    });
}

void TrackWishes::putBack(Wish& wish) {
    wish.inHand = false;
    if (!wish.open.empty()) return dropExpired();
    const Wish over = wish;
    wishes.remove(over.number);
    const bool gaveWay = over.reached == 0 && over.refused == 0; // to a newer wish for all of its tracks
    if (!gaveWay) finish(over, Reason::refused);
}

// The service is not there for any of them.
void TrackWishes::putOff() {
    const TimePoint now = jobs.runtime.now();
    while (Wish* const wish = wishes.next(now))
        wish->notBefore = now + pause;
    dropExpired();
}

// ---- How it ends

bool TrackWishes::isFormer(const Wish& wish) const {
    const auto owner = parts.endpoint.ownership();
    return owner && *owner != wish.owner;
}

void TrackWishes::dropExpired() {
    for (const Wish& wish : wishes.take([this](const Wish& waiting) { return isFormer(waiting); }))
        finish(wish, Reason::otherOwner);
    const TimePoint now = jobs.runtime.now();
    for (const Wish& wish : wishes.take([now](const Wish& waiting) { return WishList::isExpired(waiting, now); }))
        finish(wish, Reason::unanswered);
    watchExpiry();
}

void TrackWishes::watchExpiry() {
    const auto next = wishes.nextExpiry();
    if (!next || std::exchange(expiryWatched, true)) return;
    jobs.onMainAfter(*next - jobs.runtime.now(), [this] {
        expiryWatched = false;
        dropExpired();
    });
}

void TrackWishes::finish(const Wish& wish, Reason reason) {
    if (wish.reached == 0) return logDrop(wish, reason);
    if (wish.which != TrackSwitch::inputMonitor) logGroup(wish);
}

void TrackWishes::logGroup(const Wish& wish) {
    const bool isSolo = wish.which == TrackSwitch::solo;
    const std::string reached = std::to_string(wish.reached);
    const std::string asked = std::to_string(wish.asked);
    const bool isWhole = wish.reached >= wish.asked;
    const std::string onOrOff = wish.enabled ? "ON" : "OFF";
    log.say("✓ Group: " + std::string(isSolo ? "solo" : "mute") + " " + onOrOff + " for " +
                (isWhole ? reached : reached + " of " + asked) + " tracks",
            "✓ グループ " + (isWhole ? reached + " 本" : asked + " 本中 " + reached + " 本") + "を" +
                (isSolo ? "ソロ" : "ミュート") + onOrOff);
}

void TrackWishes::logDrop(const Wish& wish, Reason reason) {
    const auto what = [&]() -> std::pair<std::string, std::string> {
        switch (wish.which) {
        case TrackSwitch::mute:
            return {"group mute", "グループのミュート"};
        case TrackSwitch::solo:
            return {"group solo", "グループのソロ"};
        case TrackSwitch::inputMonitor:
            break;
        }
        return {"input monitor", "入力モニターの切り替え"};
    }();
    const auto why = [&]() -> std::pair<std::string, std::string> {
        switch (reason) {
        case Reason::unanswered:
            return {"Pro Tools did not answer", "Pro Tools の応答がないため"};
        case Reason::otherOwner:
            return {"another device has taken control", "別の端末に操作が移ったため"};
        case Reason::trackGone:
            return {"the track is gone", "トラックがなくなったため"};
        case Reason::notShown:
            return {"no track was shown yet", "トラックがまだ表示されていないため"};
        case Reason::otherTrack:
            return {"its track is no longer shown", "トラックが表示されていないため"};
        case Reason::nameUnknown:
            return {"the track's full name is not known", "トラックのフルネームが不明なため"};
        case Reason::refused:
            return {"Pro Tools refused it", "Pro Tools が拒否したため"};
        case Reason::tooMany:
            break;
        }
        return {"too many at once", "一度に多すぎるため"};
    }();
    log.sayOnceARun("✗ Dropped " + what.first + ": " + why.first, "✗ " + what.second + "を中止（" + why.second + "）");
}

} // namespace lumbrine
