// The fingers of a client on the faders of the receiver.
//
// The touch of a finger that stays down is repeated, so that the receiver soon notices when the network is gone: a
// finger at rest sends nothing else. A release is sent three times, because a fader whose release is lost stays held.
// To the receiver, a touch or release too many changes nothing.
#pragma once

#include "base/bytes.h"
#include "base/strip.h"
#include "platform/api/runtime.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>

namespace lumbrine::remote {

// Main thread only.
class HeldFaders {
public:
    static constexpr Duration touchInterval = seconds(0.5);
    static constexpr Duration releaseInterval = seconds(0.05);
    static constexpr int releases = 3;

    // `send` outlives this object.
    HeldFaders(Runtime& runtime, std::function<void(ByteView)> send);

    void touch(Strip strip);
    void release(Strip strip);

    // Releases all that are held, with one datagram each: for the end of the client.
    void releaseAll();

    // The receiver holds nothing for this client any more. Nothing is repeated after this.
    void forget();

private:
    void sendRelease(Strip strip, int times);
    void later(Strip strip, Duration delay, std::function<void()> job);

    Runtime& runtime;
    const std::function<void(ByteView)> send;
    std::array<bool, stripCount> held{};

    // For each strip the number of its newest `later`, which alone is valid.
    using Numbers = std::array<std::uint64_t, stripCount>;
    std::shared_ptr<Numbers> newest = std::make_shared<Numbers>();
};

} // namespace lumbrine::remote
