// For tests of the back end on other systems: a fake of the CoreMIDI functions that it calls, with the state that a
// test sets and reads.
#pragma once

#include "platform/macos/testing/core_foundation_calls.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

using OSStatus = std::int32_t;
using ByteCount = unsigned long;
using MIDITimeStamp = std::uint64_t;
using MIDIObjectRef = std::uint32_t;
using MIDIClientRef = MIDIObjectRef;
using MIDIEndpointRef = MIDIObjectRef;
using MIDIPortRef = MIDIObjectRef;
using ItemCount = unsigned long;
struct MIDINotification;

inline constexpr OSStatus kMIDIInvalidClient = -10830;
inline constexpr OSStatus kMIDIInvalidPort = -10831;
inline constexpr OSStatus kMIDIUnknownEndpoint = -10834;
inline constexpr OSStatus kMIDIServerStartErr = -10839;
inline constexpr OSStatus kMIDIObjectNotFound = -10842;

#pragma pack(push, 4)
struct MIDIPacket {
    MIDITimeStamp timeStamp;
    std::uint16_t length;
    std::uint8_t data[256];
};
struct MIDIPacketList {
    std::uint32_t numPackets;
    MIDIPacket packet[1];
};
#pragma pack(pop)

using MIDINotifyBlock = void (^)(const MIDINotification*);
using MIDIReadBlock = void (^)(const MIDIPacketList*, void*);

extern "C" {
extern const CFStringRef kMIDIPropertyName;
extern const CFStringRef kMIDIPropertyUniqueID;

std::uint64_t mach_absolute_time();

OSStatus MIDIClientCreateWithBlock(CFStringRef name, MIDIClientRef* client, MIDINotifyBlock notify);
OSStatus MIDIClientDispose(MIDIClientRef client);
OSStatus MIDISourceCreate(MIDIClientRef client, CFStringRef name, MIDIEndpointRef* source);
OSStatus MIDIDestinationCreateWithBlock(MIDIClientRef client, CFStringRef name, MIDIEndpointRef* destination,
                                        MIDIReadBlock read);
OSStatus MIDIEndpointDispose(MIDIEndpointRef endpoint);
OSStatus MIDIObjectSetIntegerProperty(MIDIObjectRef object, CFStringRef property, std::int32_t value);
OSStatus MIDIObjectGetIntegerProperty(MIDIObjectRef object, CFStringRef property, std::int32_t* value);
OSStatus MIDIObjectGetStringProperty(MIDIObjectRef object, CFStringRef property, CFStringRef* text);
ItemCount MIDIGetNumberOfSources();
MIDIEndpointRef MIDIGetSource(ItemCount index);
ItemCount MIDIGetNumberOfDestinations();
MIDIEndpointRef MIDIGetDestination(ItemCount index);
OSStatus MIDIInputPortCreateWithBlock(MIDIClientRef client, CFStringRef name, MIDIPortRef* port, MIDIReadBlock read);
OSStatus MIDIOutputPortCreate(MIDIClientRef client, CFStringRef name, MIDIPortRef* port);
OSStatus MIDIPortConnectSource(MIDIPortRef port, MIDIEndpointRef source, void* origin);
OSStatus MIDIPortDisconnectSource(MIDIPortRef port, MIDIEndpointRef source);
OSStatus MIDISend(MIDIPortRef port, MIDIEndpointRef destination, const MIDIPacketList* list);
OSStatus MIDIReceived(MIDIEndpointRef source, const MIDIPacketList* list);
MIDIPacket* MIDIPacketNext(const MIDIPacket* packet);
MIDIPacket* MIDIPacketListInit(MIDIPacketList* list);
MIDIPacket* MIDIPacketListAdd(MIDIPacketList* list, ByteCount listSize, MIDIPacket* packet, MIDITimeStamp time,
                              ByteCount size, const std::uint8_t* data);
}

namespace lumbrine::fakes {

// The state of the fake. Each test begins with newCoreMIDI(). A status other than 0 refuses the call, after it has been
// noted. The functions are called within the call, which is therefore as slow as they are; they may call CoreMIDI.
struct CoreMIDI {
    std::vector<std::string> calls;
    std::vector<std::vector<std::uint8_t>> received; // the lists' memory, of 512 bytes each
    std::uint64_t now = 1;                           // the host's clock
    OSStatus clientStatus = 0;
    OSStatus sourceStatus = 0;
    OSStatus destinationStatus = 0;
    OSStatus propertyStatus = 0;
    OSStatus receivedStatus = 0;
    OSStatus portStatus = 0;    // of ports' creation
    OSStatus connectStatus = 0; // of an input with a source
    OSStatus sendStatus = 0;
    bool alignsPackets = true; // as on Apple's processors; false: packets follow each other directly, as on Intel
    int blocks = 0;            // read and notify blocks that it retains
    std::function<void()> duringCreation = [] {}; // of a client
    std::function<void()> duringSend = [] {};     // before a message is handed on, either way
};
CoreMIDI& coreMIDI();
void newCoreMIDI();

// The MIDI server ends, and with it all that was made; creations fail until it is there again.
void endMIDIServer();
void startMIDIServer();

// Delivers packets to a destination, or to an input, as one list. The first is stamped `firstStamp`, and each other one
// a tick later.
void deliver(MIDIObjectRef reader, const std::vector<std::vector<std::uint8_t>>& packets, std::uint64_t firstStamp = 0);

// The inputs that exist, the oldest first.
std::vector<MIDIPortRef> inputs();

} // namespace lumbrine::fakes
