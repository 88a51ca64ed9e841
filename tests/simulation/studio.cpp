#include "tests/simulation/studio.h"

#include "platform/linux/nlohmann_json.h"
#include "platform/virtual/virtual_streams.h"
#include "simulator/default_session.h"

namespace lumbrine::simulation {

namespace {

// A scan whose displays never rest, which keeps the model until it ends.
constexpr Duration longestJob = seconds(600);

class QuietAdvertiser final : public ServiceAdvertiser {
public:
    std::unique_ptr<Advertisement> publish(AdvertisedService) override { return nullptr; }
};

class StudioComputer final : public SystemInfo {
public:
    std::optional<std::string> environment(const std::string&) const override { return std::nullopt; }
    std::vector<std::string> preferredLanguages() const override { return {"en"}; }
    std::optional<std::string> computerName() const override { return "Studio"; }
    std::optional<std::string> primaryIPv4() const override { return receiverAddress; }
};

class Studio {
public:
    explicit Studio(const Scenario& decided)
        : scenario(decided), runtime({.seed = decided.seed}), network(runtime), midi(runtime),
          sockets(runtime, network.host(receiverAddress)), chance(decided.seed * 7 + 3),
          proTools(std::make_unique<SimulatedProTools>(runtime, midi, decided.host,
                                                       defaultSession(decided.tracks, decided.seed))),
          model(ReceiverModel::create({runtime, midi, sockets, advertiser, computer, streams, json}, Bilingual(false),
                                      [](const std::string&) {})) {}

    ~Studio() {
        phones.clear();
        forger.reset();
        const std::weak_ptr<const void> gone = model->lifetime();
        model.reset();
        runtime.runUntil([&] { return gone.expired(); }, longestJob);
        proTools.reset();
    }

    Evidence run() {
        model->start();
        for (int number = 0; number < scenario.phones; ++number)
            phones.push_back(std::make_unique<Phone>(runtime, network, scenario, number));
        network.setFaults(scenario.network);
        trouble();
        calm();
        return collect();
    }

private:
    void trouble() {
        for (const auto& phone : phones)
            phone->act();
        if (scenario.forger) {
            forger = std::make_unique<Forger>(runtime, network, scenario.seed);
            forger->act();
        }
        for (int piece = 0; piece < 10; ++piece) {
            if (scenario.surfacesVanish && chance.oneIn(3))
                proTools->silence(static_cast<int>(chance.below(static_cast<std::uint64_t>(scenario.host.surfaces))),
                                  seconds(0.5) * static_cast<int>(1 + chance.below(12)));
            if (chance.oneIn(4))
                proTools->edit([&](SimulatedSession& session) {
                    if (session.transport().playing) {
                        session.stop();
                    } else {
                        session.play();
                    }
                });
            runtime.runFor(scenario.trouble / 10);
        }
    }

    // Everybody leaves but one phone, what is under way ends, and then that phone asks for everything on a quiet line.
    void calm() {
        for (const auto& phone : phones)
            phone->rest();
        if (forger) forger->rest();
        network.setFaults({});
        proTools->edit([](SimulatedSession& session) {
            session.stop();
            session.changeAll([](SimulatedTrack& track) { track.solo = track.mute = track.recordArmed = false; });
        });
        evidence.troubleEnded = runtime.now();
        runtime.runFor(seconds(2));
        phones.resize(1);
        runtime.runFor(seconds(28));
        // Where names cannot tell the position the receiver scans again and again; in between the line is quiet.
        for (int attempt = 0; attempt < 20; ++attempt) {
            runtime.runUntil([&] { return !model->published().calibrating; }, longestJob);
            phones.front()->client().connect(receiverAddress, receiverPort);
            runtime.runFor(seconds(2));
            if (!model->published().calibrating) break;
        }
    }

    Evidence collect() {
        evidence.datagrams = sockets.received();
        for (int surface = 0; surface < scenario.host.surfaces; ++surface)
            evidence.surfaces.push_back(proTools->received(surface));
        evidence.picture = phones.front()->client().picture();
        evidence.phoneIsConnected = phones.front()->client().state() == remote::LinkState::connected;
        evidence.model = model->published();
        evidence.host = proTools->snapshot();
        evidence.traceHash = runtime.traceHash();
        evidence.virtualTime = runtime.now().time_since_epoch();
        return std::move(evidence);
    }

    const Scenario& scenario;
    VirtualRuntime runtime;
    VirtualNetwork network;
    MemoryMIDI midi;
    VirtualStreams streams{runtime}; // no scripting service
    NlohmannJSON json{Bilingual(false)};
    RecordingSockets sockets;
    QuietAdvertiser advertiser;
    StudioComputer computer;
    SeededRandom chance;
    std::unique_ptr<SimulatedProTools> proTools;
    std::shared_ptr<ReceiverModel> model;
    std::vector<std::unique_ptr<Phone>> phones;
    std::unique_ptr<Forger> forger;
    Evidence evidence;
};

} // namespace

Evidence runSession(const Scenario& scenario) {
    return Studio(scenario).run();
}

} // namespace lumbrine::simulation
