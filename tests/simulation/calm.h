// The end of all trouble: everybody leaves but one phone, the host does what a host does, and the receiver has to be
// right again in time.
#pragma once

#include "tests/simulation/host_truth.h"
#include "tests/simulation/world.h"

#include <optional>
#include <string>

namespace lumbrine::simulation {

class Calm {
public:
    explicit Calm(World& simulatedWorld) : world(simulatedWorld) {}

    // Lets time pass until the state is right again, then moves a fader from both sides and has the phone ask for the
    // whole state.
    Recovery run();

private:
    void endTrouble();
    void recover();
    void askForScan();
    void tryFader();
    void awaitSources();
    bool faderGoesBothWays(Strip strip);
    void refreshPicture();
    bool commentsAreTold() const;
    void checkScans();

    // What is wrong, in words; empty when nothing is. At rest everybody is there and nobody moves the banks; at peace,
    // what is known also agrees with what is shown, whether or not the map is right where it is not shown.
    std::string wrongWithRest() const;
    std::string wrongWithPeace() const;
    bool anyModeIsShown() const;
    bool positionIsRight() const;
    bool mapIsRight() const;
    bool isRight(const Names& map) const;
    Names knownDisplays() const;

    bool jobsRanSince(TimePoint since) const;
    std::optional<Strip> someStripWithATrack() const;
    int faderOfHost(Strip strip) const;
    void complain(const std::string& what) { recovery.violations.push_back(what); }

    World& world;
    TimePoint ended;
    std::optional<TimePoint> peaceSince;
    Recovery recovery;
};

} // namespace lumbrine::simulation
