// What has to be put right after the computer has slept.
//
// Sockets, MIDI ports and timers outlive a sleep. The network is often another one, or there are some seconds without
// any: then the address that people read off the window is wrong, and nobody has heard the announcement.
#pragma once

#include "platform/api/runtime.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>

namespace lumbrine {

// Main thread.
class WakeHandling {
public:
    struct Actions {
        std::function<bool()> readAddress; // reads this computer's address again; true when it is another one now
        std::function<void()> announceAgain;
    };

    // When the address is looked at, counted from waking.
    static constexpr std::array<Duration, 5> looks{Duration::zero(), seconds(1), seconds(3), seconds(10), seconds(30)};

    WakeHandling(Runtime& rt, Actions wakeActions) : runtime(rt), actions(std::move(wakeActions)) {}

    // Nothing is looked at any more until the computer has woken.
    void willSleep();

    // Announces again at once, and whenever a look finds another address.
    void didWake();

private:
    void look(bool first);

    Runtime& runtime;
    const Actions actions;
    std::shared_ptr<const int> waking; // expires with the next sleep, the next waking or this object
};

} // namespace lumbrine
