// Decides which calls to the scripting service end in a fault of the wire, at random and on demand. The wires ask for
// each call and execute the fault. Any thread.
#pragma once

#include "simulator/scripting_options.h"

#include <atomic>
#include <cstdint>

namespace lumbrine {

enum class WireFault {
    none,
    reset,  // instead of a reply, the call's stream is reset
    goAway, // instead of a reply, a GOAWAY is sent, and the connection ends
    die,    // instead of a reply, all connections break, and the service is away for a while
};

class WireFaults {
public:
    WireFaults(const ScriptingOptions& options, std::uint64_t firstSeed) : options(options), firstSeed(firstSeed) {}

    // Returns the fault for a call that has just begun.
    WireFault draw();

    // Gives this fault to the next `calls` calls. `fault` must not be `none`.
    void next(WireFault fault, int calls);

    // Ends all faults. Later calls of `next` still have an effect.
    void rest();

    // True when a wire asks for faults.
    bool inUse() const { return used; }
    void use() { used = true; }

    const ScriptingOptions options;

private:
    static bool takeOne(std::atomic<int>& wanted);

    const std::uint64_t firstSeed;
    std::atomic<std::uint64_t> drawn = 0;
    std::atomic<int> resets = 0, goAways = 0, deaths = 0; // still to come from `next`
    std::atomic<bool> resting = false;
    std::atomic<bool> used = false;
};

} // namespace lumbrine
