// A whole receiver on real sockets and threads, between MIDI ports that a benchmark watches and feeds.
#pragma once

#include "blackbox/ring_writer.h"
#include "model/receiver_model.h"
#include "platform/portable/nlohmann_json.h"
#include "platform/portable/no_accessibility.h"
#include "platform/posix/posix_datagram_sockets.h"
#include "platform/posix/real_runtime.h"
#include "platform/posix/run_loop.h"
#include "platform/recorded/recorded_midi.h"
#include "platform/recorded/recorded_sockets.h"
#include "platform/recorded/system_address.h"
#include "platform/virtual/null_platform.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace lumbrine {

class RealReceiver {
public:
    // What it has besides, all of which outlives the receiver.
    struct Extras {
        blackbox::RingWriter* ring = nullptr; // what crosses the MIDI ports and the socket is recorded in it
        Secrets* secrets = nullptr;           // with `key`: for clients that seal
        std::optional<PairingKey> key = std::nullopt;
    };

    // `onMessage` is called for each MIDI message on its way to Pro Tools.
    RealReceiver(std::uint16_t port, std::function<void()> onMessage)
        : RealReceiver(port, std::move(onMessage), Extras{}) {}
    RealReceiver(std::uint16_t port, std::function<void()> onMessage, const Extras& extras);

    void run(); // the main thread, until `stop`
    void stop() { loop.stop(); }

    // Bytes from Pro Tools to the first surface, on the thread that stands for the MIDI system's.
    void feed(ByteView packet) { midi.read(packet); }

private:
    class Ports final : public NullMIDI {
    public:
        explicit Ports(std::function<void()> onMessage) : onMessage(std::move(onMessage)) {}

        MIDIStatus createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock block,
                                     MIDIEndpointRef& destination) override {
            if (!read) read = block;
            return NullMIDI::createDestination(client, name, std::move(block), destination);
        }
        MIDIStatus received(MIDIEndpointRef, ByteView) override {
            onMessage();
            return 0;
        }

        MIDIReadBlock read; // of the first surface

    private:
        const std::function<void()> onMessage;
    };

    struct Recorded {
        Recorded(RealReceiver& receiver, blackbox::RingWriter& ring)
            : recorder(receiver.runtime, ring), midi(receiver.midi, recorder),
              sockets(receiver.sockets, recorder, systemAddress) {}

        const Recorder recorder;
        RecordedMIDI midi;
        RecordedSockets sockets;
    };

    RunLoop loop;
    RealRuntime runtime;
    Ports midi;
    PosixDatagramSockets sockets;
    std::optional<Recorded> recorded;
    NullStreams streams;
    NlohmannJSON json{Bilingual(false)};
    NoAccessibility accessibility;
    NullAdvertiser advertiser;
    const NullComputer system;
    std::shared_ptr<ReceiverModel> model;
};

} // namespace lumbrine
