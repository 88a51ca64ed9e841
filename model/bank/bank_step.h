// Which button brings the surfaces nearer to a wanted part of the session. Pure arithmetic on offsets: an offset is the
// session index of the track on strip 0.
#pragma once

#include "base/strip.h"
#include "model/hands/surface_desk.h"

#include <optional>

namespace lumbrine {

// Whether bank buttons lead from between two multiples of the width to the next multiple, or as far as from a multiple.
// Absent: not seen yet, and taken for true.
struct BankRule {
    std::optional<bool> backAligns = {};
    std::optional<bool> forwardAligns = {};

    std::optional<bool>& of(int port) { return port == bank_port::bankBack ? backAligns : forwardAligns; }
};

struct BankLayout {
    int tracks = 0;               // in the session
    int width = stripsPerSurface; // strips shown, which is also how far a bank button goes; more than 0
    BankRule rule = {};

    // Where the last strip shows the last track; 0 for a session that fits.
    int maxOffset() const;
};

struct BankStep {
    int port;
    int predicted; // the offset after it, if Pro Tools does as expected

    bool byBank() const { return port == bank_port::bankBack || port == bank_port::bankForward; }
};

// The next press on the way to `target`, which is another offset than `current`: 0 to maxOffset, or one that Pro Tools
// has shown. Bank buttons are used while they do not lead past the target; channel buttons do the rest. Each step leads
// nearer, so a way of `d` tracks takes at most d / width + width of them.
BankStep nextBankStep(int current, int target, BankLayout layout);

// The same with channel buttons alone, which lead where they should on every host.
BankStep nextChannelStep(int current, int target);

// What it says of the rule that a press of that bank button led from one offset to another; absent when it would have
// led there either way, or to neither place.
std::optional<bool> alignsBy(int port, int from, int to, BankLayout layout);

} // namespace lumbrine
