#include "remote/command_builder.h"

#include "base/big_endian.h"
#include "remote/protocol_version.h"

#include <algorithm>

namespace lumbrine::remote {
namespace {

std::uint8_t byteOf(Strip strip) {
    return static_cast<std::uint8_t>(strip.index());
}

Bytes bare(std::uint8_t opcode) {
    return {protocolVersion, opcode};
}

Bytes ofStrip(std::uint8_t opcode, Strip strip) {
    return {protocolVersion, opcode, byteOf(strip)};
}

Bytes ofGroup(std::uint8_t opcode, std::uint8_t argument, std::span<const Member> members) {
    const std::size_t count = std::min(members.size(), maxMembers);
    Bytes datagram{protocolVersion, opcode, argument, static_cast<std::uint8_t>(count)};
    for (const Member member : members.first(count))
        appendBigEndian16(datagram, member);
    return datagram;
}

} // namespace

Bytes helloCommand(std::optional<std::uint64_t> token) {
    Bytes datagram = bare(0x00);
    if (token) {
        for (int shift = 48; shift >= 0; shift -= 16)
            appendBigEndian16(datagram, static_cast<std::uint16_t>(*token >> shift));
    }
    return datagram;
}

Bytes takeOverCommand() {
    return bare(0x25);
}

Bytes faderTouchCommand(Strip strip) {
    return ofStrip(0x02, strip);
}

Bytes faderMoveCommand(Strip strip, FaderValue value) {
    Bytes datagram = ofStrip(0x01, strip);
    appendBigEndian16(datagram, value.raw());
    return datagram;
}

Bytes faderReleaseCommand(Strip strip) {
    return ofStrip(0x03, strip);
}

Bytes mutePressCommand(Strip strip) {
    return ofStrip(0x04, strip);
}

Bytes soloPressCommand(Strip strip) {
    return ofStrip(0x05, strip);
}

Bytes recArmPressCommand(Strip strip) {
    return ofStrip(0x06, strip);
}

Bytes selectPressCommand(Strip strip) {
    return ofStrip(0x0D, strip);
}

Bytes inputMonitorToggleCommand(Strip strip) {
    return ofStrip(0x0E, strip);
}

Bytes vpotDeltaCommand(Strip strip, std::int8_t clicks) {
    return {protocolVersion, 0x07, byteOf(strip), static_cast<std::uint8_t>(clicks)};
}

Bytes panModeToggleCommand() {
    return bare(0x08);
}

Bytes panSeekCommand(Strip strip, std::uint8_t target) {
    return {protocolVersion, 0x09, byteOf(strip), target};
}

Bytes bankMoveCommand(Move move) {
    return {protocolVersion, 0x0A, static_cast<std::uint8_t>(move)};
}

Bytes seekBankCommand(Member target) {
    Bytes datagram = bare(0x0B);
    appendBigEndian16(datagram, target);
    return datagram;
}

Bytes recalibrateCommand() {
    return bare(0x0C);
}

Bytes setAutoModeCommand(Strip strip, AutoModeKey key) {
    return {protocolVersion, 0x0F, byteOf(strip), static_cast<std::uint8_t>(key)};
}

Bytes groupAutoModeCommand(AutoModeKey key, std::span<const Member> members) {
    return ofGroup(0x20, static_cast<std::uint8_t>(key), members);
}

Bytes groupMuteCommand(bool enabled, std::span<const Member> members) {
    return ofGroup(0x21, enabled ? 1 : 0, members);
}

Bytes groupSoloCommand(bool enabled, std::span<const Member> members) {
    return ofGroup(0x22, enabled ? 1 : 0, members);
}

Bytes groupFadersCommand(std::span<const std::pair<Member, FaderValue>> entries) {
    const std::size_t count = std::min(entries.size(), maxMembers);
    Bytes datagram{protocolVersion, 0x23, static_cast<std::uint8_t>(count)};
    for (const auto& [member, value] : entries.first(count)) {
        appendBigEndian16(datagram, member);
        appendBigEndian16(datagram, value.raw());
    }
    return datagram;
}

Bytes visibleRangeCommand(Member start, std::uint8_t count) {
    Bytes datagram = bare(0x24);
    appendBigEndian16(datagram, start);
    datagram.push_back(count);
    return datagram;
}

} // namespace lumbrine::remote
