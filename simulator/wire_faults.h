// Which calls to the scripting service end in a fault of the wire, by chance and on demand. The wires ask for each call
// and do it. Any thread.
#pragma once

#include "simulator/scripting_options.h"

#include <atomic>
#include <cstdint>

namespace lumbrine {

enum class WireFault {
    none,
    reset,  // the call's stream is reset in the place of the reply
    goAway, // a GOAWAY comes in its place, and the connection ends
    die,    // all connections break in its place, and the service is away for a while
};

class WireFaults {
public:
    WireFaults(const ScriptingOptions& chosen, std::uint64_t seed) : options(chosen), firstSeed(seed) {}

    // The fate of a call that has just begun.
    WireFault draw();

    // As many of the next calls end so; not `none`.
    void next(WireFault fault, int calls);

    // No fault from now on, but those that `next` asks for later.
    void rest();

    // Whether there is a wire that asks.
    bool inUse() const { return used; }
    void use() { used = true; }

    const ScriptingOptions options;

private:
    static bool takeOne(std::atomic<int>& wanted);

    const std::uint64_t firstSeed;
    std::atomic<std::uint64_t> drawn = 0;
    std::atomic<int> resets = 0, goAways = 0, deaths = 0; // that `next` asks for
    std::atomic<bool> resting = false;
    std::atomic<bool> used = false;
};

} // namespace lumbrine
