// The input is one datagram from a client. Parsed values must be in range. With one more byte at its end, the datagram
// must still parse to the same kind of command.
#include "client_link/client_command.h"
#include "fuzz/require.h"

namespace {

using namespace lumbrine;

void requireMembers(const std::vector<int>& members, std::size_t datagramSize) {
    require(members.size() <= 255 && 4 + 2 * members.size() <= datagramSize);
    for (const int member : members)
        require(member >= 0 && member <= 0xFFFF);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ByteView datagram(data, size);
    const auto command = parseClientCommand(datagram);
    if (!command) return 0;
    require(isClientDatagram(datagram));

    if (const auto* set = std::get_if<SetAutoMode>(&*command)) require(set->strip < 16 && set->mode < 6);
    if (const auto* group = std::get_if<GroupAutoMode>(&*command)) requireMembers(group->members, size);
    if (const auto* group = std::get_if<GroupMute>(&*command)) requireMembers(group->members, size);
    if (const auto* group = std::get_if<GroupSolo>(&*command)) requireMembers(group->members, size);
    if (const auto* group = std::get_if<GroupFaders>(&*command))
        for (const auto& [member, value] : group->entries)
            require(member >= 0 && member <= 0xFFFF && value >= 0 && value <= 65535 / 16383.0);

    Bytes longer(datagram.begin(), datagram.end());
    longer.push_back(0xFF);
    const auto again = parseClientCommand(longer);
    require(again && again->index() == command->index());
    return 0;
}
