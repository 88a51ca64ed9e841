// When a strip's display and what the client was told of it may have differed, so that the strip was closed to the
// client's hands; and when another name came under a finger, which the receiver lifts then. By the host's own displays
// and the names that were sent.
#pragma once

#include "simulator/host_record.h"
#include "tests/simulation/owner_oracle.h"
#include "tests/simulation/pauses.h"

#include <array>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace lumbrine::simulation {

class NameGaps {
public:
    NameGaps() = default; // there are none
    NameGaps(const SentDatagrams& sent, const HostRecord& host, const Acceptance& acceptance, const Pauses& ofThreads);

    // That ownership's client may not have been told what the strip showed when its datagram came. One that has never
    // been in control before may act on what it was told nothing of.
    bool mayBeUntold(int owner, int strip, TimePoint came) const;

    // A client may have been told that the strip is not there.
    bool mayBeHidden(int strip, TimePoint came) const;

    // Another name may have come since, before what came at the second time was carried out. Where a host repeats its
    // displays for a surface that has missed them, what is told shows it.
    bool mayHaveChanged(int strip, TimePoint since, TimePoint came) const;

private:
    struct Text {
        TimePoint from;
        std::string text;
    };
    using Texts = std::vector<Text>;

    static void add(Texts& texts, TimePoint at, std::string text);

    std::array<Texts, 16> names;                        // of displays
    std::array<Texts, 16> told;                         // to any client, when it changed
    std::map<std::pair<int, int>, Texts> toldTo;        // by owner and strip
    std::vector<std::pair<TimePoint, int>> shownStrips; // as they were told to be there
    std::set<int> newcomers;                            // ownerships of devices that had none before
    Pauses pauses;
};

} // namespace lumbrine::simulation
