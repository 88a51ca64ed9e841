// The names that computers and phones have given themselves on the local network (multicast DNS).
#pragma once

#include <functional>
#include <memory>
#include <string>

namespace lumbrine {

// Destroying it ends the search; no callback runs afterwards.
class HostNameSearch {
public:
    virtual ~HostNameSearch() = default;
};

class HostNames {
public:
    virtual ~HostNames() = default;

    // Asks the host with this numeric address for its name. Calls `found` once with "Annas-iPhone", on a thread of the
    // back end, and never when the host says nothing.
    virtual std::unique_ptr<HostNameSearch> find(const std::string& address,
                                                 std::function<void(const std::string& name)> found) = 0;
};

} // namespace lumbrine
