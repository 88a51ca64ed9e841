// MIDI ports inside one process: both sides of the MIDI seam over the runtime's queues, in virtual and in real time.
#pragma once

#include "platform/api/midi_connections.h"
#include "platform/api/midi_services.h"
#include "platform/api/runtime.h"

#include <memory>

namespace lumbrine {

// A source and a destination of one name are a pair; a connection of that name reaches both. Each direction of each
// pair delivers in order on a queue of its own, as a system's MIDI thread would, `latency` after the sending.
class MemoryMIDI final : public MIDIServices, public MIDIConnections {
public:
    explicit MemoryMIDI(Runtime& runtime, Duration latency = Duration::zero());
    ~MemoryMIDI() override;

    // Makes the next creation call of that kind, and every later one, fail with `status`; 0 heals it.
    enum class Call { createClient, createSource, createDestination, setUniqueID };
    void fail(Call call, MIDIStatus status);

    MIDIStatus createClient(const std::string& name, MIDIClientRef& client) override;
    MIDIStatus createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) override;
    MIDIStatus createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                 MIDIEndpointRef& destination) override;
    MIDIStatus setUniqueID(MIDIEndpointRef endpoint, std::int32_t uniqueID) override;
    MIDIStatus received(MIDIEndpointRef source, ByteView packetList) override;

    std::unique_ptr<MIDIConnection> connect(const std::string& portName,
                                            std::function<void(ByteView)> incoming) override;

private:
    class Hub;
    class Connection;
    std::shared_ptr<Hub> hub;
};

} // namespace lumbrine
