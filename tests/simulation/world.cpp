#include "tests/simulation/world.h"

#include "model/testing/model_bench.h"
#include "model/testing/session_columns.h"
#include "simulator/default_session.h"

#include <array>

namespace lumbrine::simulation {

namespace {

// A scan whose displays never rest, which keeps the model until it ends.
constexpr Duration longestJob = seconds(600);

// Four letters that every rule for short names leaves alone.
std::string fourLetters(std::size_t number) {
    constexpr std::string_view letters = "BCDFGHJKLMNPQRSTVWXZ";
    std::string name;
    for (int place = 0; place < 4; ++place, number /= letters.size())
        name.insert(name.begin(), letters[number % letters.size()]);
    return name;
}

// Words that no version of a receiver has to know.
void useUnusualModes(SimulatedTrack& track) {
    track.trim = track.id % 3 == 0;
    if (track.id % 4 == 0) track.automation = SimulatedTrack::Automation::touchLatch;
}

void mixKinds(SimulatedTrack& track) {
    using enum SimulatedTrack::Type;
    constexpr std::array kinds{audio, audio, instrument, midi, aux, vca, master, video};
    track.type = kinds[static_cast<std::size_t>(track.id) % kinds.size()];
}

SimulatorOptions recorded(SimulatorOptions options) {
    options.keepsRecord = true;
    return options;
}

ReceiverPlatform heardBy(Listener* listener, VirtualRuntime& runtime, const ReceiverPlatform& platform) {
    return listener == nullptr ? platform : listener->between(runtime, platform);
}

} // namespace

SimulatedSession sessionOf(const Scenario& scenario, int tracks, std::uint64_t seed) {
    SimulatedSession session = defaultSession(tracks, seed);
    std::size_t number = seed == scenario.seed ? 0 : seed % 8000;
    session.changeAll([&](SimulatedTrack& track) {
        if (scenario.namesDiffer) track.name = fourLetters(number++);
        if (scenario.has("hui-characters") && !scenario.namesDiffer && track.id % 5 == 0) track.name.insert(0, "ö");
        if (scenario.has("mode-words")) useUnusualModes(track);
        if (scenario.has("kinds-of-tracks")) mixKinds(track);
        if (scenario.has("held-clips")) track.meter.peak += 6;
        track.comment = commentOn(track.id, 0);
        track.fader =
            FaderValue::ofRaw(static_cast<std::uint16_t>(track.id % 512 * 32)); // tells tracks apart by 9 bits
    });
    return session;
}

World::World(const Scenario& decided, Trace* trace, Listener* listener)
    : scenario(decided), runtime(runtimeOptions(decided)),
      tracedMIDI(trace == nullptr ? std::nullopt
                                  : std::optional<TracedMIDI>(std::in_place, runtime, midi, trace->traffic)),
      sockets(runtime, network.host(receiverAddress), decided.metersArrive, trace),
      proTools(std::make_unique<SimulatedProTools>(runtime, midi, recorded(decided.host),
                                                   sessionOf(decided, decided.tracks, decided.seed))),
      model(ReceiverModel::create(
          heardBy(listener, runtime,
                  {receiverRuntime, midiServices(), sockets, advertiser, computer, streams, json, accessibility()}),
          Bilingual(false),
          [this, trace, listener](const std::string& line) {
              if (listener != nullptr) listener->logged(line);
              lines.emplace_back(runtime.now(), line);
              if (trace != nullptr) trace->log.note(runtime.now(), line);
              if (runtime.onMain() && watch) watch->note(line);
          })),
      watch(std::make_unique<JobWatch>(runtime, state(), *proTools)), begun(runtime.now()) {
    sockets.onSend = [this](ByteView bytes) {
        if (!runtime.onMain() || !watch) return;
        watch->look();
        sends.sent(runtime.now(), watch->anyJob(), bytes);
    };
    model->onChange([this] {
        if (watch) watch->look();
        if (sources) sources->look();
    });
    if (scenario.sources.scripting) service.emplace(runtime, streams, proTools->scripting());
    sources = std::make_unique<SourceWatch>(runtime, state());
    model->start();
    for (int number = 0; number < scenario.phones; ++number)
        phones.push_back(std::make_unique<Phone>(runtime, network, scenario, number));
    network.setFaults(scenario.network);
}

World::~World() {
    watch.reset();
    sources.reset();
    phones.clear();
    forger.reset();
    endReceiver();
    service.reset();
    proTools.reset();
}

MIDIServices& World::midiServices() {
    if (tracedMIDI) return *tracedMIDI;
    return midi;
}

Accessibility& World::accessibility() {
    if (scenario.sources.screen) return proTools->screen();
    return noAccessibility;
}

const ReceiverState& World::state() const {
    return ModelBench::stateOf(*model);
}

Evidence World::collect() {
    Evidence evidence;
    evidence.begun = begun;
    evidence.jobs = watch->takeRecord();
    watch.reset();
    evidence.told = sources->take();
    sources.reset();
    evidence.tracks = tracksOf(*proTools);
    evidence.comments = column(state().published.session, &Track::comment);
    runtime.runUntil([this] { return proTools->screen().liveHandles() == 0; }, seconds(1)); // a read may be under way
    evidence.heldElements = proTools->screen().liveHandles();
    evidence.untimelySends = sends.violations();
    evidence.datagrams = sockets.received();
    evidence.sent = sockets.takeSent();
    evidence.setters = proTools->scripting().setters();
    evidence.lines = lines;
    evidence.record = proTools->takeRecord();
    for (int surface = 0; surface < scenario.host.surfaces; ++surface)
        evidence.surfaces.push_back(proTools->received(surface));
    evidence.picture = phone().picture();
    evidence.phoneIsConnected = phone().state() == remote::LinkState::connected;
    evidence.model = model->published();
    evidence.model.onChange = nullptr;
    evidence.host = proTools->snapshot();
    evidence.virtualTime = runtime.now().time_since_epoch();
    evidence.ending = end(evidence);
    evidence.load = receiverRuntime.peak();
    evidence.pauses = runtime.pauses();
    evidence.traceHash = runtime.traceHash();
    return evidence;
}

namespace {

template <typename Item>
std::vector<Item> since(const std::vector<Item>& items, std::size_t count) {
    return {items.begin() + static_cast<std::ptrdiff_t>(count), items.end()};
}

} // namespace

Ending World::end(const Evidence& before) {
    Ending ending;
    ending.begun = runtime.now();
    watch = std::make_unique<JobWatch>(runtime, state(), *proTools);
    runtime.runFor(phones.front()->actLast());
    ending.runs = watch->takeRecord().runs;
    watch.reset();
    ending.ended = runtime.now();
    endReceiver();
    runtime.runFor(seconds(0.2));
    ending.datagrams = since(sockets.received(), before.datagrams.size());
    for (std::size_t i = 0; i < before.surfaces.size(); ++i)
        ending.surfaces.push_back(since(proTools->received(static_cast<int>(i)), before.surfaces[i].size()));
    return ending;
}

// In the order in which its programs end it (app/receiver_ending.h).
void World::endReceiver() {
    if (!model) return;
    model->letGo();
    receiverRuntime.shutDown();
    streams.shutDown();
    const std::weak_ptr<const void> gone = model->lifetime();
    model.reset();
    runtime.runUntil([&] { return gone.expired(); }, longestJob);
}

} // namespace lumbrine::simulation
