#include "platform/macos/coremidi_services.h"

#include "platform/macos/cf_text.h"
#include "platform/macos/packet_batch.h"

#include <CoreMIDI/CoreMIDI.h>

#include <cstddef>
#include <cstring>
#include <type_traits>
#include <utility>

namespace lumbrine {

namespace {

static_assert(std::is_same_v<MIDIClientRef, ::MIDIClientRef> && std::is_same_v<MIDIEndpointRef, ::MIDIEndpointRef>);
static_assert(offsetof(::MIDIPacketList, packet) == MIDIPacketList::headerSize);
static_assert(offsetof(::MIDIPacket, data) == MIDIPacketList::packetHeaderSize);

constexpr MIDIStatus badName = -50; // paramErr, the system's code for an invalid argument

// On Intel processors packets are not aligned, so their fields are copied instead of read in place.
ByteView dataOf(const ::MIDIPacket* packet) {
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(packet);
    std::uint16_t length = 0;
    std::memcpy(&length, bytes + offsetof(::MIDIPacket, length), sizeof length);
    return {bytes + offsetof(::MIDIPacket, data), length};
}

void handOn(const ::MIDIPacketList* list, const MIDIReadBlock& read) {
    PacketBatch batch(read);
    const ::MIDIPacket* packet = &list->packet[0];
    for (std::uint32_t left = list->numPackets; left > 0; --left) {
        batch.add(dataOf(packet));
        if (left > 1) packet = ::MIDIPacketNext(packet);
    }
    batch.finish();
}

} // namespace

CoreMIDIServices::~CoreMIDIServices() {
    for (; !endpoints.empty(); endpoints.pop_back())
        ::MIDIEndpointDispose(endpoints.back());
    for (; !clients.empty(); clients.pop_back())
        ::MIDIClientDispose(clients.back());
}

MIDIStatus CoreMIDIServices::createClient(const std::string& name, MIDIClientRef& client) {
    const auto text = cfString(name);
    if (!text) return badName;
    MIDIClientRef made = 0;
    const MIDIStatus status = ::MIDIClientCreateWithBlock(text.get(), &made,
                                                          ^(const ::MIDINotification*){
                                                          });
    if (status != 0) return status;
    clients.push_back(made);
    client = made;
    return 0;
}

MIDIStatus CoreMIDIServices::createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) {
    const auto text = cfString(name);
    if (!text) return badName;
    MIDIEndpointRef made = 0;
    const MIDIStatus status = ::MIDISourceCreate(client, text.get(), &made);
    if (status != 0) return status;
    endpoints.push_back(made);
    source = made;
    return 0;
}

MIDIStatus CoreMIDIServices::createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                               MIDIEndpointRef& destination) {
    const auto text = cfString(name);
    if (!text) return badName;
    const MIDIReadBlock receiver = std::move(read); // captured by copy: the block outlives this call
    MIDIEndpointRef made = 0;
    const MIDIStatus status =
        ::MIDIDestinationCreateWithBlock(client, text.get(), &made, ^(const ::MIDIPacketList* list, void* /*origin*/) {
          handOn(list, receiver);
        });
    if (status != 0) return status;
    endpoints.push_back(made);
    destination = made;
    return 0;
}

MIDIStatus CoreMIDIServices::setUniqueID(MIDIEndpointRef endpoint, std::int32_t uniqueID) {
    return ::MIDIObjectSetIntegerProperty(endpoint, ::kMIDIPropertyUniqueID, uniqueID);
}

MIDIStatus CoreMIDIServices::received(MIDIEndpointRef source, ByteView packetList) {
    return ::MIDIReceived(source, reinterpret_cast<const ::MIDIPacketList*>(packetList.data()));
}

} // namespace lumbrine
