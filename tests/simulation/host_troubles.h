// What the user of the host does with sessions and dialogs, as far as the scenario has it by name (host_habits.h). Each
// kind has a chance and times of its own.
#pragma once

#include "tests/simulation/world.h"

#include <functional>
#include <string_view>
#include <vector>

namespace lumbrine::simulation {

class HostTroubles {
public:
    // `disturb` is told how long the host will not do what a host does.
    HostTroubles(World& simulatedWorld, std::function<void(Duration)> disturb);

    // Lets that time pass, with all that falls into it.
    void runFor(Duration time);

    // A session is open, and no dialog.
    void end();

    // From when on everything that a source tells has to be of the session that is open at the end.
    TimePoint tracksSince() const { return newestTracks; }

private:
    struct Kind {
        SeededRandom chance;
        TimePoint next;
        std::function<void(SeededRandom&)> act;
    };

    void add(std::string_view name, void (HostTroubles::*act)(SeededRandom&));
    void closeSession(SeededRandom& chance);
    void exchangeSession(SeededRandom& chance);
    void openSibling(SeededRandom& chance);
    void saveSession(SeededRandom& chance);
    void showDialog(SeededRandom& chance);
    void deafenService(SeededRandom& chance);
    void opensSoon();
    TimePoint nextTime() const;

    World& world;
    const std::function<void(Duration)> disturbed;
    std::vector<Kind> kinds;
    TimePoint newestTracks = distantPast;
    bool serviceIsDeaf = false;
    std::vector<std::pair<TimePoint, std::function<void()>>> afterwards; // what ends what has begun
};

} // namespace lumbrine::simulation
