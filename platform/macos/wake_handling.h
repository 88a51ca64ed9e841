// Repairs what a sleep of the computer breaks.
//
// Sockets, MIDI ports and timers survive a sleep. But after it the computer is often in a different network, or has
// none for some seconds: then the address shown in the window is wrong, and no client has received the announcement.
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
        std::function<bool()> readAddress; // reads this computer's address again; true when it has changed
        std::function<void()> announceAgain;
    };

    // The times after waking at which the address is read. A network may come back after some seconds.
    static constexpr std::array<Duration, 5> looks{Duration::zero(), seconds(1), seconds(3), seconds(10), seconds(30)};

    WakeHandling(Runtime& runtime, Actions actions) : runtime(runtime), actions(std::move(actions)) {}

    // Cancels the remaining looks.
    void willSleep();

    // Announces again at once, and whenever a look finds a changed address.
    void didWake();

private:
    void look(bool first);

    Runtime& runtime;
    const Actions actions;
    std::shared_ptr<const int> waking; // pending looks hold it weakly: it expires at the next sleep or waking
};

} // namespace lumbrine
