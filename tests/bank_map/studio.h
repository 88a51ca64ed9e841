// A receiver and a simulated Pro Tools whose session has numbered tracks, in virtual time.
#pragma once

#include "model/testing/model_bench.h"
#include "simulator/simulated_pro_tools.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lumbrine {

// `count` tracks whose displays all differ: "0001", "0002" and so on. Their faders differ too.
SimulatedSession numberedTracks(int count);

// What they show, as the receiver keeps it.
std::vector<std::string> displayNames(int count);

// What is tested here is the order of seconds, not of microseconds.
inline const VirtualRuntime::Options patientThreads{.patience = 16};

// The bank and channel buttons, by their ports.
enum class Press { channelLeft, bankLeft, channelRight, bankRight };

// The bank presses that reached the host on that surface since the last look. Forgets everything else that did.
std::vector<Press> bankPresses(HostEnd& surface);

class Studio {
public:
    explicit Studio(const SimulatedSession& session, const SimulatorOptions& options = {});

    void run(Duration time) { bench.run(time); }

    // Runs until the condition holds; false when it does not within `limit`.
    bool runUntil(const std::function<bool()>& condition, Duration limit) {
        return world.runtime.runUntil(condition, limit);
    }

    // Waits for the scan that the receiver begins by itself some seconds after Pro Tools has appeared; true when it has
    // ended within `limit` of its beginning.
    bool mapSession(Duration limit);

    // Runs until nobody moves the banks any more; the time that took, absent when it is more than `limit`.
    std::optional<Duration> untilQuiet(Duration limit);

    // The bank presses on surface A since the last look.
    std::vector<Press> presses() { return bankPresses(bench.surfaceA); }

    ReceiverParts& parts() { return bench.parts(); }
    ReceiverState& state() { return bench.state(); }
    const PublishedState& shown() { return bench.state().published; }
    int hostOffset() const { return proTools->snapshot().offset; }
    std::vector<int> hostFaders() const;        // of the session's tracks, 0-16383
    std::vector<int> mapFaders();               // the same as the receiver knows them, -1 for unknown
    long logged(const std::string& line) const; // how often

    ModelWorld world{.runtime = NotingRuntime(patientThreads)};
    ModelBench bench{world};
    std::unique_ptr<SimulatedProTools> proTools;
};

} // namespace lumbrine
