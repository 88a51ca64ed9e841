// A record of what the simulated host did and showed, by track, for tests that judge a receiver by it. Tracks are ids,
// 0 for none. Strips are numbered 0-15 across both surfaces. Every list is ordered by time.
#pragma once

#include "platform/api/runtime.h"
#include "simulator/simulated_session.h"

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace lumbrine {

// An action of a surface, and the track that it affected.
struct HostAct {
    enum class Kind { touch, move, press, turn, mode };

    TimePoint sent; // by the surface
    TimePoint at;   // done by the host
    Kind kind;
    int strip = 0;
    int detail = 0; // move: 0-16383; press: the switch's port; turn: clicks; mode: the mode key's port
    int track = 0;
};

// The scripting service switched something of this track.
struct HostWish {
    TimePoint at;
    std::int32_t command = 0;
    bool enabled = false;
    int track = 0;
};

// From `at` on, the strip's display shows this track: its name, or its automation mode.
struct ShownTrack {
    TimePoint at;
    int strip = 0;
    int track = 0;
    std::string text; // without blanks at either end
};

// From `at` on, the strips have other tracks, also those whose display is not sent.
struct BankChange {
    TimePoint at;
    int offset = 0;
    std::optional<TimePoint>
        pressed; // when a surface sent the button's press; absent when it was not a surface's doing
};

// From `at` on, these are the shown tracks in order.
struct TrackList {
    TimePoint at;
    std::vector<int> ids;
};

// From `at` on, this is the state of the track.
struct TrackState {
    TimePoint at;
    SimulatedTrack track;
};

struct HostRecord {
    std::vector<HostAct> acts;
    std::vector<HostWish> wishes;
    std::vector<ShownTrack> shown;
    std::vector<BankChange> banks;
    std::vector<TrackList> lists;
    std::vector<TrackState> states; // the first one of each track is its state at the start
};

// Writes the record. Not synchronised: the lock of the host must be held.
class HostRecorder {
public:
    using TracksOnStrips = std::array<int, 16>;

    HostRecorder(const Runtime& runtime, const SimulatedSession& session);

    // Sets the time at which the surface sent the messages that the host handles next.
    void messagesLeft(TimePoint when) { sent = when; }

    void act(HostAct::Kind kind, int strip, int detail, int track);
    void wish(std::int32_t command, bool enabled, int track);
    void bankPressed() { bankIsPressed = true; } // a surface has pressed a bank button; the next `bank` is its effect
    void bank(int offset, const TracksOnStrips& tracks);
    void show(int strip, int track, std::string text);
    void change(const SessionChange& change);

    HostRecord take() { return std::move(record); }

private:
    void noteList();
    void noteState(const SimulatedTrack& track);

    const Runtime& runtime;
    const SimulatedSession& session;
    HostRecord record;
    TimePoint sent;
    bool bankIsPressed = false;
    TracksOnStrips tracksNow{};
    std::map<int, SimulatedTrack> statesNow; // by id
    std::array<ShownTrack, 16> shownNow;
};

} // namespace lumbrine
