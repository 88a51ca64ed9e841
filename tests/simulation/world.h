// One session in virtual time: the receiver, the simulated Pro Tools, the network and the phones.
#pragma once

#include "model/receiver_model.h"
#include "model/state/receiver_state.h"
#include "platform/portable/nlohmann_json.h"
#include "platform/portable/no_accessibility.h"
#include "platform/virtual/memory_midi.h"
#include "platform/virtual/null_platform.h"
#include "platform/virtual/virtual_streams.h"
#include "simulator/simulated_pro_tools.h"
#include "simulator/testing/virtual_scripting.h"
#include "tests/simulation/evidence.h"
#include "tests/simulation/forger.h"
#include "tests/simulation/phone.h"
#include "tests/simulation/receiver_runtime.h"
#include "tests/simulation/source_watch.h"
#include "tests/simulation/studio_computer.h"
#include "tests/simulation/suppression_checker.h"
#include "tests/simulation/trace.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lumbrine::simulation {

// A session as the scenario has them.
SimulatedSession sessionOf(const Scenario& scenario, int tracks, std::uint64_t seed);

// Somebody between the receiver and its world who listens.
class Listener {
public:
    virtual ~Listener() = default;

    // What the receiver gets in the place of its platform. Once, before it starts.
    virtual ReceiverPlatform between(VirtualRuntime& runtime, const ReceiverPlatform& platform) = 0;

    virtual void logged(const std::string& line) = 0;
};

struct World {
    // The receiver has been started, and the phones look for it. The listener outlives the world.
    explicit World(const Scenario& decided, Trace* trace = nullptr, Listener* listener = nullptr);

    // Everybody leaves, and what is under way ends.
    ~World();

    const ReceiverState& state() const;
    remote::RemoteClient& phone() { return phones.front()->client(); }

    // What the others have seen so far, and how everything is now; then the receiver's program ends.
    Evidence collect();

    const Scenario& scenario;
    VirtualRuntime runtime;
    ReceiverRuntime receiverRuntime{runtime};
    VirtualNetwork network{runtime};
    MemoryMIDI midi{runtime};
    std::optional<TracedMIDI> tracedMIDI; // where there is a trace
    VirtualStreams streams{runtime};
    NlohmannJSON json{Bilingual(false)};
    NoAccessibility noAccessibility;
    RecordingSockets sockets;
    NullAdvertiser advertiser;
    StudioComputer computer{receiverAddress};
    std::unique_ptr<SimulatedProTools> proTools;
    std::optional<VirtualScripting> service; // as the scenario has it
    std::shared_ptr<ReceiverModel> model;
    std::vector<std::pair<TimePoint, std::string>> lines; // of the log
    std::unique_ptr<JobWatch> watch;
    std::unique_ptr<SourceWatch> sources;
    SuppressionChecker sends;
    std::vector<std::unique_ptr<Phone>> phones;
    std::unique_ptr<Forger> forger;
    const TimePoint begun;

private:
    MIDIServices& midiServices();
    Accessibility& accessibility();
    Ending end(const Evidence& before);
    void endReceiver();
};

} // namespace lumbrine::simulation
