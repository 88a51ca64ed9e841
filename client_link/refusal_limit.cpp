#include "client_link/refusal_limit.h"

namespace lumbrine {

bool RefusalLimit::allows(std::string_view host, TimePoint now) {
    forgetBefore(now);
    if (recent.size() >= inAll) return false;
    auto counted = hosts.find(host);
    if (counted == hosts.end()) counted = hosts.try_emplace(std::string(host), 0).first;
    if (counted->second >= perHost) return false;
    ++counted->second;
    recent.emplace_back(now, counted);
    return true;
}

void RefusalLimit::forgetBefore(TimePoint now) {
    while (!recent.empty() && now - recent.front().first >= period) {
        const auto counted = recent.front().second;
        recent.pop_front();
        if (--counted->second == 0) hosts.erase(counted);
    }
}

} // namespace lumbrine
