// Announcing a network service on the local network, and finding one (multicast DNS).
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace lumbrine {

struct AdvertisedService {
    std::string domain; // "local."
    std::string type;   // "_lumbrine._udp."
    std::string name;   // what users see; when another service has it, the back end picks a different one
    std::uint16_t port;

    // Called on a thread of the back end, or on the main thread, never inside `publish`: with the name under which the
    // service is announced now, or with nothing when nobody announces it. Not called after the service was withdrawn.
    std::function<void(const std::optional<std::string>& announcedAs)> onChange = {};
};

// Destroying it withdraws the service.
class Advertisement {
public:
    virtual ~Advertisement() = default;
};

class ServiceAdvertiser {
public:
    virtual ~ServiceAdvertiser() = default;

    // Publishes the service as soon as the system's mDNS daemon runs, and again after each restart of the daemon.
    // Returns at once and reports no failure. If the OS can deny permission (macOS Local Network), the back end reports
    // that itself.
    virtual std::unique_ptr<Advertisement> publish(AdvertisedService service) = 0;
};

struct FoundService {
    std::string name;
    std::string host; // numeric
    std::uint16_t port;
};

// Destroying it ends the search; no callback runs afterwards.
class ServiceSearch {
public:
    virtual ~ServiceSearch() = default;
};

class ServiceBrowser {
public:
    virtual ~ServiceBrowser() = default;

    // Calls `found` once for each service of this type when it appears, on a thread of the back end. Null when the
    // system has no mDNS daemon.
    virtual std::unique_ptr<ServiceSearch> browse(const std::string& type,
                                                  std::function<void(const FoundService&)> found) = 0;
};

} // namespace lumbrine
