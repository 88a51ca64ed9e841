// Keeping a service announced on the local network, whatever becomes of single attempts.
#pragma once

#include "platform/api/runtime.h"
#include "platform/api/service_discovery.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace lumbrine {

// One attempt at announcing a service. Destroying it withdraws the service; nothing is reported afterwards.
class AnnouncementAttempt {
public:
    virtual ~AnnouncementAttempt() = default;
};

// What the system reports of an attempt, on the main thread. Not from within the call that begins it.
struct AnnouncementReports {
    std::function<void()> published;
    std::function<void(int code)> failed; // instead of published or later
    std::function<void()> stopped;        // the system has given it up
};

using BeginAnnouncement =
    std::function<std::unique_ptr<AnnouncementAttempt>(const AdvertisedService&, AnnouncementReports)>;

// Begins anew 1 s after the system has given the service up. After a failure it waits 5 s, 10 s and so on up to a
// minute, since the user may allow at any moment what was refused. Main thread.
class AnnouncementKeeper : public std::enable_shared_from_this<AnnouncementKeeper> {
public:
    static constexpr Duration afterLoss = seconds(1);
    static constexpr Duration afterFirstFailure = seconds(5);
    static constexpr Duration longestWait = seconds(60);

    // `refused` gets the code of a failure: the first, and then each that is another one than the last. Once a service
    // has been published every code is new again.
    AnnouncementKeeper(Runtime& rt, BeginAnnouncement beginAttempt, AdvertisedService announced,
                       std::function<void(int code)> refusedReport);

    // Lives in a shared_ptr.
    void start();

    // Withdraws the service and announces it again: the network may be another one.
    void renew();

    // Withdraws the service for good.
    void end();

private:
    void attemptNow();
    void attemptIn(Duration wait);
    void published();
    void failed(int code);

    Runtime& runtime;
    const BeginAnnouncement begin;
    const AdvertisedService service;
    const std::function<void(int code)> refused;

    std::unique_ptr<AnnouncementAttempt> attempt;
    std::uint64_t turn = 0; // counts attempts and plans for them; only what belongs to the latest counts
    Duration wait = afterFirstFailure;
    std::optional<int> lastRefusal;
};

} // namespace lumbrine
