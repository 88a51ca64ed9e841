// Anchors: records that say what the wall clock showed, and which program wrote the recording.
#pragma once

#include "platform/recorded/recorder.h"

#include <cstdint>
#include <functional>
#include <string>

namespace lumbrine {

// A ring forgets its oldest records, so the anchor comes again and again: each part of a recording tells its time of
// day and its program. Two anchors that disagree show that the wall clock was set, or that the computer slept.
class RecordingClock {
public:
    // The wall clock in nanoseconds since 1970 (UTC).
    using WallClock = std::function<std::int64_t()>;

    // `program`: name, version and system, as text. The recorder outlives it.
    RecordingClock(const Recorder& itsRecorder, WallClock wallClock, std::uint32_t processNumber, std::string program)
        : recorder(itsRecorder), wall(std::move(wallClock)), process(processNumber), text(std::move(program)) {}

    void programBegan() { note(blackbox::AnchorCause::programBegan); }
    void programEnded() { note(blackbox::AnchorCause::programEnded); }

    // Writes an anchor when something was recorded since the last one, and looks at the wall clock.
    void tick();

    // True when the user's clock was seen to go back since the program began: times of day are then no order.
    bool wentBack() const { return backwards; }

private:
    void note(blackbox::AnchorCause cause);
    std::int64_t lead() const;

    const Recorder& recorder;
    const WallClock wall;
    const std::uint32_t process;
    const std::string text;
    std::uint64_t noted = 0;        // the position after the last anchor
    std::int64_t lastLead = lead(); // of the wall clock over the runtime's, at the last look
    bool backwards = false;
};

} // namespace lumbrine
