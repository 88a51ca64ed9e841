// Everything the receiver knows about Pro Tools and the client. Main thread only, except the atomic fields; what other
// threads must see lives in small classes with a lock of their own (Meters, DisplayWatch).
#pragma once

#include "model/state/published_state.h"
#include "platform/api/time.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <optional>
#include <string>

namespace lumbrine {

// What a strip showed at some moment, to find it again after the surfaces have moved.
struct TrackOnStrip {
    Strip strip;
    std::string name;
    std::optional<std::size_t> index; // in the session; absent while the position was unknown, and beyond the window
    std::uint64_t map;                // number of the session
    std::uint64_t move;               // `bankMoves` then
};

// A track of the session, to find it again when the session has changed.
struct TrackRef {
    std::size_t index; // in the session then
    TrackIdentity track;
    std::string display;
    std::uint64_t map; // number of the session then
};

// When somebody was last heard. The times of arrival are written where pings and datagrams arrive: nobody may count as
// gone because the main thread is late.
struct Presence {
    TimePoint firstPingAt = distantPast;          // start of the current run of pings, on either surface
    std::atomic<TimePoint> lastPing{distantPast}; // surface A
    std::atomic<TimePoint> lastPingB{distantPast};
    std::atomic<TimePoint> lastUDP{distantPast};
    std::atomic<TimePoint> lastHand{distantPast}; // on a fader
};

// What decides when the next scan comes, and what the log has said about it.
struct ScanState {
    int locateStuckTicks = 0;
    TimePoint lastAutoCalibrationAt = distantPast;
    bool calibrationRetried = false;
    bool warnedTransportSkip = false;
    bool repeated = false;             // the last one found what the one before had found: a third would as well
    std::vector<std::string> endedOn;  // the names that were shown at its end
    bool sawNothing = false;           // the last one found a session without tracks
    TimePoint emptiedAt = distantPast; // when the last shown name went
};

// How it goes with Pro Tools' scripting service.
struct ScriptingState {
    bool ptslOK = false;     // the last track list came
    bool ptslWarned = false; // the log has told of a failure
};

struct ReceiverState {
    PublishedState published;
    Presence presence;
    ScanState scans;
    ScriptingState scripting;

    std::uint64_t mapNumber = 0; // a new one for each session that is not the one before
    std::uint64_t bankMoves = 0; // changes when a job takes the banks (odd then), gives them back, or a session closes

    bool transportPlaying = false;
    bool transportRecording = false;
    TimePoint lastAutoPollAll = distantPast;
    bool fullTableDirty = false; // the client has not yet been told of the latest changes of the session

    // Nobody is moving the banks, so what the surfaces show is what the user chose.
    bool quiet() const { return !published.banksUsedBy; }
    TrackOnStrip shownOn(Strip strip) const {
        return {.strip = strip,
                .name = published.strip(strip).name,
                .index = strip.index() < published.winW ? published.trackOn(strip.slot()) : std::nullopt,
                .map = mapNumber,
                .move = bankMoves};
    }

    // `index` is one of the session's.
    TrackRef trackAt(std::size_t index) const;

    // Where in the session that track is now; absent when it has gone, or when it is not sure.
    std::optional<std::size_t> placeOf(const TrackRef& track) const;

    // The strip that shows that track now; absent when none does, or when it is not sure.
    std::optional<Strip> stripShowing(const TrackOnStrip& track) const;

    // A finger is on a fader, or has just moved one. What the receiver does of its own accord waits for it: it would
    // move the tracks away from under the finger.
    bool handsOn(TimePoint now) const {
        return now - presence.lastHand.load() < StripState::handRest ||
               std::ranges::any_of(published.strips, [now](const StripState& strip) { return strip.handOn(now); });
    }

    bool transportRunning() const { return transportPlaying || transportRecording; }
};

} // namespace lumbrine
