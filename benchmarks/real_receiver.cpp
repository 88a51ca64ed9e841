#include "benchmarks/real_receiver.h"

namespace lumbrine {

RealReceiver::RealReceiver(std::uint16_t port, std::function<void()> onMessage)
    : runtime(loop), midi(std::move(onMessage)), system({{"QV_PORT", std::to_string(port)}, {"QV_NO_BONJOUR", "1"}}) {
    model = ReceiverModel::create({runtime, midi, sockets, advertiser, system, streams, json, accessibility},
                                  Bilingual(false), [](const std::string&) {});
    model->start();
}

void RealReceiver::run() {
    loop.run();
    runtime.shutDown();
    model.reset();
}

} // namespace lumbrine
