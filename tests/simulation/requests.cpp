#include "tests/simulation/requests.h"

#include <algorithm>
#include <optional>

namespace lumbrine::simulation {

namespace {

int word(const Bytes& bytes, std::size_t at) {
    return bytes[at] * 256 + bytes[at + 1];
}

std::optional<WalkRequest> groupFaders(TimePoint at, const Bytes& bytes) {
    WalkRequest request{.at = at, .kind = WalkRequest::Kind::faders, .steps = bytes[2], .modePort = -1};
    if (bytes.size() < 3 + 4 * static_cast<std::size_t>(bytes[2])) return std::nullopt;
    for (std::size_t i = 0; i < bytes[2]; ++i)
        request.faders.emplace_back(word(bytes, 3 + 4 * i), std::min(word(bytes, 5 + 4 * i), 16383));
    return request;
}

std::optional<WalkRequest> groupMode(TimePoint at, const Bytes& bytes) {
    if (bytes.size() < 4 || bytes.size() < 4 + 2 * static_cast<std::size_t>(bytes[3]) || bytes[2] > 5)
        return std::nullopt;
    WalkRequest request{.at = at, .kind = WalkRequest::Kind::modes, .steps = bytes[3], .modePort = bytes[2]};
    for (std::size_t i = 0; i < bytes[3]; ++i)
        request.members.push_back(word(bytes, 4 + 2 * i));
    return request;
}

std::optional<WalkRequest> range(TimePoint at, const Bytes& bytes) {
    if (bytes.size() < 5) return std::nullopt;
    return WalkRequest{.at = at, .kind = WalkRequest::Kind::range, .steps = std::max<int>(bytes[4], 1)};
}

std::optional<SetterRequest> groupSwitch(TimePoint at, const Bytes& bytes, SetterRequest::Kind kind) {
    if (bytes.size() < 4 || bytes.size() < 4 + 2 * static_cast<std::size_t>(bytes[3])) return std::nullopt;
    SetterRequest request{.at = at, .kind = kind, .enabled = bytes[2] != 0, .tracks = bytes[3]};
    for (std::size_t i = 0; i < bytes[3]; ++i)
        request.members.push_back(word(bytes, 4 + 2 * i));
    return request;
}

void addWithBody(Requests& requests, TimePoint at, const Bytes& bytes, int number) {
    const auto addWalk = [&](std::optional<WalkRequest> walk) {
        if (!walk) return;
        walk->number = number;
        requests.walks.push_back(*std::move(walk));
    };
    const auto addSetter = [&](std::optional<SetterRequest> setter) {
        if (!setter) return;
        setter->number = number;
        requests.setters.push_back(*std::move(setter));
    };
    const bool long4 = bytes.size() >= 4;
    switch (bytes[1]) {
    case 0x09:
        if (long4 && bytes[2] < 16 && bytes[3] >= 1 && bytes[3] <= 11) requests.panSeeks.push_back({at, bytes[2]});
        break;
    case 0x0A:
        if (bytes[2] < 4) requests.bankMoves.push_back({at, bytes[2]});
        break;
    case 0x0B:
        if (long4) requests.seeks.push_back({at, word(bytes, 2)});
        break;
    case 0x0E:
        if (bytes[2] < 16)
            addSetter(SetterRequest{.at = at, .kind = SetterRequest::Kind::inputMonitor, .strip = bytes[2]});
        break;
    case 0x0F:
        if (long4 && bytes[2] < 16 && bytes[3] < 6) requests.autoModes.push_back({at, bytes[2], bytes[3], number});
        break;
    case 0x20:
        addWalk(groupMode(at, bytes));
        break;
    case 0x21:
        addSetter(groupSwitch(at, bytes, SetterRequest::Kind::mute));
        break;
    case 0x22:
        addSetter(groupSwitch(at, bytes, SetterRequest::Kind::solo));
        break;
    case 0x23:
        addWalk(groupFaders(at, bytes));
        break;
    case 0x24:
        addWalk(range(at, bytes));
        break;
    default:
        break;
    }
}

} // namespace

Requests requestsIn(const Acceptance& acceptance) {
    Requests requests;
    for (std::size_t i = 0; i < acceptance.accepted.size(); ++i) {
        const auto& [at, sender, bytes] = acceptance.accepted[i];
        if (bytes.size() < 2 || bytes[0] != 1) continue;
        if (bytes[1] == 0x00) requests.hellos.push_back(at);
        if (bytes[1] == 0x08) requests.panSides.push_back(at);
        if (bytes[1] == 0x0C) requests.scans.push_back(at);
        if (bytes.size() >= 3) addWithBody(requests, at, bytes, acceptance.numbers[i]);
    }
    return requests;
}

} // namespace lumbrine::simulation
