// One virtual MIDI device as Pro Tools sees it: a client with one source (bytes to Pro Tools) and one destination
// (bytes from Pro Tools), all of the same name.
#pragma once

#include "base/bytes.h"
#include "platform/api/midi_services.h"
#include "platform/api/runtime.h"

#include <atomic>
#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace lumbrine {

struct MIDIError {
    MIDIStatus code;
    std::string description; // "MIDISourceCreate failed: -10830"
};

// Owned by a shared_ptr, because the system's callbacks and pending announcements hold their host weakly.
class MIDIHost : public std::enable_shared_from_this<MIDIHost> {
public:
    // Creates nothing in the system yet. Pro Tools recognises the ports by their unique IDs after a restart.
    MIDIHost(Runtime& runtime, MIDIServices& services, std::string name, std::int32_t srcUID, std::int32_t dstUID);

    // Called with the bytes of each incoming packet, on the system's MIDI receive thread. Set it before `start` and do
    // not change it afterwards.
    std::function<void(ByteView)> onIncoming;

    // Called on the same thread when the ports were lost and are there again, before the first packet after that. Set
    // it before `start`.
    std::function<void()> onReturn;

    // Called on a background thread when the system has refused a unique ID twice, with the error of the second time.
    // Set it before `start`.
    std::function<void(MIDIError)> onIDRefused;

    // Creates client, source and destination, in this order, then sets the unique IDs. One that fails is set once more
    // after `idRetry`. When a creation fails, the rest is not created and what exists stays; another call creates the
    // rest. One thread at a time.
    std::expected<void, MIDIError> start();

    // Sends one complete MIDI message as one packet, at once. Drops it when it is empty, and while there is no source.
    // Any thread.
    void send(ByteView message);

    // Whether another program is connected to both ports; absent while they are not there, and where the system does
    // not tell. On the thread of `start`.
    std::optional<bool> isTaken() const;

    // The number of messages that the source could not send, since the start. Any thread.
    std::uint64_t dropped() const { return droppedCount; }

    // Sends the single byte FF (system reset) max(times, 1) times from background jobs: the first at once, the others
    // 0.12 s apart. A HUI sends it when it is switched on. A byte that falls due while there is no source is dropped.
    void announcePresence(int times);

    static constexpr Duration idRetry = seconds(5);

    const std::string name;
    const std::int32_t srcUID;
    const std::int32_t dstUID;

private:
    void identify(MIDIEndpointRef endpoint, std::int32_t uniqueID);

    Runtime& runtime;
    MIDIServices& services;
    MIDIClientRef client = 0;
    std::atomic<MIDIEndpointRef> source{0}; // 0 until `start` has created it
    MIDIEndpointRef destination = 0;
    std::atomic<std::uint64_t> droppedCount{0};
};

} // namespace lumbrine
