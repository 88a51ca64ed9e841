#include "tests/simulation/suppression_checker.h"

namespace lumbrine::simulation {

namespace {

enum Type : std::uint8_t {
    trackName = 0x10,
    meters = 0x11,
    fader = 0x12,
    switches = 0x13,
    pan = 0x14,
    panMode = 0x15,
    selects = 0x17,
    inputMonitors = 0x1A,
    autoModes = 0x1C,
};

// Null when the message may go out at any time.
const char* heldBack(std::uint8_t type) {
    switch (type) {
    case meters:
        return "meters";
    case fader:
        return "a fader";
    case pan:
        return "a pan";
    case selects:
        return "selects";
    case autoModes:
        return "automation modes";
    default:
        return nullptr;
    }
}

} // namespace

void SuppressionChecker::sent(TimePoint at, bool jobRuns, ByteView message) {
    if (message.size() < 2) return;
    const std::uint8_t type = message[1];
    if (at != lastAt) afterBankView = false;
    lastAt = at;
    if (doubted) {
        if (type == panMode && *doubted == at) {
            doubted.reset();
        } else if (type != trackName || *doubted != at) {
            complain("switches", *doubted);
            doubted.reset();
        }
    }
    if (jobRuns) {
        if (const char* what = heldBack(type)) complain(what, at);
        if (type == switches && !afterBankView) doubted = at;
    }
    if (type != trackName) afterBankView = type == inputMonitors;
}

void SuppressionChecker::complain(const std::string& what, TimePoint at) {
    found.push_back(what + " sent while the surfaces move, at " + std::to_string(inSeconds(at.time_since_epoch())) +
                    " s");
}

std::vector<std::string> SuppressionChecker::violations() {
    if (doubted) complain("switches", *doubted);
    doubted.reset();
    return found;
}

} // namespace lumbrine::simulation
