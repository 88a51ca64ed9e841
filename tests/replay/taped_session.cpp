#include "tests/replay/taped_session.h"

#include "app/recorded_seams.h"
#include "blackbox/testing/memory_ring.h"
#include "platform/recorded/recorder.h"
#include "platform/virtual/virtual_address.h"
#include "tests/replay/settled_platform.h"
#include "tests/simulation/calm.h"
#include "tests/simulation/trouble.h"
#include "tests/simulation/world.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cstring>
#include <memory>
#include <optional>

namespace lumbrine::simulation {

namespace {

constexpr std::size_t mostBytes = std::size_t{32} << 20;

// All hosts of simulated sessions have IPv4 addresses: "::ffff:192.168.1.100".
blackbox::NumericAddress addressOf(const PeerAddress& peer) {
    blackbox::NumericAddress numeric;
    const auto address = unpack(peer);
    if (!address) return numeric;
    numeric.host[10] = numeric.host[11] = 0xFF;
    numeric.port = address->port;
    std::string_view rest = address->host;
    rest.remove_prefix(rest.rfind(':') + 1);
    for (std::size_t i = 12; i < numeric.host.size(); ++i) {
        const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), numeric.host[i]);
        rest.remove_prefix(std::min<std::size_t>(rest.size(), static_cast<std::size_t>(end - rest.data()) + 1));
    }
    return numeric;
}

class Tape final : public Listener {
public:
    ReceiverPlatform between(VirtualRuntime& runtime, const ReceiverPlatform& platform) override {
        recorder.emplace(runtime, ring.writer);
        settled.emplace(platform, runtime);
        noteAnchor(blackbox::AnchorCause::programBegan);
        seams.emplace(ReceiverPlatform{platform.runtime, settled->midi, settled->sockets, platform.advertiser,
                                       platform.system, settled->streams, platform.json, settled->screen},
                      *recorder, addressOf, Bilingual(false));
        return seams->platform();
    }

    void logged(const std::string& line) override {
        recorder->note(blackbox::Kind::log, 0, {blackbox::textBytes(line)});
    }

    // What comes later is not recorded.
    Bytes end() {
        noteAnchor(blackbox::AnchorCause::programEnded);
        const std::uint64_t size = ring.writer.position();
        EXPECT_LE(size, mostBytes) << "the recording is too long";
        const std::size_t capacity = std::max<std::size_t>(
            (size + blackbox::headerSize - 1) / blackbox::headerSize * blackbox::headerSize, blackbox::leastRing);
        Bytes file = ring.bytes();
        file.resize(blackbox::headerSize + capacity);
        std::vector<std::uint64_t> page(blackbox::headerSize / blackbox::wordSize);
        blackbox::writeHeader({.capacity = capacity, .salt = blackbox::MemoryRing::salt}, page);
        std::memcpy(file.data(), page.data(), blackbox::headerSize);
        return file;
    }

private:
    struct Settled {
        Settled(const ReceiverPlatform& real, VirtualRuntime& runtime)
            : midi(real.midi, runtime), sockets(real.sockets, runtime), streams(real.streams, runtime),
              screen(real.accessibility, runtime) {}

        SettledMIDI midi;
        SettledSockets sockets;
        SettledStreams streams;
        SettledScreen screen;
    };

    void noteAnchor(blackbox::AnchorCause cause) {
        const blackbox::AnchorHead head{.wallTime = recorder->now(), .process = 1};
        recorder->note(blackbox::Kind::anchor, cause,
                       {blackbox::bytesOf(head), blackbox::textBytes("a simulated session")});
    }

    blackbox::MemoryRing ring{mostBytes};
    std::optional<Recorder> recorder;
    std::optional<Settled> settled;
    std::optional<RecordedSeams> seams;
};

} // namespace

Scenario tapedScenario(std::uint64_t seed) {
    Scenario scenario = scenarioOf(seed);
    scenario.turns = VirtualRuntime::Options::Turns::mainLast;
    scenario.hardships.threadStandsStill = false;
    scenario.hardships.mainThreadStalls = false;
    scenario.hardships.machineSleeps = false;
    scenario.hardships.timerOrder = TimerOrder::whenDue;
    return scenario;
}

Bytes tapeOf(const Scenario& scenario) {
    Tape tape;
    World world(scenario, nullptr, &tape);
    Trouble trouble(world);
    trouble.run();
    Calm(world).run();
    return tape.end();
}

} // namespace lumbrine::simulation
