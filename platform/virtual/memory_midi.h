// MIDI ports inside one process, in virtual and in real time: both sides of the MIDI seam on queues of the runtime.
#pragma once

#include "platform/api/midi_connections.h"
#include "platform/api/midi_services.h"
#include "platform/api/runtime.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace lumbrine {

// A source and a destination of the same name form a pair, and a connection of that name reaches both. Each direction
// of each pair has its own queue, which stands for a system's MIDI thread: it delivers in order, `latency` after
// sending.
class MemoryMIDI final : public MIDIServices, public MIDIConnections {
public:
    explicit MemoryMIDI(Runtime& runtime, Duration latency = Duration::zero());
    ~MemoryMIDI() override;

    // Makes every later call of this kind fail with `status`. Status 0 lets them succeed again.
    enum class Call { createClient, createSource, createDestination, setUniqueID };
    void fail(Call call, MIDIStatus status);

    MIDIStatus createClient(const std::string& name, MIDIClientRef& client) override;
    MIDIStatus createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) override;
    MIDIStatus createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                 MIDIEndpointRef& destination) override;
    void onService(std::function<void(bool isThere)> changed) override { serviceChanged = std::move(changed); }
    std::optional<bool> isConnected(MIDIEndpointRef /*endpoint*/) const override { return connected; }
    MIDIStatus setUniqueID(MIDIEndpointRef endpoint, std::int32_t uniqueID) override;
    MIDIStatus received(MIDIEndpointRef source, ByteView message) override;

    std::unique_ptr<MIDIConnection> connect(const std::string& portName,
                                            std::function<void(ByteView)> incoming) override;

    // For tests to say that the MIDI service is lost or there; the ports do not change.
    std::function<void(bool isThere)> serviceChanged = [](bool) {};

    // For tests to say whether the MIDI service tells of connections, and what it tells.
    std::optional<bool> connected;

private:
    class Hub;
    class Connection;
    std::shared_ptr<Hub> hub;
};

} // namespace lumbrine
