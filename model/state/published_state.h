// What a shell shows of the receiver. Written and read on the main thread only.
#pragma once

#include "base/strip.h"
#include "model/state/health.h"
#include "model/state/session.h"
#include "model/state/strip_state.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace lumbrine {

template <typename Value>
using PerStrip = std::array<Value, stripCount>;

// Who moves the banks. One at a time: two would spoil each other's work.
enum class BankUser {
    seek, // the client's wish to see another part of the session
    scan, // building the track map
    walk, // acting on tracks that the surfaces do not show
};

struct PublishedState {
    int winW = stripsPerSurface; // strips shown and mirrored to the client: 8 or 16
    bool huiConnected = false;   // Pro Tools is talking to surface A
    int pingCount = 0;           // pings received on surface A
    bool iosConnected = false;   // a remote client is active
    std::string iosClientDesc;   // the connected clients in words; empty when there is none

    PerStrip<StripState> strips;
    bool panRight = false; // the V-Pots show the right side of stereo pans

    Session session;
    int bankOffset = -1;                 // index of the track on strip 0; -1 while unknown
    std::optional<BankUser> banksUsedBy; // written by DeskQueue alone

    std::vector<std::string> logLines; // oldest first, at most 120
    std::uint64_t linesLogged = 0;     // since the start
    std::string localIP = "127.0.0.1";
    Health health;

    StripState& strip(Strip which) { return strips[which.slot()]; }
    const StripState& strip(Strip which) const { return strips[which.slot()]; }

    std::span<const StripState> shownStrips() const { return std::span(strips).first(static_cast<std::size_t>(winW)); }

    bool calibrating() const { return banksUsedBy == BankUser::scan; }

    // The index in `session` of the track on a strip; absent where no track is or the position is unknown.
    std::optional<std::size_t> trackOn(std::size_t slot) const {
        const std::size_t track = static_cast<std::size_t>(bankOffset) + slot;
        if (bankOffset < 0 || track >= session.size()) return std::nullopt;
        return track;
    }

    // To be called after a change of any field.
    void changed() const {
        if (onChange) onChange();
    }
    std::function<void()> onChange;
};

} // namespace lumbrine
