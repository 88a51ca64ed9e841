#include "platform/macos/announcement_keeper.h"

#include <algorithm>
#include <utility>

namespace lumbrine {

AnnouncementKeeper::AnnouncementKeeper(Runtime& runtime, BeginAnnouncement begin, AdvertisedService service,
                                       std::function<void(int code)> refused)
    : runtime(runtime), begin(std::move(begin)), service(std::move(service)), refused(std::move(refused)) {}

void AnnouncementKeeper::start() {
    attemptNow();
}

void AnnouncementKeeper::renew() {
    wait = afterFirstFailure;
    attemptNow();
}

void AnnouncementKeeper::end() {
    ++turn;
    attempt.reset();
}

void AnnouncementKeeper::attemptNow() {
    const std::uint64_t mine = ++turn;
    // A late report of an earlier attempt finds a different turn and is ignored.
    const auto ifMine = [weak = weak_from_this(), mine](auto action) {
        const auto keeper = weak.lock();
        if (keeper && keeper->turn == mine) action(*keeper);
    };
    attempt.reset();
    attempt = begin(service,
                    {
                        .published = [=] { ifMine([](AnnouncementKeeper& keeper) { keeper.published(); }); },
                        .failed = [=](int code) { ifMine([=](AnnouncementKeeper& keeper) { keeper.failed(code); }); },
                        .stopped = [=] { ifMine([](AnnouncementKeeper& keeper) { keeper.attemptIn(afterLoss); }); },
                    });
}

// The old attempt is kept until the next one begins: this may be called by one of its own reports.
void AnnouncementKeeper::attemptIn(Duration delay) {
    const std::uint64_t mine = ++turn;
    runtime.postMainAfter(delay, [weak = weak_from_this(), mine] {
        const auto keeper = weak.lock();
        if (keeper && keeper->turn == mine) keeper->attemptNow();
    });
}

void AnnouncementKeeper::published() {
    wait = afterFirstFailure;
    lastRefusal.reset();
    if (service.onChange) service.onChange(service.name);
}

void AnnouncementKeeper::failed(int code) {
    attemptIn(wait);
    wait = std::min(2 * wait, longestWait);
    if (service.onChange) service.onChange({});
    if (std::exchange(lastRefusal, code) != code) refused(code);
}

} // namespace lumbrine
