// Options for the MIDI packets of the simulated Pro Tools: what a system's MIDI driver may do to messages on their way,
// and how they end when a port disappears.
#pragma once

#include <optional>
#include <string>

namespace lumbrine {

enum class RealtimeBytes {
    none,
    between, // F8 and FE between messages
    within,  // also inside messages and SysEx
};

// The form in which a ping reaches the surface: unchanged, or as a note-off after a translation to MIDI 2.0 and back.
enum class PingForm { noteOn, noteOff, noteOffWithoutVelocity }; // 90 00 00, 80 00 40, 80 00 00

struct PacketOptions {
    int messagesPerPacket = 1; // at most; above 1, a ping is after the other messages of the same moment
    RealtimeBytes realtime = RealtimeBytes::none;
    PingForm ping = PingForm::noteOn;
    bool cutSysEx = false; // when a port disappears or a surface is cut off, the end of a SysEx is lost
};

// A description of what is wrong with the options; absent when they are valid.
std::optional<std::string> problemWith(const PacketOptions& options);

} // namespace lumbrine
