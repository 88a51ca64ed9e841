#include "tests/simulation/presence_checker.h"

#include <algorithm>

namespace lumbrine::simulation {

namespace {

constexpr Duration tick = seconds(0.4);

// The times of something, in order.
using Times = std::vector<TimePoint>;

bool anyBetween(const Times& times, TimePoint from, TimePoint to) {
    const auto next = std::ranges::upper_bound(times, from);
    return next != times.end() && *next <= to;
}

// Counted as there for `period` after each time, as a tick at the latest notices it: surely there, or surely not.
class Judge {
public:
    explicit Judge(const Pauses& ofThreads) : pauses(ofThreads) {}

    bool surelyThere(const Times& times, TimePoint at, Duration period) const {
        return anyBetween(times, at - period, pauses.before(at, tick));
    }
    bool maybeThere(const Times& times, TimePoint at, Duration period) const {
        return anyBetween(times, pauses.before(at, period + tick), at);
    }

private:
    const Pauses& pauses;
};

// A surface answers each ping at once.
Times pingsOf(const std::vector<ReceivedPacket>& packets) {
    Times times;
    for (const ReceivedPacket& packet : packets)
        if (packet.bytes == Bytes{0x90, 0x00, 0x7F}) times.push_back(packet.at);
    return times;
}

Times signsOfLife(const Acceptance& acceptance) {
    Times times;
    for (const ReceivedDatagram& datagram : acceptance.accepted)
        if (datagram.bytes.size() >= 2 && datagram.bytes[0] == 1) times.push_back(datagram.at);
    return times;
}

} // namespace

std::vector<std::string> checkPresence(const Evidence& evidence, const Acceptance& acceptance, const Pauses& pauses) {
    const Duration pingPeriod = seconds(2);
    const Duration clientPeriod = seconds(5);
    const Times pingsA = pingsOf(evidence.surfaces[0]);
    const Times pingsB = evidence.surfaces.size() > 1 ? pingsOf(evidence.surfaces[1]) : Times{};
    const Times signs = signsOfLife(acceptance);

    const Judge judge(pauses);
    std::vector<std::string> violations;
    const auto expect = [&](bool holds, const std::string& what, TimePoint at) {
        if (!holds) violations.push_back(what + " at " + std::to_string(inSeconds(at.time_since_epoch())) + " s");
    };
    for (const PresenceSample& sample : evidence.jobs.presence) {
        const TimePoint at = sample.at;
        expect(!sample.proTools || judge.maybeThere(pingsA, at, pingPeriod), "Pro Tools counts as there", at);
        expect(sample.proTools || !judge.surelyThere(pingsA, at, pingPeriod), "Pro Tools counts as gone", at);
        expect(!sample.client || judge.maybeThere(signs, at, clientPeriod), "the client counts as there", at);
        expect(sample.client || !judge.surelyThere(signs, at, clientPeriod), "the client counts as gone", at);
        const bool both = judge.maybeThere(pingsA, at, pingPeriod) && judge.maybeThere(pingsB, at, pingPeriod);
        const bool surelyBoth = judge.surelyThere(pingsA, at, pingPeriod) && judge.surelyThere(pingsB, at, pingPeriod);
        expect(sample.width == 8 || both, "16 strips", at);
        expect(sample.width == 16 || !surelyBoth, "8 strips", at);
    }
    return violations;
}

} // namespace lumbrine::simulation
