// A finger moves the track it was put on, and no other: every act that the host was asked for happened to the track
// that its client was shown, or to none. Judged by the host's own tracks (simulator/host_record.h, shown_tracks.h).
//
// - A touch, a fader move without a finger, a press, a turn, a pan seek and a mode are for the track that the strip's
//   name stood for when the datagram came; presses, turns, pan seeks and modes may be for that of the position, too,
//   where the receiver tells where a seek is going before the host has moved.
// - A client that was never told of the strip, or of the row, means what is there.
// - A fader move under a finger is for the track that the finger was put on.
// - What a walk plays is for the tracks in the rows of its members.
// - What waits goes out within two seconds, on whichever strip shows the track by then.
//
// What nobody can know is nobody's fault: that the host's user or another cause of the host's own put another track on
// the strip which the host had not shown when the act went out. A bank button of the receiver's own that was on its
// way before the act is no such cause, unless the host was stuck.
#pragma once

#include "tests/simulation/evidence.h"
#include "tests/simulation/owner_oracle.h"
#include "tests/simulation/requests.h"
#include "tests/simulation/shown_tracks.h"

#include <string>
#include <vector>

namespace lumbrine::simulation {

struct ActViolations {
    std::vector<std::string> wrongTracks;

    // Acts of clients that had been told no name since they became the owner, on a track that they had not been shown
    // before either.
    std::vector<std::string> ofNewcomers;
};

ActViolations checkActs(const Evidence& evidence, const ShownTracks& shown, const Acceptance& acceptance,
                        const Requests& requests);

} // namespace lumbrine::simulation
