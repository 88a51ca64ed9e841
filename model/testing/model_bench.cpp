#include "model/testing/model_bench.h"

#include "model/testing/session_columns.h"

namespace lumbrine {

ModelBench::ModelBench(ModelWorld& modelWorld, const Options& options)
    : world(modelWorld), midi(world.runtime), streams(world.runtime), json(Bilingual(options.japanese)),
      surfaceA(world, midi, "Lumbrine"), surfaceB(world, midi, "Lumbrine B"), hostAddress(options.address) {
    computer.address = options.address;
    createModel(options);
}

ModelBench::~ModelBench() {
    surfaceA.stopPinging();
    surfaceB.stopPinging();
    if (!model) return;
    const std::weak_ptr<const void> gone = model->lifetime();
    model.reset();
    world.runtime.runUntil([&gone] { return gone.expired(); }, seconds(60));
}

void ModelBench::createModel(const Options& options) {
    computer.variables = options.variables;
    const ReceiverPlatform platform{.runtime = world.runtime,
                                    .midi = midi,
                                    .sockets = world.network.host(hostAddress),
                                    .advertiser = computer,
                                    .system = computer,
                                    .streams = streams,
                                    .json = json,
                                    .accessibility = screen};
    model = ReceiverModel::create(platform, Bilingual(options.japanese),
                                  [this](const std::string& line) { lines.push_back(line); });
    state().scripting.ptslWarned = !options.scripting;
}

void ModelBench::start() {
    model->start();
    run(seconds(0.3));
    lines.clear();
    mark();
}

void ModelBench::mark() {
    origin = world.runtime.now();
    for (HostEnd* surface : {&surfaceA, &surfaceB}) {
        surface->tape.clear();
        surface->presence.clear();
    }
}

std::unique_ptr<Phone> ModelBench::phone(const std::string& address) {
    return std::make_unique<Phone>(world, address, hostAddress, model->port());
}

void ModelBench::setTrackMap(const std::vector<std::string>& names, int bankOffset) {
    state().published.session = Session::of(names);
    state().published.bankOffset = bankOffset;
}

void ModelBench::learnThatTheHostIsQuick() {
    for (int press = 0; press < HostReaction::enough; ++press) {
        parts().displays.pressed();
        parts().displays.shown(*Strip::of(0), "");
        run(seconds(1));
    }
}

} // namespace lumbrine
