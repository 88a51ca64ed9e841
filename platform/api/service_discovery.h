// Announcing a network service on the local network, and finding one (multicast DNS).
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace lumbrine {

struct AdvertisedService {
    std::string domain; // "local."
    std::string type;   // "_lumbrine._udp."
    std::string name;   // what people see; the back end picks another one when it is taken
    std::uint16_t port;
};

// Destroying it withdraws the service.
class Advertisement {
public:
    virtual ~Advertisement() = default;
};

class ServiceAdvertiser {
public:
    virtual ~ServiceAdvertiser() = default;

    // Publishes the service as soon as the system's daemon is there, and again whenever the daemon was gone. Returns at
    // once and reports no failure. A back end that can be refused what the user may allow tells of that in its own way.
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

    // Calls `found` once for each service of the type as it appears, on a thread of the back end's. Null when the
    // system has no daemon to ask.
    virtual std::unique_ptr<ServiceSearch> browse(const std::string& type,
                                                  std::function<void(const FoundService&)> found) = 0;
};

} // namespace lumbrine
