#include "tests/simulation/touch_repeats.h"

#include "tests/simulation/time_limits.h"

namespace lumbrine::simulation {

namespace {

constexpr std::uint8_t touchOpcode = 0x02;
constexpr std::uint8_t releaseOpcode = 0x03;
constexpr int strips = 16;

} // namespace

TouchRepeats::TouchRepeats(const Acceptance& acceptance, const Pauses& pauses)
    : may(acceptance.accepted.size()), surely(acceptance.accepted.size()) {
    std::map<int, TimePoint> down; // by strip
    int owner = 0;
    for (std::size_t i = 0; i < acceptance.accepted.size(); ++i) {
        const ReceivedDatagram& datagram = acceptance.accepted[i];
        if (acceptance.numbers[i] != owner) down.clear();
        owner = acceptance.numbers[i];
        const Bytes& bytes = datagram.bytes;
        if (bytes.size() < 3 || bytes[0] != 1 || bytes[2] >= strips) continue;
        if (bytes[1] == releaseOpcode) down.erase(bytes[2]);
        if (bytes[1] != touchOpcode) continue;
        const auto before = down.find(bytes[2]);
        if (before != down.end()) {
            const Duration apart = datagram.at - before->second;
            const Duration lateBefore = pauses.latest(before->second) - before->second;
            const Duration late = pauses.latest(datagram.at) - datagram.at;
            const bool mayShow = apart + late >= shortestRepeat && apart - lateBefore <= longestRepeat;
            const bool shows = apart - lateBefore >= shortestRepeat && apart + late <= longestRepeat;
            if (mayShow) mayBeKnownFrom.try_emplace(owner, datagram.at);
            if (shows) knownFrom.try_emplace(owner, datagram.at);
            may[i] = mayBeKnownFrom.contains(owner);
            surely[i] = knownFrom.contains(owner);
        }
        down[bytes[2]] = datagram.at;
    }
}

Duration TouchRepeats::silenceAfter(const Times& since, int owner, TimePoint at) {
    const auto known = since.find(owner);
    return known != since.end() && known->second <= at ? repeatedSilence : silence;
}

} // namespace lumbrine::simulation
