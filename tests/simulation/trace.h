// What crossed the wires of one session, line by line, so that two builds can be compared (scripts/compare_traces.sh).
#pragma once

#include "platform/api/midi_services.h"
#include "platform/api/runtime.h"
#include "tests/simulation/evidence.h"
#include "tests/simulation/scenario.h"

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace lumbrine::simulation {

class TraceLines {
public:
    // `what`: direction and endpoint.
    void note(TimePoint at, std::string_view what, ByteView bytes);
    void note(TimePoint at, std::string line);

    // In the order of their times, and as noted within one moment.
    std::string text() const;

private:
    std::vector<std::pair<TimePoint, std::string>> lines;
};

struct Trace {
    TraceLines traffic; // datagrams, MIDI packets, wishes to the scripting service
    TraceLines log;     // of the receiver
};

// MIDI services whose traffic is noted, by the names of the endpoints.
class TracedMIDI final : public MIDIServices {
public:
    // All outlive it.
    TracedMIDI(const Runtime& rt, MIDIServices& real, TraceLines& traffic)
        : runtime(rt), services(real), trace(traffic) {}

    MIDIStatus createClient(const std::string& name, MIDIClientRef& client) override;
    MIDIStatus createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) override;
    MIDIStatus createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                 MIDIEndpointRef& destination) override;
    MIDIStatus setUniqueID(MIDIEndpointRef endpoint, std::int32_t uniqueID) override;
    MIDIStatus received(MIDIEndpointRef source, ByteView message) override;

private:
    const Runtime& runtime;
    MIDIServices& services;
    TraceLines& trace;
    std::map<MIDIEndpointRef, std::string> sources; // their names
};

// The session as it is traced: threads take turns in order and none stands still by chance, because what is drawn where
// a program could hand the baton on is another in every build.
Scenario traced(Scenario scenario);

// For each seed two files in that folder: SEED.traffic and SEED.log. False when they cannot be written.
bool writeTraces(const std::string& folder, std::uint64_t firstSeed, std::uint64_t lastSeed, const Switches& switches);

} // namespace lumbrine::simulation
