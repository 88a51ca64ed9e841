#include "model/reactions/owner_watch.h"

#include <algorithm>
#include <utility>

namespace lumbrine {

OwnerWatch::OwnerWatch(Runtime& runtime, ReceiverState& state, Bilingual text, ClientEndpoint& endpoint,
                       Surfaces& surfaces)
    : runtime(runtime), state(state), text(text), endpoint(endpoint), surfaces(surfaces) {}

void OwnerWatch::watchOwner() {
    const bool anybody = endpoint.liveOwnerKey().has_value();
    if (std::exchange(ownerThere, anybody) && !anybody) letGo();
}

void OwnerWatch::letGo() {
    surfaces.letHandsGo();
    for (StripState& strip : state.published.strips)
        strip.liftFinger(runtime.now());
}

void OwnerWatch::describeClients() {
    std::string now = description();
    if (now == state.published.iosClientDesc) return;
    if (!now.empty()) state.published.health.lastClient = now;
    state.published.iosClientDesc = std::move(now);
    state.published.changed();
}

// "192.168.1.7 (+1 waiting)"
std::string OwnerWatch::description() {
    const auto loss = endpoint.ownersLoss();
    state.published.health.loss = std::nullopt;
    if (loss) state.published.health.loss = {.received = loss->received, .lost = loss->lost};
    const std::vector<std::string> live = endpoint.connectedIPs();
    std::string owner = endpoint.ownerIP().value_or("");
    const auto waiting = std::ranges::count_if(live, [&owner](const std::string& ip) { return ip != owner; });
    if (waiting == 0) return owner;
    const std::string count = std::to_string(waiting);
    const std::string others = text("(+" + count + " waiting)", "（他 " + count + " 台待機）");
    return owner.empty() ? others : text(owner + " " + others, owner + others);
}

void OwnerWatch::forgetTouches() {
    const bool silent = !state.published.iosConnected;
    if (!std::exchange(isForgotten, silent) && silent) letGo();
}

} // namespace lumbrine
