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
        touchLatch, // in newer versions; no key of a surface sets it
    };

    // The type of the track. It does not apply to folders.
    enum class Type { audio, instrument, midi, aux, master, vca, video };

    // The behaviour of the track's meter while the transport plays; see music_meter.h.
    struct MeterProgram {
        enum class Kind { silent, tone, drum, bass, melody, pad };

        Kind kind = Kind::silent;
        double peak = -12;      // dBFS at its loudest
        std::uint32_t seed = 0; // makes two programs of the same kind differ

        bool operator==(const MeterProgram&) const = default;
    };

    static constexpr FaderValue unityGain = FaderValue::ofRaw(12288);

    int id = 0; // assigned by the session, never reused
    std::string name;
    std::string comment;
    std::string color = "#ff2a2a2a"; // alpha, red, green, blue

    Type type = Type::audio;
    bool hidden = false; // the track's own setting; see also SimulatedSession::hiddenByFolder
    bool inactive = false;
    bool stereo = false;

    // A folder contains the tracks, also folders, that have its id in `folder`. A closed folder hides all of them, but
    // not itself.
    bool isFolder = false;
    bool closed = false;
    int folder = 0; // id of the folder that contains the track, 0 for none

    FaderValue fader = unityGain;
    bool mute = false; // the mute button; a solo elsewhere silences a track without setting this
    bool solo = false;
    bool recordArmed = false;
    bool inputMonitor = false;
    bool selected = false;

    Automation automation = Automation::read;
    bool trim = false;

    // -100 is hard left, 100 hard right. A mono track has its only pan in panLeft.
    double panLeft = 0;
    double panRight = 0;

    int group = 0; // number of its fader group, 0 for none
    MeterProgram meter;

    bool operator==(const SimulatedTrack&) const = default;
};

} // namespace lumbrine
