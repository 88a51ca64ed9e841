#include "tests/simulation/second_receiver.h"

#include "model/receiver_model.h"
#include "platform/portable/nlohmann_json.h"
#include "platform/portable/no_accessibility.h"
#include "platform/virtual/memory_midi.h"
#include "platform/virtual/null_platform.h"
#include "platform/virtual/virtual_streams.h"
#include "tests/simulation/phone.h"
#include "tests/simulation/studio_computer.h"

#include <array>
#include <utility>

namespace lumbrine::simulation {

struct SecondReceiver::Rig {
    Rig(VirtualRuntime& runtime, VirtualNetwork& network)
        : midi(runtime), streams(runtime),
          model(ReceiverModel::create(
              {runtime, midi, network.host(secondReceiverAddress), advertiser, computer, streams, json, accessibility},
              Bilingual(false), [](const std::string&) {})) {
        model->start();
    }

    MemoryMIDI midi;
    VirtualStreams streams;
    NlohmannJSON json{Bilingual(false)};
    NoAccessibility accessibility;
    NullAdvertiser advertiser;
    StudioComputer computer{secondReceiverAddress};
    std::shared_ptr<ReceiverModel> model;
};

SecondReceiver::SecondReceiver(VirtualRuntime& rt, VirtualNetwork& virtualNetwork)
    : runtime(rt), network(virtualNetwork), rig(std::make_unique<Rig>(rt, virtualNetwork)) {}

SecondReceiver::~SecondReceiver() {
    const std::weak_ptr<const void> gone = rig->model->lifetime();
    rig->model.reset();
    runtime.runUntil([&] { return gone.expired(); }, seconds(60));
}

void SecondReceiver::forge(SeededRandom& chance) {
    const std::array<Bytes, 6> datagrams{Bytes{0x01},                   // no opcode
                                         Bytes{0x01, 0x00},             // hello
                                         Bytes{0x01, 0x07, 0x00, 0x00}, // a sign of life
                                         Bytes{0x01, 0x7D},             // busy
                                         Bytes{0x01, 0x7F},             // pong
                                         Bytes{0x01, 0x15, 0x00}};      // pan side
    const Bytes& datagram = datagrams[static_cast<std::size_t>(chance.below(datagrams.size()))];
    const char* from = secondReceiverAddress;
    const char* to = receiverAddress;
    if (chance.oneIn(2)) std::swap(from, to);
    network.forge(from, receiverPort, to, receiverPort, datagram);
}

} // namespace lumbrine::simulation
