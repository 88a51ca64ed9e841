// One virtual MIDI device as Pro Tools sees it: a client that owns one source (bytes to Pro Tools) and one destination
// (bytes from Pro Tools), all under the same name.
#pragma once

#include "base/bytes.h"
#include "platform/api/midi_services.h"
#include "platform/api/runtime.h"

#include <atomic>
#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <string>

namespace lumbrine {

struct MIDIError {
    MIDIStatus code;
    std::string description; // "MIDISourceCreate failed: -10830"
};

// Lives in a shared_ptr: the system's callbacks and what is still to be announced hold their host weakly.
class MIDIHost : public std::enable_shared_from_this<MIDIHost> {
public:
    // Creates nothing in the system yet. The unique IDs are what lets Pro Tools recognise the ports across launches.
    MIDIHost(Runtime& rt, MIDIServices& midiServices, std::string portName, std::int32_t sourceID,
             std::int32_t destinationID);

    // The bytes of each incoming packet, on the system's MIDI receive thread. Set before `start`, never changed after.
    std::function<void(ByteView)> onIncoming;

    // Creates client, source and destination, in this order, then sets the unique IDs (whose failure is not seen). The
    // first creation that fails ends it; what was made before stays. Once, on any thread.
    std::expected<void, MIDIError> start();

    // One complete MIDI message as one packet, at once. Any thread. Dropped while there is no source; an empty message
    // is no message; one that does not fit a 512-byte packet list (498 bytes of data) is not delivered.
    void send(ByteView message);

    // Sends the single byte FF (system reset) max(times, 1) times, 0.12 s apart, the first at once, from a background
    // queue. Whether there is a source is looked at for each one when its time has come.
    void announcePresence(int times);

    const std::string name;
    const std::int32_t srcUID;
    const std::int32_t dstUID;

private:
    Runtime& runtime;
    MIDIServices& services;
    MIDIClientRef client = 0;
    std::atomic<MIDIEndpointRef> source{0}; // 0 until start has made it
    MIDIEndpointRef destination = 0;
};

} // namespace lumbrine
