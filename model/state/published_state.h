// What a shell shows of the receiver. Written and read on the main thread only.
#pragma once

#include "base/rgb_color.h"
#include "base/strip.h"

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace lumbrine {

template <typename Value>
using PerStrip = std::array<Value, stripCount>;

struct PublishedState {
    int winW = stripsPerSurface; // strips shown and mirrored to the client: 8 or 16
    bool huiConnected = false;   // Pro Tools is talking to surface A
    int pingCount = 0;           // pings received on surface A
    bool iosConnected = false;   // a remote client is active
    std::string iosClientDesc;   // the connected clients in words; empty when there is none

    PerStrip<double> faders{}; // 0.0-1.0, or more where somebody has sent more
    PerStrip<std::string> trackNames;
    PerStrip<bool> mutes{};
    PerStrip<bool> solos{};
    PerStrip<bool> selects{};

    std::vector<std::string> logLines; // oldest first, at most 120
    std::string localIP = "127.0.0.1";

    // The session's tracks in bank order. The lists behind trackMap may be shorter than it while they are being
    // learned.
    std::vector<std::string> trackMap; // the short names of the displays; empty while there is no map
    std::vector<std::string> trackMapFull;
    std::vector<std::optional<RGBColor>> trackMapColors;
    std::vector<bool> trackMapInputMon;
    int bankOffset = -1; // session index of the track on strip 0; -1 while unknown
    bool calibrating = false;
    bool panRight = false; // the V-Pots show the right side of stereo pans

    // Whoever changes a field says so afterwards.
    void changed() const {
        if (onChange) onChange();
    }
    std::function<void()> onChange;
};

} // namespace lumbrine
