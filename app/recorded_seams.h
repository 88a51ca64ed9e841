// The back ends of a receiver, each with its recorder in front of it.
#pragma once

#include "base/bilingual.h"
#include "model/state/receiver_platform.h"
#include "platform/recorded/recorded_accessibility.h"
#include "platform/recorded/recorded_computer.h"
#include "platform/recorded/recorded_midi.h"
#include "platform/recorded/recorded_sockets.h"
#include "platform/recorded/recorded_streams.h"

namespace lumbrine {

class RecordedSeams {
public:
    // The recorder, and what `platform` refers to, outlive it. `text` is what the receiver gets: its language decides
    // what clients are sent, so it is recorded as well.
    RecordedSeams(const ReceiverPlatform& platform, const Recorder& recorder, RecordedSockets::AddressReader read,
                  Bilingual text)
        : real(platform), midi(real.midi, recorder), sockets(real.sockets, recorder, read),
          advertiser(real.advertiser, recorder), system(real.system, recorder), streams(real.streams, recorder),
          accessibility(real.accessibility, recorder) {
        recorder.note(blackbox::Kind::fact, 0, {blackbox::textBytes(text("language=en", "language=ja"))});
    }

    ReceiverPlatform platform() {
        return {real.runtime, midi,      sockets,       advertiser,     system,
                streams,      real.json, accessibility, real.scripting, real.secrets};
    }

private:
    const ReceiverPlatform real;
    RecordedMIDI midi;
    RecordedSockets sockets;
    RecordedAdvertiser advertiser;
    RecordedSystemInfo system;
    RecordedStreams streams;
    RecordedAccessibility accessibility;
};

} // namespace lumbrine
