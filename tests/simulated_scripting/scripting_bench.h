// For tests: the scripting link on one side of a virtual network and a simulated Pro Tools on the other.
#pragma once

#include "platform/portable/nlohmann_json.h"
#include "platform/virtual/memory_midi.h"
#include "ptsl/ptsl_client.h"
#include "simulator/default_session.h"
#include "simulator/simulated_pro_tools.h"
#include "simulator/testing/virtual_scripting.h"

#include <optional>

namespace lumbrine {

class ScriptingTest : public testing::Test {
protected:
    void start(const ScriptingOptions& scripting = {}, int count = 24, SessionStyle style = {}) {
        service.reset();
        SimulatorOptions options;
        options.scripting = scripting;
        proTools = std::make_unique<SimulatedProTools>(runtime, midi, options, defaultSession(count, 1, style));
        service.emplace(runtime, streams, proTools->scripting());
    }

    // Runs a command of the client on a queue, as the receiver does, and waits for its end.
    template <typename Command>
    std::string run(Command command) {
        std::optional<std::string> outcome;
        const TimePoint begin = runtime.now();
        queue->post([&] {
            const auto result = command(client);
            outcome = result ? "done" : description(result.error(), english);
        });
        EXPECT_TRUE(runtime.runUntil([&] { return outcome.has_value(); }, seconds(200)));
        lasted = runtime.now() - begin;
        return outcome.value_or("no end");
    }

    std::string list() {
        return run([this](PTSLClient& ptsl) {
            auto result = ptsl.trackList();
            if (result) tracks = *result;
            return result;
        });
    }

    std::string mute(const std::string& name, bool enabled) {
        return run([&](PTSLClient& ptsl) { return ptsl.setMute({name}, enabled); });
    }

    WireFaults& faults() { return proTools->scripting().wireFaults(); }

    const Bilingual english{false};
    VirtualRuntime runtime;
    MemoryMIDI midi{runtime};
    VirtualStreams streams{runtime};
    NlohmannJSON json{english};
    PTSLClient client{runtime, streams, json, english, "Tarnwick", "Lumbrine"};
    std::unique_ptr<SerialQueue> queue = runtime.serialQueue("com.tarnwick.lumbrine.ptsl", Priority::utility);

    std::unique_ptr<SimulatedProTools> proTools;
    std::optional<VirtualScripting> service;

    std::vector<PTSLTrack> tracks; // the last list
    Duration lasted{};             // duration of the last command
};

} // namespace lumbrine
