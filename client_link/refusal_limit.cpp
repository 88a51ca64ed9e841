#include "client_link/refusal_limit.h"

namespace lumbrine {

bool RefusalLimit::allows(std::string_view host, TimePoint now) {
    forgetBefore(now);
    const auto counted = hosts.find(host);
    return recent.size() < inAll && (counted == hosts.end() || counted->second < perHost);
}

void RefusalLimit::count(std::string_view host, TimePoint now) {
    auto counted = hosts.find(host);
    if (counted == hosts.end()) counted = hosts.try_emplace(std::string(host), 0).first;
    ++counted->second;
    recent.emplace_back(now, counted);
}

void RefusalLimit::forgetBefore(TimePoint now) {
    while (!recent.empty() && now - recent.front().first >= period) {
        const auto counted = recent.front().second;
        recent.pop_front();
        if (--counted->second == 0) hosts.erase(counted);
    }
}

} // namespace lumbrine
