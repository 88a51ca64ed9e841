#include "model/receiver_model.h"

#include "model/receiver_parts.h"

#include <cassert>
#include <utility>

namespace lumbrine {

std::shared_ptr<ReceiverModel> ReceiverModel::create(const ReceiverPlatform& platform, Bilingual bilingual,
                                                     LineSink sink) {
    // A job that kept the model alive may be the last to let it go, on any thread.
    const auto destroyOnMain = [&runtime = platform.runtime](ReceiverModel* model) {
        if (runtime.onMain()) {
            delete model;
        } else {
            runtime.postMain([model] { delete model; });
        }
    };
    std::shared_ptr<ReceiverModel> model(new ReceiverModel(platform, bilingual, std::move(sink)), destroyOnMain);
    model->parts->jobs.bind(model);
    model->parts->surfaces.wire(std::shared_ptr<SurfaceListener>(model, &model->parts->feedback));
    platform.midi.onService([weak = std::weak_ptr(model)](bool isThere) {
        const auto held = weak.lock();
        if (held && held->started) held->parts->surfaces.serviceChanged(isThere);
    });
    return model;
}

ReceiverModel::ReceiverModel(const ReceiverPlatform& platform, Bilingual bilingual, LineSink sink)
    : system(platform.system), parts(std::make_unique<ReceiverParts>(platform, Configuration::read(platform.system),
                                                                     bilingual, std::move(sink))) {}

ReceiverModel::~ReceiverModel() {
    // Its thread calls the other parts, so it ends while they are all there.
    parts->endpoint.close();
}

void ReceiverModel::start() {
    assert(parts->jobs.runtime.onMain());
    if (std::exchange(started, true)) return;
    readAddress();
    parts->surfaces.startSurfaces();
    parts->tick.startTimers();
    parts->endpoint.startUDPAndBonjour(
        [&commands = parts->commands](ByteView bytes, const Sender& sender) { commands.handleUDP(bytes, sender); });
}

bool ReceiverModel::readAddress() {
    assert(parts->jobs.runtime.onMain());
    PublishedState& published = parts->state.published;
    const std::string before = std::exchange(published.localIP, system.primaryIPv4().value_or("127.0.0.1"));
    published.changed();
    return published.localIP != before;
}

void ReceiverModel::setKeys(std::vector<PairingKey> keys) {
    parts->endpoint.setKeys(std::move(keys));
}

void ReceiverModel::letOnlyPairedIn(bool on) {
    parts->endpoint.letOnlyPairedIn(on);
}

PairedMode ReceiverModel::pairedMode() const {
    return parts->endpoint.pairedMode();
}

std::vector<TimePoint> ReceiverModel::lastUsesOfKeys() const {
    return parts->endpoint.lastUsesOfKeys();
}

void ReceiverModel::appendLog(const std::string& line) {
    parts->log.appendLog(line);
}

void ReceiverModel::bankMove(int kind) {
    parts->seekWorker.bankMove(kind);
}

void ReceiverModel::seekTo(std::size_t track) {
    parts->seekWorker.seekBank(static_cast<int>(track));
}

void ReceiverModel::reconnectToPT() {
    assert(parts->jobs.runtime.onMain());
    parts->reconnection.reconnectToPT();
}

void ReceiverModel::letGo() {
    assert(parts->jobs.runtime.onMain());
    parts->surfaces.letGo();
}

void ReceiverModel::runDemo() {
    assert(parts->jobs.runtime.onMain());
    parts->faderSweep.run();
}

const PublishedState& ReceiverModel::published() const {
    assert(parts->jobs.runtime.onMain());
    return parts->state.published;
}

void ReceiverModel::onChange(std::function<void()> observer) {
    parts->state.published.onChange = std::move(observer);
}

std::uint16_t ReceiverModel::port() const {
    return parts->endpoint.port;
}

} // namespace lumbrine
