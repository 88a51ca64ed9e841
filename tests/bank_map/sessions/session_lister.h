// A second witness beside the displays: tells the receiver what the host has for tracks, as the scripting service or
// the screen would, with every refresh.
#pragma once

#include "tests/studio/studio.h"

#include <memory>

namespace lumbrine {

enum class Witness { none, service, screen };

class SessionLister {
public:
    SessionLister(Studio& servedStudio, Witness kind);

    // For so long the list stays as it is, whatever happens to the session.
    void lag(Duration time);

private:
    void tell();

    Studio& studio;
    const Witness witness;
    TimePoint fresh = distantPast;
    TrackMetadata::TrackList list;
    std::unique_ptr<RepeatingTimer> timer;
};

} // namespace lumbrine
