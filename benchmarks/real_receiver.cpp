#include "benchmarks/real_receiver.h"

namespace lumbrine {

RealReceiver::RealReceiver(std::uint16_t port, std::function<void()> onMessage, const Extras& extras)
    : runtime(loop), midi(std::move(onMessage)), system({{"QV_PORT", std::to_string(port)}, {"QV_NO_BONJOUR", "1"}}) {
    if (extras.ring != nullptr) recorded.emplace(*this, *extras.ring);
    MIDIServices& ports = recorded ? static_cast<MIDIServices&>(recorded->midi) : midi;
    DatagramSockets& network = recorded ? static_cast<DatagramSockets&>(recorded->sockets) : sockets;
    model = ReceiverModel::create(
        {runtime, ports, network, advertiser, system, streams, json, accessibility, {}, extras.secrets},
        Bilingual(false), [](const std::string&) {});
    model->start();
    if (extras.key) model->setKeys({*extras.key});
}

void RealReceiver::run() {
    loop.run();
    runtime.shutDown();
    model.reset();
}

} // namespace lumbrine
