// For tests: a receiver and a simulated Pro Tools with numbered tracks, in virtual time.
#pragma once

#include "model/testing/model_bench.h"
#include "simulator/simulated_pro_tools.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lumbrine {

// `count` tracks with different displays, "0001", "0002" and so on, and different faders.
SimulatedSession numberedTracks(int count);

// The same with these names.
SimulatedSession tracksNamed(const std::vector<std::string>& names);

// The displays of the numbered tracks, as the receiver stores them.
std::vector<std::string> displayNames(int count);

// These tests are about times of seconds, so threads need not be interrupted often.
inline const VirtualRuntime::Options patientThreads{.patience = 16};

// The bank and channel buttons, by their ports.
enum class Press { channelLeft, bankLeft, channelRight, bankRight };

// The bank presses that reached the host on this surface since the last call. Drops all other received messages.
std::vector<Press> bankPresses(HostEnd& surface);

class Studio {
public:
    explicit Studio(const SimulatedSession& session, const SimulatorOptions& options = {});

    void run(Duration time) { bench.run(time); }

    // Lets time pass until the condition holds. False when it does not within `limit`.
    bool runUntil(const std::function<bool()>& condition, Duration limit) {
        return world.runtime.runUntil(condition, limit);
    }

    // Waits for the scan that the receiver begins some seconds after Pro Tools has appeared. True when the scan ends
    // within `limit` of its start.
    bool mapSession(Duration limit);

    // Lets time pass until no job moves the banks. Returns the time it took; absent when it exceeds `limit`.
    std::optional<Duration> untilQuiet(Duration limit);

    // The bank presses on surface A since the last call.
    std::vector<Press> presses() { return bankPresses(bench.surfaceA); }

    ReceiverParts& parts() { return bench.parts(); }
    ReceiverState& state() { return bench.state(); }
    const PublishedState& shown() { return bench.state().published; }
    int hostOffset() const { return proTools->snapshot().offset; }
    std::vector<int> hostFaders() const;        // of the session's tracks, 0-16383
    std::vector<int> mapFaders();               // the same as the receiver knows them, -1 for unknown
    long logged(const std::string& line) const; // how often the line was logged

    ModelWorld world{.runtime = NotingRuntime(patientThreads)};
    ModelBench bench{world};
    std::unique_ptr<SimulatedProTools> proTools;
};

} // namespace lumbrine
