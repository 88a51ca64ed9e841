// Which of the services that a browser reports are news. One service is reported once for each network interface and
// each protocol over which it is heard.
#pragma once

#include <map>
#include <string>

namespace lumbrine {

class FoundServices {
public:
    // It is heard over one more way. True when it has to be resolved: nobody was told of it yet.
    bool appeared(const std::string& name);

    // It was resolved over one of the ways. True for the first time since it appeared; false also for a service that is
    // gone meanwhile.
    bool resolved(const std::string& name);

    // It is no longer heard over one of the ways; without any way left it is forgotten, and news when it comes again.
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
