#include "client_link/client_command.h"

#include "base/big_endian.h"
#include "client_link/protocol_version.h"

#include <array>
#include <cstddef>
#include <utility>

namespace lumbrine {

namespace {

constexpr int stripLimit = 16;
constexpr int autoModeLimit = 6;

using Parsed = std::optional<ClientCommand>;

// Called only with a datagram of at least the minimum length of its message.
using Parser = Parsed (*)(ByteView datagram);

struct Message {
    std::size_t minimum = 0; // shortest valid datagram, header included
    Parser parse = nullptr;  // null when no command has this opcode
};

template <typename Command>
Parsed withoutBody(ByteView) {
    return Command{};
}

template <typename Command>
Parsed withStrip(ByteView datagram) {
    return Command{datagram[2]};
}

Parsed faderMove(ByteView datagram) {
    return FaderMove{datagram[2], FaderValue::ofRaw(readBigEndian16(datagram, 3))};
}

Parsed vpotDelta(ByteView datagram) {
    return VpotDelta{datagram[2], static_cast<std::int8_t>(datagram[3])};
}

Parsed panSeek(ByteView datagram) {
    return PanSeek{datagram[2], datagram[3]};
}

Parsed seekBank(ByteView datagram) {
    return SeekBank{readBigEndian16(datagram, 2)};
}

Parsed setAutoMode(ByteView datagram) {
    if (datagram[2] >= stripLimit || datagram[3] >= autoModeLimit) return std::nullopt;
    return SetAutoMode{datagram[2], datagram[3]};
}

Parsed visibleRange(ByteView datagram) {
    return VisibleRange{readBigEndian16(datagram, 2), datagram[4]};
}

// The members of a group message with its count at byte 3. Absent when the datagram ends before the last member.
std::optional<std::vector<int>> membersOf(ByteView datagram) {
    const std::size_t count = datagram[3];
    if (datagram.size() < 4 + 2 * count) return std::nullopt;
    std::vector<int> members;
    members.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        members.push_back(readBigEndian16(datagram, 4 + 2 * i));
    return members;
}

Parsed groupAutoMode(ByteView datagram) {
    auto members = membersOf(datagram);
    if (!members) return std::nullopt;
    return GroupAutoMode{datagram[2], *std::move(members)};
}

template <typename Command>
Parsed groupSwitch(ByteView datagram) {
    auto members = membersOf(datagram);
    if (!members) return std::nullopt;
    return Command{datagram[2] != 0, *std::move(members)};
}

Parsed groupFaders(ByteView datagram) {
    const std::size_t count = datagram[2];
    if (datagram.size() < 3 + 4 * count) return std::nullopt;
    GroupFaders command;
    command.entries.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t entry = 3 + 4 * i;
        command.entries.emplace_back(readBigEndian16(datagram, entry),
                                     FaderValue::ofRaw(readBigEndian16(datagram, entry + 2)).unit());
    }
    return command;
}

// Indexed by opcode. 0x10-0x1F stay unused here, because they are the types of the receiver's own messages.
constexpr std::array<Message, 0x25> messages = [] {
    std::array<Message, 0x25> table{};
    table[0x00] = {2, withoutBody<Hello>};
    table[0x01] = {5, faderMove};
    table[0x02] = {3, withStrip<FaderTouch>};
    table[0x03] = {3, withStrip<FaderRelease>};
    table[0x04] = {3, withStrip<MutePress>};
    table[0x05] = {3, withStrip<SoloPress>};
    table[0x06] = {3, withStrip<RecArmPress>};
    table[0x07] = {4, vpotDelta};
    table[0x08] = {2, withoutBody<PanModeToggle>};
    table[0x09] = {4, panSeek};
    table[0x0A] = {3, [](ByteView datagram) -> Parsed { return BankMove{datagram[2]}; }};
    table[0x0B] = {4, seekBank};
    table[0x0C] = {2, withoutBody<Recalibrate>};
    table[0x0D] = {3, withStrip<SelectPress>};
    table[0x0E] = {3, withStrip<InputMonitorToggle>};
    table[0x0F] = {4, setAutoMode};
    table[0x20] = {4, groupAutoMode};
    table[0x21] = {4, groupSwitch<GroupMute>};
    table[0x22] = {4, groupSwitch<GroupSolo>};
    table[0x23] = {3, groupFaders};
    table[0x24] = {5, visibleRange};
    return table;
}();

} // namespace

bool isClientDatagram(ByteView datagram) {
    return datagram.size() >= 2 && datagram[0] == protocolVersion;
}

std::optional<ClientCommand> parseClientCommand(ByteView datagram) {
    if (!isClientDatagram(datagram)) return std::nullopt;
    const std::uint8_t opcode = datagram[1];
    if (opcode >= messages.size()) return std::nullopt;
    const Message& message = messages[opcode];
    if (message.parse == nullptr || datagram.size() < message.minimum) return std::nullopt;
    return message.parse(datagram);
}

} // namespace lumbrine
