// Builds all commands of a client: values in, datagram out. Pure functions.
//
// A datagram is the version byte 0x01, an opcode and a body; numbers are big-endian (docs/protocol.md).
#pragma once

#include "base/bytes.h"
#include "base/fader_value.h"
#include "base/strip.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>

namespace lumbrine::remote {

// A 0-based position in the session's track list.
using Member = std::uint16_t;

// The direction and size of a bank move. A bank has as many tracks as the surfaces have strips.
enum class Move : std::uint8_t { channelLeft = 0, bankLeft = 1, channelRight = 2, bankRight = 3 };

// The automation keys of a control surface. They differ from the codes in which the receiver reports a mode (AutoMode).
enum class AutoModeKey : std::uint8_t { trim = 0, latch = 1, read = 2, off = 3, write = 4, touch = 5 };

inline constexpr std::size_t maxMembers = 255;

// Asks for the full state. A token other than 0 identifies the device, so that it stays the owner when its address
// changes.
Bytes helloCommand(std::optional<std::uint64_t> token);
Bytes takeOverCommand(); // makes the sender the owner

// Touch a fader before moving it and release it afterwards.
Bytes faderTouchCommand(Strip strip);
Bytes faderMoveCommand(Strip strip, FaderValue value);
Bytes faderReleaseCommand(Strip strip);

// Each press toggles the state.
Bytes mutePressCommand(Strip strip);
Bytes soloPressCommand(Strip strip);
Bytes recArmPressCommand(Strip strip);
Bytes selectPressCommand(Strip strip);
Bytes inputMonitorToggleCommand(Strip strip);

Bytes vpotDeltaCommand(Strip strip, std::int8_t clicks); // clockwise when positive; 0 turns nothing
Bytes panModeToggleCommand();                            // switches the V-Pots to the other side of stereo pans
Bytes panSeekCommand(Strip strip, std::uint8_t target);  // ring position, 1-11

Bytes bankMoveCommand(Move move);
Bytes seekBankCommand(Member target); // brings this track to the first strip
Bytes recalibrateCommand();           // makes the receiver scan the session again

Bytes setAutoModeCommand(Strip strip, AutoModeKey key);

// A command has at most 255 members; further ones are left out.
Bytes groupAutoModeCommand(AutoModeKey key, std::span<const Member> members);
Bytes groupMuteCommand(bool enabled, std::span<const Member> members);
Bytes groupSoloCommand(bool enabled, std::span<const Member> members);
Bytes groupFadersCommand(std::span<const std::pair<Member, FaderValue>> entries);

// Asks for the automation modes and pans of these tracks. The receiver moves the surfaces over them to read them.
Bytes visibleRangeCommand(Member start, std::uint8_t count);

} // namespace lumbrine::remote
