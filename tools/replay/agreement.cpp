#include "tools/replay/agreement.h"

#include "blackbox/payload.h"
#include "client_link/state_messages.h"
#include "tools/blackbox/command_words.h"
#include "tools/blackbox/record_words.h"

#include <algorithm>
#include <map>

namespace lumbrine::blackbox {

namespace {

// How far apart in their lane two records may be that are the same.
constexpr std::size_t farthest = 64;

bool isMeters(ByteView datagram) {
    static const std::uint8_t type = metersMessage({}).at(1);
    return datagram.size() > 1 && datagram[1] == type;
}

// Empty for what is not compared: inputs, and how they came.
std::string laneOf(const Record& record) {
    switch (record.kind) {
    case Kind::midiOut:
        return "MIDI of surface " + std::to_string(record.channel + 1);
    case Kind::datagramOut:
        if (isMeters(behind<DatagramHead>(record))) return {};
        return "datagrams to " + addressText(headOf<DatagramHead>(record)->peer);
    case Kind::streamOut:
        return "scripting";
    case Kind::log:
        return "log";
    default:
        return {};
    }
}

using Lanes = std::map<std::string, std::vector<const Record*>>;

Lanes lanesOf(const std::vector<Record>& records) {
    Lanes lanes;
    for (const Record& record : records)
        if (const std::string lane = laneOf(record); !lane.empty()) lanes[lane].push_back(&record);
    return lanes;
}

Agreement compared(const std::string& lane, const std::vector<const Record*>& recorded,
                   const std::vector<const Record*>& replayed) {
    Agreement result{.lane = lane, .recorded = recorded.size(), .replayed = replayed.size()};
    auto next = replayed.begin();
    for (const Record* const each : recorded) {
        const auto end = next + std::min<std::ptrdiff_t>(farthest, replayed.end() - next);
        const auto match = std::find_if(
            next, end, [&](const Record* other) { return std::ranges::equal(each->payload, other->payload); });
        if (match == end) {
            if (result.missing == nullptr) result.missing = each;
            continue;
        }
        ++result.same;
        const Duration apart{(*match)->time - each->time};
        result.latest = std::max(result.latest, std::chrono::abs(apart));
        next = match + 1;
    }
    return result;
}

} // namespace

std::vector<Agreement> agreements(const Replay& replay) {
    const Lanes recorded = lanesOf(replay.recorded);
    Lanes replayed = lanesOf(replay.replayed);
    std::vector<Agreement> all;
    for (const auto& [lane, records] : recorded)
        all.push_back(compared(lane, records, replayed[lane]));
    for (const auto& [lane, records] : replayed)
        if (!recorded.contains(lane)) all.push_back({.lane = lane, .replayed = records.size()});
    return all;
}

} // namespace lumbrine::blackbox
