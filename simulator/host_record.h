// What the simulated host did and showed, track by track: for whoever judges a receiver by it. Tracks are told by their
// ids, 0 for none; strips count over both surfaces, 0-15. Every list is in the order of its times.
#pragma once

#include "platform/api/runtime.h"
#include "simulator/simulated_session.h"

#include <array>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace lumbrine {

// Something that a surface asked for, and the track that it happened to.
struct HostAct {
    enum class Kind { touch, move, press, turn, mode };

    TimePoint sent; // by the surface
    TimePoint at;   // done by the host
    Kind kind;
    int strip = 0;
    int detail = 0; // move: 0-16383; press: the switch's port; turn: clicks; mode: the mode key's port
    int track = 0;
};

// From then on the strip's display has what there is to say of that track: its name, or its automation mode.
struct ShownTrack {
    TimePoint at;
    int strip = 0;
    int track = 0;
    std::string text; // without the blanks around it
};

// From then on strips have other tracks, also those whose surface is not told.
struct BankChange {
    TimePoint at;
    int offset = 0;
    std::optional<TimePoint>
        pressed; // when a surface sent the button's press; absent when it was not a surface's doing
};

// The tracks that banks go over, in their order, from then on.
struct TrackList {
    TimePoint at;
    std::vector<int> ids;
};

// What that track has from then on.
struct TrackState {
    TimePoint at;
    SimulatedTrack track;
};

struct HostRecord {
    std::vector<HostAct> acts;
    std::vector<ShownTrack> shown;
    std::vector<BankChange> banks;
    std::vector<TrackList> lists;
    std::vector<TrackState> states; // the first of each track is what it began with
};

// Writes it. Guarded by whoever guards the host.
class HostRecorder {
public:
    using TracksOnStrips = std::array<int, 16>;

    HostRecorder(const Runtime& rt, const SimulatedSession& recordedSession);

    // The messages that the host acts on next left their surface then.
    void messagesLeft(TimePoint when) { sent = when; }

    void act(HostAct::Kind kind, int strip, int detail, int track);
    void bankPressed() { bankIsPressed = true; } // a surface's bank button, at work until the next `bank`
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
