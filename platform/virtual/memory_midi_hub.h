// The ports and connections behind MemoryMIDI.
#pragma once

#include "platform/virtual/memory_midi.h"

#include <array>
#include <map>
#include <string>
#include <vector>

namespace lumbrine {

// One lock guards all state. It is held for look-ups only: no post, no callback and no wait happens under it.
class MemoryMIDI::Hub {
public:
    struct Listener {
        std::function<void(ByteView)> incoming;
        bool wanted = true;
        bool inCallback = false;
    };

    Hub(Runtime& runtime, Duration latency) : runtime(runtime), latency(latency), lock(runtime, Nesting::inBackEnd) {}

    void fail(Call call, MIDIStatus status);
    MIDIStatus createClient(MIDIClientRef& client);
    MIDIStatus createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source);
    MIDIStatus createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                 MIDIEndpointRef& destination);
    MIDIStatus setUniqueID(MIDIEndpointRef endpoint);

    MIDIStatus fromSource(MIDIEndpointRef source, ByteView message);
    void toDestination(const std::string& name, ByteView message);
    bool complete(const std::string& name);

    std::shared_ptr<Listener> listen(const std::string& name, std::function<void(ByteView)> incoming);

    // Returns when the callback of the listener is not running and will not run again.
    void stopListening(const std::string& name, const std::shared_ptr<Listener>& listener);

    // Drops the messages that are on their way. From now on nothing is delivered.
    void close();

private:
    struct Pair {
        MIDIEndpointRef source = 0;
        MIDIEndpointRef destination = 0;
        std::shared_ptr<const MIDIReadBlock> read;
        std::vector<std::shared_ptr<Listener>> listeners;
        std::shared_ptr<SerialQueue> outward; // from the source to the listeners
        std::shared_ptr<SerialQueue> inward;  // to the destination
    };

    MIDIStatus refusal(Call call, MIDIClientRef client) const;
    Pair& pairNamed(const std::string& name);
    void deliverOutward(const std::string& name, ByteView message);
    void deliverInward(const std::string& name, ByteView message);
    static void post(const std::shared_ptr<SerialQueue>& queue, Duration latency, Task task);

    Runtime& runtime;
    const Duration latency;

    mutable Mutex lock;
    std::array<MIDIStatus, 4> failures{};
    MIDIClientRef clients = 0;
    MIDIEndpointRef lastEndpoint = 0;
    std::map<MIDIEndpointRef, std::string> endpoints; // their names
    std::map<std::string, Pair> pairs;
    bool closed = false;
};

} // namespace lumbrine
