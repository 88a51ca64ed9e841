#include "tests/simulation/sealed/sealed_session.h"

#include "model/receiver_model.h"
#include "platform/portable/nlohmann_json.h"
#include "platform/portable/no_accessibility.h"
#include "platform/virtual/memory_midi.h"
#include "platform/virtual/null_platform.h"
#include "simulator/default_session.h"
#include "tests/simulation/phone.h"
#include "tests/simulation/sealed/eavesdropper.h"
#include "tests/simulation/sealed/sealed_phone.h"

#include <array>
#include <memory>
#include <utility>

namespace lumbrine::simulation {

namespace {

constexpr int tracks = 24; // some are hidden; there is one on each strip

SimulatorOptions hostOf(const SealedScenario& scenario) {
    SimulatorOptions options;
    options.seed = scenario.seed;
    options.surfaces = 2;
    options.groups = false; // a fader moves by its own finger alone
    return options;
}

std::map<std::string, std::string> variablesOf(const SealedScenario& scenario) {
    std::map<std::string, std::string> variables{{"QV_NO_BONJOUR", "1"}};
    if (scenario.onlyPaired) variables["LUMBRINE_CLIENTS"] = "paired";
    return variables;
}

class Studio {
public:
    explicit Studio(const SealedScenario& decided);
    ~Studio();

    SealedEvidence run();

private:
    void hear(const std::string& host, std::uint16_t port, ByteView bytes);
    void makeTrouble();
    void leaveFaders();
    void fallSilent();
    int phoneAt(const std::string& host);
    void pass(double length) { runtime.runFor(seconds(length)); }

    const SealedScenario& scenario;
    VirtualRuntime runtime;
    VirtualNetwork network{runtime};
    MemoryMIDI midi{runtime};
    NullStreams streams;
    NlohmannJSON json{Bilingual(false)};
    NoAccessibility accessibility;
    NullAdvertiser advertiser;
    const NullComputer computer;
    RecordingSockets sockets;
    ToySecrets secrets;
    std::unique_ptr<SimulatedProTools> proTools;
    std::shared_ptr<ReceiverModel> model;
    Eavesdropper eavesdropper;
    int lastValue = 0;
    std::vector<std::unique_ptr<SealedPhone>> phones;
    SeededRandom chance;
    SealedEvidence evidence;
};

Studio::Studio(const SealedScenario& decided)
    : scenario(decided), runtime({.seed = decided.seed, .patience = decided.patience}), computer(variablesOf(decided)),
      sockets(runtime, network.host(receiverAddress), false, nullptr), secrets(decided.seed),
      proTools(
          std::make_unique<SimulatedProTools>(runtime, midi, hostOf(decided), defaultSession(tracks, decided.seed))),
      model(ReceiverModel::create(
          {runtime, midi, sockets, advertiser, computer, streams, json, accessibility, {}, &secrets}, Bilingual(false),
          [](const std::string&) {})),
      eavesdropper(runtime, network, decided.seed), chance(decided.seed * 43 + 1) {
    network.onDatagram = [this](const std::string& host, std::uint16_t port, ByteView bytes) {
        hear(host, port, bytes);
    };
    model->start();
    model->setKeys({studiosKey});
    for (int number = 0; number < scenario.phones; ++number)
        phones.push_back(std::make_unique<SealedPhone>(runtime, network, scenario, number, lastValue));
}

Studio::~Studio() {
    constexpr Duration longestJob = seconds(600);
    phones.clear();
    model->letGo();
    const std::weak_ptr<const void> gone = model->lifetime();
    model.reset();
    runtime.runUntil([&] { return gone.expired(); }, longestJob);
    proTools.reset();
}

SealedEvidence Studio::run() {
    pass(12); // until the first scan has ended
    evidence.begun = runtime.now();
    makeTrouble();
    leaveFaders();
    fallSilent();
    evidence.arrived = sockets.received();
    evidence.sent = sockets.takeSent();
    for (int surface = 0; surface < proTools->options.surfaces; ++surface)
        evidence.surfaces.push_back(proTools->received(surface));
    evidence.forgeries = eavesdropper.forgeries();
    return std::move(evidence);
}

// Each phone sends from its addresses alone, and the eavesdropper's own datagrams are no phone's.
void Studio::hear(const std::string& host, std::uint16_t port, ByteView bytes) {
    if (!eavesdropper.hear(host, port, bytes)) return;
    if (const int phone = phoneAt(host); phone >= 0)
        evidence.made.push_back({runtime.now(), phone, Bytes(bytes.begin(), bytes.end())});
}

// By the beginning of its address: 192.168.1.100 and on, then 10.0.0.x and on.
int Studio::phoneAt(const std::string& host) {
    for (int number = 0; number < scenario.phones; ++number) {
        const std::string first = "::ffff:192.168.1." + std::to_string(100 + number);
        const std::string later = "::ffff:10.0." + std::to_string(number) + ".";
        if (host == first || host.starts_with(later)) return number;
    }
    return -1;
}

void Studio::makeTrouble() {
    network.setFaults(scenario.network);
    if (scenario.eavesdropper) eavesdropper.act();
    for (const auto& phone : phones)
        phone->act();
    if (!scenario.keyIsTakenAway) return runtime.runFor(scenario.trouble);
    const Duration before = seconds(0.1) * static_cast<int>(chance.below(80));
    const Duration without = seconds(0.1) * static_cast<int>(chance.below(80));
    runtime.runFor(before);
    const TimePoint taken = runtime.now();
    model->setKeys({});
    runtime.runFor(without);
    evidence.withoutKey.push_back({taken, runtime.now()});
    model->setKeys({studiosKey});
    runtime.runFor(scenario.trouble - before - without);
}

// Nothing is lost any more, but the network doubles and reorders as before. One phone stays; of the others there is
// nothing newer that has not come.
void Studio::leaveFaders() {
    for (const auto& phone : phones)
        phone->rest();
    VirtualNetwork::Faults faults = scenario.network;
    faults.loss = 0;
    network.setFaults(faults);
    pass(8);
    phones.resize(1);
    pass(4); // what the others said last has come
    SealedPhone& phone = *phones.front();
    phone.client().takeOver();
    runtime.runUntil([&] { return phone.client().state() == remote::LinkState::connected; }, seconds(20));
    pass(5);
    constexpr std::array strips{0, 5, 9, 12};
    for (const int number : strips)
        phone.touch(*Strip::of(number));
    for (int moves = 1; moves < 15; ++moves, pass(0.02))
        for (const int number : strips)
            phone.move(*Strip::of(number));
    for (const int number : strips)
        evidence.fingers.push_back({number, phone.move(*Strip::of(number))});
    pass(3.5); // fingers rest until all of that has arrived
    for (const int number : strips)
        phone.release(*Strip::of(number));
    pass(5);
    for (const auto& surface : proTools->snapshot().surfaces)
        for (const auto& strip : surface.strips)
            evidence.faders.push_back(strip.fader.raw());
}

void Studio::fallSilent() {
    phones.clear();
    pass(8); // after 6 s the receiver takes them for gone
    evidence.afterAll.first = runtime.now();
    pass(5);
    evidence.afterAll.last = runtime.now();
    evidence.anybodyConnected = model->published().iosConnected;
    eavesdropper.rest();
}

} // namespace

SealedEvidence runSealedSession(const SealedScenario& scenario) {
    return Studio(scenario).run();
}

} // namespace lumbrine::simulation
