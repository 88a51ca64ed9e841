// What can be chosen about the MIDI packets of the simulated Pro Tools: what a system's MIDI driver may do to messages
// on their way, and how they end when a port goes.
#pragma once

#include <optional>
#include <string>

namespace lumbrine {

enum class RealtimeBytes {
    none,
    between, // F8 and FE between messages
    within,  // and in the middle of messages, SysEx too
};

// How a ping reaches the surface: as it is, or as a note-off by way of a translation to MIDI 2.0 and back.
enum class PingForm { noteOn, noteOff, noteOffWithoutVelocity }; // 90 00 00, 80 00 40, 80 00 00

struct PacketOptions {
    int messagesPerPacket = 1; // at most; above 1, a ping comes behind the others that leave at the same moment
    RealtimeBytes realtime = RealtimeBytes::none;
    PingForm ping = PingForm::noteOn;
    bool cutSysEx = false; // a port that goes, or a surface that is cut off, loses the end of a SysEx
};

// What is wrong with the options, in words, or nothing.
std::optional<std::string> problemWith(const PacketOptions& options);

} // namespace lumbrine
