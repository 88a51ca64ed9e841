#include "platform/linux/found_services.h"

#include <utility>

namespace lumbrine {

bool FoundServices::appeared(const std::string& name) {
    Service& service = services[name];
    ++service.ways;
    return !service.told;
}

bool FoundServices::resolved(const std::string& name) {
    const auto found = services.find(name);
    return found != services.end() && !std::exchange(found->second.told, true);
}

void FoundServices::disappeared(const std::string& name) {
    const auto found = services.find(name);
    if (found != services.end() && --found->second.ways <= 0) services.erase(found);
}

} // namespace lumbrine
