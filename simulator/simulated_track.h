// One track of the simulated session, as plain values.
#pragma once

#include "base/fader_value.h"

#include <cstdint>
#include <string>

namespace lumbrine {

struct SimulatedTrack {
    enum class Automation {
        read,
        touch,
        latch,
        write,
        off,
        touchLatch, // of newer versions; no key of a surface sets it
    };

    // What kind of track it is; a folder is none of these.
    enum class Type { audio, instrument, midi, aux, master, vca, video };

    // What the track's meter does while the transport plays; see music_meter.h.
    struct MeterProgram {
        enum class Kind { silent, tone, drum, bass, melody, pad };

        Kind kind = Kind::silent;
        double peak = -12;      // dBFS at its loudest
        std::uint32_t seed = 0; // two programs of one kind differ by it

        bool operator==(const MeterProgram&) const = default;
    };

    static constexpr FaderValue unityGain = FaderValue::ofRaw(12288);

    int id = 0; // given by the session, and never given again
    std::string name;
    std::string comment;
    std::string color = "#ff2a2a2a"; // alpha, red, green, blue

    Type type = Type::audio;
    bool hidden = false; // by itself; see SimulatedSession::hiddenByFolder
    bool inactive = false;
    bool stereo = false;

    // A folder holds the tracks that name it as theirs, other folders too. A closed one hides all of them and stays.
    bool isFolder = false;
    bool closed = false;
    int folder = 0; // id of the folder that the track is in, 0 for none

    FaderValue fader = unityGain;
    bool mute = false; // pressed by somebody; a solo elsewhere silences a track without setting it
    bool solo = false;
    bool recordArmed = false;
    bool inputMonitor = false;
    bool selected = false;

    Automation automation = Automation::read;
    bool trim = false;

    // -100 is hard left, 100 hard right. A mono track has its only pan in panLeft.
    double panLeft = 0;
    double panRight = 0;

    int group = 0; // the fader group it belongs to, 0 for none
    MeterProgram meter;

    bool operator==(const SimulatedTrack&) const = default;
};

} // namespace lumbrine
