// Virtual MIDI ports of CoreMIDI.
//
// The system's MIDI server, a process of its own, may take seconds to start, and when it ends, every client and port of
// every process is gone without a word. So it is asked on a thread of its own, and looked after: what was lost is made
// again, under the same names and unique IDs.
#pragma once

#include "platform/api/midi_services.h"
#include "platform/api/runtime.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace lumbrine {

// Creation calls: one thread at a time. Each waits for the server for at most `openingTime`; then it fails with
// kMIDIServerStartErr, and onService is told once the server is there. Read blocks are called on CoreMIDI's
// high-priority thread, with the first 256 bytes of a longer packet. A message is refused when it does not fit a packet
// list of 512 bytes. Neither way allocates.
class CoreMIDIServices final : public MIDIServices {
public:
    static constexpr Duration openingTime = seconds(2);
    static constexpr Duration betweenLooks = seconds(2);
    static constexpr std::size_t maxPorts = 16;

    explicit CoreMIDIServices(Runtime& runtime);
    CoreMIDIServices(const CoreMIDIServices&) = delete;
    CoreMIDIServices& operator=(const CoreMIDIServices&) = delete;

    // Removes the ports, the newest first. CoreMIDI may still be inside a read block meanwhile.
    ~CoreMIDIServices() override;

    // A name has one client: a second call with it returns the same.
    MIDIStatus createClient(const std::string& name, MIDIClientRef& client) override;
    MIDIStatus createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) override;
    MIDIStatus createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                 MIDIEndpointRef& destination) override;
    void onReturn(MIDIClientRef client, std::function<void()> back) override;

    // Call it before anything is created.
    void onService(std::function<void(bool isThere)> changed) override;

    MIDIStatus setUniqueID(MIDIEndpointRef endpoint, std::int32_t uniqueID) override;
    MIDIStatus received(MIDIEndpointRef source, ByteView message) override;

private:
    struct Client;
    struct Port;

    MIDIStatus ask(std::function<MIDIStatus()> question);
    MIDIStatus create(MIDIClientRef client, const std::string& name, MIDIReadBlock read, MIDIEndpointRef& endpoint);

    // On the queue.
    static MIDIStatus open(Client& client);
    static MIDIStatus open(const std::shared_ptr<Port>& port);
    static MIDIStatus identify(const Port& port);
    void lookAfter();
    void look();
    bool isLost() const;
    bool restore();
    void closeAll();
    void report(bool nowThere);
    void tell(bool nowThere);

    Runtime& runtime;
    std::function<void(bool)> changed = [](bool) {};
    std::map<MIDIClientRef, std::function<void()>> returns; // of the thread that creates

    // Of the queue.
    std::vector<std::shared_ptr<Client>> clients;
    std::vector<std::shared_ptr<Port>> ports;
    bool isThere = true;
    bool isLookedAfter = false;

    std::array<std::atomic<Port*>, maxPorts + 1> published{}; // by endpoint; 0 is none
    std::atomic<bool> lookSoon{false};

    std::unique_ptr<SerialQueue> queue; // ends first
};

} // namespace lumbrine
