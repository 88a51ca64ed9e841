// Keeps a service announced on the local network: repeats attempts that fail or end.
#pragma once

#include "platform/api/runtime.h"
#include "platform/api/service_discovery.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace lumbrine {

// One attempt to announce a service. Destroying it withdraws the service; no report follows.
class AnnouncementAttempt {
public:
    virtual ~AnnouncementAttempt() = default;
};

// The system's reports about one attempt. Called on the main thread, never inside the call that begins the attempt.
struct AnnouncementReports {
    std::function<void()> published;
    std::function<void(int code)> failed; // instead of `published`, or later
    std::function<void()> stopped;        // the system has withdrawn the service
};

using BeginAnnouncement =
    std::function<std::unique_ptr<AnnouncementAttempt>(const AdvertisedService&, AnnouncementReports)>;

// When the system has withdrawn the service, a new attempt begins after 1 s. After failures, the waits are 5 s, 10 s
// and so on up to a minute: the user may grant a missing permission at any time. Main thread.
class AnnouncementKeeper : public std::enable_shared_from_this<AnnouncementKeeper> {
public:
    static constexpr Duration afterLoss = seconds(1);
    static constexpr Duration afterFirstFailure = seconds(5);
    static constexpr Duration longestWait = seconds(60);

    // Reports to the service's `onChange` that it is announced, and each failure.
    //
    // `refused` is called with the first error and whenever the code changes. After a successful announcement,
    // the next error is reported again, whatever its code.
    AnnouncementKeeper(Runtime& runtime, BeginAnnouncement begin, AdvertisedService service,
                       std::function<void(int code)> refused);

    // Begins the first attempt. The keeper must be owned by a shared_ptr.
    void start();

    // Withdraws the service and announces it again, for use when the network may have changed.
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
    std::uint64_t turn = 0; // counts attempts and scheduled attempts; reports and timers of earlier ones are ignored
    Duration wait = afterFirstFailure;
    std::optional<int> lastRefusal;
};

} // namespace lumbrine
