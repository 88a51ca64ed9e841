#include "simulator/status_line.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

namespace lumbrine {

namespace {

std::string_view presence(const SimulatorSnapshot::Surface& surface) {
    if (surface.answering) return "on";
    return surface.connected ? "off" : "gone";
}

std::string bankText(const SimulatorSnapshot& snapshot) {
    if (!snapshot.sessionOpen) return "no session";
    if (snapshot.shownTracks == 0) return "no tracks";
    const int last = std::min(snapshot.offset + snapshot.width, snapshot.shownTracks);
    return std::to_string(snapshot.offset + 1) + "-" + std::to_string(last) + " of " +
           std::to_string(snapshot.shownTracks);
}

std::string transportText(const SimulatedTransport& transport, bool position) {
    std::string text = transport.recording     ? "recording"
                       : transport.playing     ? "playing"
                       : transport.recordReady ? "ready to record"
                                               : "stopped";
    if (!position) return text;
    const auto whole = static_cast<long>(inSeconds(transport.position));
    std::array<char, 32> time{};
    std::snprintf(time.data(), time.size(), " %ld:%02ld", whole / 60, whole % 60);
    return text + time.data();
}

// A HUI has its own characters in place of ASCII's control characters, which would disturb a terminal.
std::string printable(std::string text) {
    std::ranges::replace_if(text, [](char character) { return character < ' ' || character > '~'; }, '?');
    return text;
}

} // namespace

std::string statusLine(const SimulatorSnapshot& snapshot, bool position) {
    std::string line;
    for (std::size_t i = 0; i < snapshot.surfaces.size(); ++i) {
        line += i == 0 ? "A " : ", B ";
        line += presence(snapshot.surfaces[i]);
    }
    line += " | " + bankText(snapshot) + " | " + transportText(snapshot.transport, position) + " |";
    if (snapshot.scriptingPort) line += " scripting on " + std::to_string(*snapshot.scriptingPort) + " |";
    for (const auto& surface : snapshot.surfaces)
        for (const auto& strip : surface.strips)
            if (surface.answering) line += (strip.touched ? "*" : " ") + printable(strip.display);
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

} // namespace lumbrine
