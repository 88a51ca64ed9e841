#include "model/tracks/wish_list.h"

#include <algorithm>
#include <utility>

namespace lumbrine {

void WishList::giveWayTo(const Wish& newer) {
    for (Wish& older : wishes) {
        if (older.which != newer.which) continue;
        older.asked -= std::erase_if(older.open, [&](const TrackIdentity& track) {
            return std::ranges::any_of(newer.open, [&](const TrackIdentity& other) { return isSame(track, other); });
        });
    }
    // A wish that somebody is at work on, or of which something was carried out, is still to be accounted for.
    std::erase_if(wishes, [](const Wish& older) { return older.open.empty() && !older.inHand && older.reached == 0; });
}

std::optional<Wish> WishList::add(Wish wish) {
    giveWayTo(wish);
    wish.number = ++lastNumber;
    wishes.push_back(std::move(wish));
    if (wishes.size() <= mostWaiting) return std::nullopt;
    const auto oldest = std::ranges::find(wishes, false, &Wish::inHand);
    std::optional<Wish> tooMany = std::move(*oldest);
    wishes.erase(oldest);
    return tooMany;
}

Wish* WishList::next(TimePoint now) {
    const auto wish = std::ranges::find_if(
        wishes, [now](const Wish& waiting) { return !waiting.inHand && waiting.notBefore <= now; });
    return wish == wishes.end() ? nullptr : &*wish;
}

Wish* WishList::find(std::uint64_t number) {
    const auto wish = std::ranges::find(wishes, number, &Wish::number);
    return wish == wishes.end() ? nullptr : &*wish;
}

void WishList::remove(std::uint64_t number) {
    std::erase_if(wishes, [number](const Wish& wish) { return wish.number == number; });
}

std::vector<Wish> WishList::take(const std::function<bool(const Wish&)>& isIt) {
    std::vector<Wish> taken;
    for (const Wish& wish : wishes)
        if (!wish.inHand && isIt(wish)) taken.push_back(wish);
    for (const Wish& wish : taken)
        remove(wish.number);
    return taken;
}

std::optional<TimePoint> WishList::nextExpiry() const {
    std::optional<TimePoint> next;
    for (const Wish& wish : wishes)
        if (!wish.inHand) next = std::min(next.value_or(TimePoint::max()), wish.arrived + lifetime);
    return next;
}

std::optional<TimePoint> WishList::nextAttempt() const {
    std::optional<TimePoint> next;
    for (const Wish& wish : wishes)
        if (!wish.inHand) next = std::min(next.value_or(TimePoint::max()), wish.notBefore);
    return next;
}

} // namespace lumbrine
