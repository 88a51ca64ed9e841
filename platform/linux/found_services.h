// Decides which services of a browser are new. Avahi's browser reports a service once for every network interface and
// protocol over which it is heard; here, each of these is a way.
#pragma once

#include <map>
#include <string>

namespace lumbrine {

class FoundServices {
public:
    // The service is heard over one more way. True when it must be resolved, because it has not been reported yet.
    bool appeared(const std::string& name);

    // The service was resolved over one way. True when it must be reported now: it is still there and has not been
    // reported since it appeared.
    bool resolved(const std::string& name);

    // The service is no longer heard over one way. When no way is left, it is removed, and reported again if it comes
    // back.
    void disappeared(const std::string& name);

    void clear() { services.clear(); }

private:
    struct Service {
        int ways = 0;
        bool told = false;
    };
    std::map<std::string, Service> services;
};

} // namespace lumbrine
