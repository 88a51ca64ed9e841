#include "tests/simulation/answer_checkers.h"

#include "tests/simulation/surface_wire.h"

#include <algorithm>
#include <deque>
#include <map>

namespace lumbrine::simulation {

namespace {

using Violations = std::vector<std::string>;

enum AnswerType : std::uint8_t {
    panMode = 0x15,
    bankPosition = 0x16,
    transport = 0x1D,
    trackRow = 0x1B,
    busy = 0x7D,
    pong = 0x7F
};

// How much there may be within any stretch of that length; tells of the first time that there is more.
class Limit {
public:
    Limit(std::size_t atMost, Duration withinTime) : most(atMost), length(withinTime) {}

    // True when this one is the first too many.
    bool isExceededBy(TimePoint at) {
        while (!times.empty() && at - times.front() >= length)
            times.pop_front();
        times.push_back(at);
        return times.size() > most && !std::exchange(told, true);
    }

private:
    const std::size_t most;
    const Duration length;
    std::deque<TimePoint> times;
    bool told = false;
};

struct PeerLimits {
    Limit refusals{50, seconds(1)};
    Limit states{1, seconds(0.25)};
    Limit rows{200 + 64, seconds(0.1)};
    std::uint8_t lastType = 0;
    TimePoint lastAt = distantPast;
    TimePoint maybeStateAt = distantPast;
};

} // namespace

Violations checkAnswers(const SentDatagrams& sent, const Acceptance& acceptance, const Pauses& pauses) {
    Violations violations;
    std::vector<PeerLimits> limits(sent.peers.size());
    Limit allRefusals{1000, seconds(1)};
    std::map<std::string, std::vector<TimePoint>> pongs; // by whom they went to
    for (const SentDatagram& datagram : sent.list) {
        PeerLimits& peer = limits[datagram.peer];
        const std::string& name = sent.peers[datagram.peer];
        const auto expect = [&](bool exceeded, const std::string& what) {
            if (exceeded) violations.push_back(what + " at " + timeText(datagram.at));
        };
        switch (datagram.type()) {
        case busy:
            expect(peer.refusals.isExceededBy(datagram.at), "more than 50 refusals a second to " + name);
            expect(allRefusals.isExceededBy(datagram.at), "more than 1000 refusals a second");
            break;
        case trackRow:
            expect(peer.rows.isExceededBy(datagram.at), "rows faster than 2000 a second to " + name);
            break;
        case bankPosition:
            if (peer.lastType == panMode && peer.lastAt == datagram.at) peer.maybeStateAt = datagram.at;
            break;
        case transport:
            // At the end of that, at the same moment, only as a part of everything.
            if (std::exchange(peer.maybeStateAt, distantPast) == datagram.at)
                expect(peer.states.isExceededBy(datagram.at), "everything twice within 250 ms to " + name);
            break;
        case pong:
            pongs[name].push_back(datagram.at);
            break;
        default:
            break;
        }
        peer.lastType = datagram.type();
        peer.lastAt = datagram.at;
    }
    for (const ReceivedDatagram& hello : acceptance.accepted) {
        if (hello.bytes.size() < 2 || hello.bytes[0] != 1 || hello.bytes[1] != 0x00) continue;
        std::vector<TimePoint>& times = pongs[hello.sender];
        const auto answer = std::ranges::find_if(times, [&](TimePoint at) { return pauses.explain(hello.at, at); });
        if (answer == times.end()) {
            violations.push_back("no pong for the hello of " + hello.sender + " at " + timeText(hello.at));
        } else {
            times.erase(answer);
        }
    }
    return violations;
}

} // namespace lumbrine::simulation
