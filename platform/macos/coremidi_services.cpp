#include "platform/macos/coremidi_services.h"

#include "platform/macos/autorelease_scope.h"
#include "platform/macos/cf_text.h"

#include <CoreMIDI/CoreMIDI.h>
#include <mach/mach_time.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <type_traits>
#include <utility>

namespace lumbrine {

namespace {

static_assert(std::is_same_v<MIDIClientRef, ::MIDIClientRef> && std::is_same_v<MIDIEndpointRef, ::MIDIEndpointRef>);

constexpr MIDIStatus badArgument = -50; // paramErr, the system's code for an invalid argument
constexpr std::size_t longestPacket = 256;
constexpr std::size_t listSize = 512;

// Packets begin at multiples of 4 bytes on Apple's processors. On Intel's each follows the one before at any address,
// so their fields are copied instead of read in place.
ByteView dataOf(const ::MIDIPacket* packet) {
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(packet);
    std::uint16_t length = 0;
    std::memcpy(&length, bytes + offsetof(::MIDIPacket, length), sizeof length);
    return {bytes + offsetof(::MIDIPacket, data), length};
}

void handOn(const ::MIDIPacketList* list, const MIDIReadBlock& read) {
    const ::MIDIPacket* packet = &list->packet[0];
    for (std::uint32_t left = list->numPackets; left > 0; --left) {
        const ByteView data = dataOf(packet);
        if (!data.empty()) read(data.first(std::min(data.size(), longestPacket)));
        if (left > 1) packet = ::MIDIPacketNext(packet);
    }
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
    if (!text) return badArgument;
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
    if (!text) return badArgument;
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
    if (!text) return badArgument;
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

MIDIStatus CoreMIDIServices::received(MIDIEndpointRef source, ByteView message) {
    const AutoreleaseScope scope; // the thread that sends never ends
    alignas(::MIDIPacketList) std::array<std::uint8_t, listSize> memory{};
    auto* const list = reinterpret_cast<::MIDIPacketList*>(memory.data());
    // A virtual source stamps its packets itself: to its readers 0 would not be now, but the distant past.
    const ::MIDITimeStamp now = ::mach_absolute_time();
    ::MIDIPacket* const first = ::MIDIPacketListInit(list);
    if (::MIDIPacketListAdd(list, listSize, first, now, message.size(), message.data()) == nullptr) return badArgument;
    return ::MIDIReceived(source, list);
}

} // namespace lumbrine
