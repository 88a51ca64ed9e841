// What the displays do not tell of the tracks: full names, colours, input monitoring, the session-wide mute, solo and
// record states, comments. It comes from Pro Tools' scripting service and, without that, from its screen.
//
// This version has a link to neither: a request is accepted and nothing comes of it.
#pragma once

#include "base/strip.h"

namespace lumbrine {

class TrackMetadata {
public:
    // Reads the track list and matches it to the track map by position. Any thread.
    void refreshFullNames() {}

    // Reads the comments of the Mix window. Main thread.
    void refreshComments() {}

    // Flips input monitoring of the track on the strip. Main thread.
    void toggleInputMonitor([[maybe_unused]] Strip strip) {}
};

} // namespace lumbrine
