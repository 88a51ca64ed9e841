#include "platform/macos/testing/core_midi_calls.h"

#include <Block.h>

#include <cstddef>
#include <cstring>
#include <map>

namespace lumbrine::fakes {

namespace {

enum class Kind { client, source, destination, input, output };

struct Held {
    Kind kind;
    MIDINotifyBlock notify = nullptr;
    MIDIReadBlock read = nullptr;
    std::string name = {};
    std::vector<MIDIEndpointRef> sources = {}; // of an input
    std::vector<MIDIPortRef> owned = {};       // of a client
};

struct State {
    CoreMIDI shown;
    MIDIObjectRef last = 100;
    std::map<MIDIObjectRef, Held> objects;
    bool isAway = false;
};

State& state() {
    static State only;
    return only;
}

MIDIObjectRef add(Held held) {
    state().shown.blocks += (held.notify != nullptr) + (held.read != nullptr);
    state().objects[++state().last] = held;
    return state().last;
}

bool isUnknown(MIDIObjectRef object) {
    return !state().objects.contains(object);
}

bool isKnown(MIDIObjectRef object, Kind kind) {
    return !isUnknown(object) && state().objects.at(object).kind == kind;
}

std::vector<MIDIObjectRef> all(Kind kind) {
    std::vector<MIDIObjectRef> found;
    for (const auto& [ref, held] : state().objects)
        if (held.kind == kind) found.push_back(ref);
    return found;
}

// The block is retained for the call, because the call may dispose of its port.
void hand(const MIDIPacketList* list, MIDIObjectRef reader) {
    const MIDIReadBlock read = Block_copy(state().objects.at(reader).read);
    read(list, nullptr);
    Block_release(read);
}

void drop(MIDIObjectRef object) {
    const Held held = state().objects.at(object);
    if (held.notify != nullptr) Block_release(held.notify);
    if (held.read != nullptr) Block_release(held.read);
    state().shown.blocks -= (held.notify != nullptr) + (held.read != nullptr);
    state().objects.erase(object);
}

std::uint16_t lengthOf(const MIDIPacket* packet) {
    std::uint16_t length = 0;
    std::memcpy(&length, reinterpret_cast<const std::uint8_t*>(packet) + offsetof(MIDIPacket, length), sizeof length);
    return length;
}

std::size_t endOf(std::size_t end) {
    return coreMIDI().alignsPackets ? (end + 3) & ~std::size_t{3} : end;
}

} // namespace

CoreMIDI& coreMIDI() {
    return state().shown;
}

void newCoreMIDI() {
    while (!state().objects.empty())
        drop(state().objects.begin()->first);
    state() = State();
}

void endMIDIServer() {
    while (!state().objects.empty())
        drop(state().objects.begin()->first);
    state().isAway = true;
}

void startMIDIServer() {
    state().isAway = false;
}

std::vector<MIDIPortRef> inputs() {
    return all(Kind::input);
}

void deliver(MIDIObjectRef reader, const std::vector<std::vector<std::uint8_t>>& packets, std::uint64_t firstStamp) {
    constexpr std::size_t header = offsetof(MIDIPacket, data);
    std::size_t size = offsetof(MIDIPacketList, packet);
    for (const auto& packet : packets)
        size = endOf(size + header + packet.size());
    std::vector<std::uint64_t> memory((size + header) / sizeof(std::uint64_t) + 1);
    auto* const bytes = reinterpret_cast<std::uint8_t*>(memory.data());
    const auto count = static_cast<std::uint32_t>(packets.size());
    std::memcpy(bytes, &count, sizeof count);
    std::size_t at = offsetof(MIDIPacketList, packet);
    std::uint64_t stamp = firstStamp;
    for (const auto& packet : packets) {
        std::memcpy(bytes + at + offsetof(MIDIPacket, timeStamp), &stamp, sizeof stamp);
        ++stamp;
        const auto length = static_cast<std::uint16_t>(packet.size());
        std::memcpy(bytes + at + offsetof(MIDIPacket, length), &length, sizeof length);
        if (!packet.empty()) std::memcpy(bytes + at + header, packet.data(), packet.size());
        at = endOf(at + header + packet.size());
    }
    hand(reinterpret_cast<const MIDIPacketList*>(bytes), reader);
}

} // namespace lumbrine::fakes

using namespace lumbrine::fakes;

const CFStringRef kMIDIPropertyName = new FakeCFString(u"name");
const CFStringRef kMIDIPropertyUniqueID = new FakeCFString(u"uniqueID");

std::uint64_t mach_absolute_time() {
    return coreMIDI().now;
}

OSStatus MIDIClientCreateWithBlock(CFStringRef name, MIDIClientRef* client, MIDINotifyBlock notify) {
    coreMIDI().calls.push_back("client " + textOf(name));
    coreMIDI().duringCreation();
    if (state().isAway) return kMIDIServerStartErr;
    if (coreMIDI().clientStatus != 0) return coreMIDI().clientStatus;
    *client = add({.kind = Kind::client, .notify = Block_copy(notify)});
    return 0;
}

OSStatus MIDIClientDispose(MIDIClientRef client) {
    coreMIDI().calls.push_back("end client " + std::to_string(client));
    if (isUnknown(client)) return kMIDIInvalidClient;
    for (const MIDIPortRef port : state().objects.at(client).owned)
        drop(port);
    drop(client);
    return 0;
}

OSStatus MIDISourceCreate(MIDIClientRef client, CFStringRef name, MIDIEndpointRef* source) {
    coreMIDI().calls.push_back("source " + textOf(name) + " of " + std::to_string(client));
    if (isUnknown(client)) return kMIDIInvalidClient;
    if (coreMIDI().sourceStatus != 0) return coreMIDI().sourceStatus;
    *source = add({.kind = Kind::source, .name = textOf(name)});
    return 0;
}

OSStatus MIDIDestinationCreateWithBlock(MIDIClientRef client, CFStringRef name, MIDIEndpointRef* destination,
                                        MIDIReadBlock read) {
    coreMIDI().calls.push_back("destination " + textOf(name) + " of " + std::to_string(client));
    if (isUnknown(client)) return kMIDIInvalidClient;
    if (coreMIDI().destinationStatus != 0) return coreMIDI().destinationStatus;
    *destination = add({.kind = Kind::destination, .read = Block_copy(read), .name = textOf(name)});
    return 0;
}

OSStatus MIDIEndpointDispose(MIDIEndpointRef endpoint) {
    coreMIDI().calls.push_back("end endpoint " + std::to_string(endpoint));
    if (isUnknown(endpoint)) return kMIDIObjectNotFound;
    drop(endpoint);
    return 0;
}

OSStatus MIDIObjectSetIntegerProperty(MIDIObjectRef object, CFStringRef property, std::int32_t value) {
    coreMIDI().calls.push_back(textOf(property) + " of " + std::to_string(object) + " is " + std::to_string(value));
    return isUnknown(object) ? kMIDIObjectNotFound : coreMIDI().propertyStatus;
}

OSStatus MIDIObjectGetIntegerProperty(MIDIObjectRef object, CFStringRef, std::int32_t* value) {
    if (isUnknown(object)) return kMIDIObjectNotFound;
    *value = 0;
    return 0;
}

// The caller releases the text.
OSStatus MIDIObjectGetStringProperty(MIDIObjectRef object, CFStringRef property, CFStringRef* text) {
    if (isUnknown(object) || property != kMIDIPropertyName) return kMIDIObjectNotFound;
    const std::string& name = state().objects.at(object).name;
    *text = CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const std::uint8_t*>(name.data()),
                                    static_cast<CFIndex>(name.size()), kCFStringEncodingUTF8, false);
    return 0;
}

ItemCount MIDIGetNumberOfSources() {
    return all(Kind::source).size();
}

MIDIEndpointRef MIDIGetSource(ItemCount index) {
    return all(Kind::source).at(index);
}

ItemCount MIDIGetNumberOfDestinations() {
    return all(Kind::destination).size();
}

MIDIEndpointRef MIDIGetDestination(ItemCount index) {
    return all(Kind::destination).at(index);
}

OSStatus MIDIInputPortCreateWithBlock(MIDIClientRef client, CFStringRef name, MIDIPortRef* port, MIDIReadBlock read) {
    coreMIDI().calls.push_back("input " + textOf(name) + " of " + std::to_string(client));
    if (!isKnown(client, Kind::client)) return kMIDIInvalidClient;
    if (coreMIDI().portStatus != 0) return coreMIDI().portStatus;
    *port = add({.kind = Kind::input, .read = Block_copy(read)});
    state().objects.at(client).owned.push_back(*port);
    return 0;
}

OSStatus MIDIOutputPortCreate(MIDIClientRef client, CFStringRef name, MIDIPortRef* port) {
    coreMIDI().calls.push_back("output " + textOf(name) + " of " + std::to_string(client));
    if (!isKnown(client, Kind::client)) return kMIDIInvalidClient;
    if (coreMIDI().portStatus != 0) return coreMIDI().portStatus;
    *port = add({.kind = Kind::output});
    state().objects.at(client).owned.push_back(*port);
    return 0;
}

OSStatus MIDIPortConnectSource(MIDIPortRef port, MIDIEndpointRef source, void*) {
    coreMIDI().calls.push_back("connect " + std::to_string(port) + " with " + std::to_string(source));
    if (!isKnown(port, Kind::input)) return kMIDIInvalidPort;
    if (!isKnown(source, Kind::source)) return kMIDIUnknownEndpoint;
    if (coreMIDI().connectStatus != 0) return coreMIDI().connectStatus;
    state().objects.at(port).sources.push_back(source);
    return 0;
}

OSStatus MIDIPortDisconnectSource(MIDIPortRef port, MIDIEndpointRef source) {
    if (!isKnown(port, Kind::input)) return kMIDIInvalidPort;
    std::erase(state().objects.at(port).sources, source);
    return 0;
}

OSStatus MIDISend(MIDIPortRef port, MIDIEndpointRef destination, const MIDIPacketList* list) {
    if (!isKnown(port, Kind::output)) return kMIDIInvalidPort;
    if (!isKnown(destination, Kind::destination)) return kMIDIUnknownEndpoint;
    coreMIDI().duringSend();
    if (coreMIDI().sendStatus != 0) return coreMIDI().sendStatus;
    hand(list, destination);
    return 0;
}

OSStatus MIDIReceived(MIDIEndpointRef source, const MIDIPacketList* list) {
    if (isUnknown(source)) return kMIDIUnknownEndpoint;
    coreMIDI().duringSend();
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(list);
    coreMIDI().received.emplace_back(bytes, bytes + 512);
    if (coreMIDI().receivedStatus != 0) return coreMIDI().receivedStatus;
    for (const MIDIPortRef input : all(Kind::input))
        for (const MIDIEndpointRef connected : state().objects.at(input).sources)
            if (connected == source) hand(list, input);
    return 0;
}

MIDIPacket* MIDIPacketListInit(MIDIPacketList* list) {
    list->numPackets = 0;
    return &list->packet[0];
}

// Of a list that is empty so far.
MIDIPacket* MIDIPacketListAdd(MIDIPacketList* list, ByteCount listSize, MIDIPacket* packet, MIDITimeStamp time,
                              ByteCount size, const std::uint8_t* data) {
    if (offsetof(MIDIPacketList, packet) + offsetof(MIDIPacket, data) + size > listSize) return nullptr;
    packet->timeStamp = time;
    packet->length = static_cast<std::uint16_t>(size);
    std::memcpy(reinterpret_cast<std::uint8_t*>(packet) + offsetof(MIDIPacket, data), data, size);
    ++list->numPackets;
    return packet;
}

MIDIPacket* MIDIPacketNext(const MIDIPacket* packet) {
    const auto start = reinterpret_cast<std::uintptr_t>(packet);
    const std::uintptr_t end = start + offsetof(MIDIPacket, data) + lengthOf(packet);
    return reinterpret_cast<MIDIPacket*>(endOf(end));
}
