// What background threads need to know of the display texts, which come on the MIDI threads: when the last name came,
// and which automation mode Pro Tools wrote on the strip that is being probed.
//
// A probe is not seen: the first text that comes in it, or soon after it, is the strip's mode, perhaps in words that
// the receiver does not know. It is held back, and is a name after all when no other text follows.
#pragma once

#include "base/strip.h"
#include "model/hands/host_reaction.h"
#include "model/state/automation_mode.h"
#include "platform/api/runtime.h"

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace lumbrine {

class DisplayWatch {
public:
    // How long after a probe Pro Tools may take to write the strip's name over the mode.
    static constexpr Duration nameReturns = seconds(0.3);

    explicit DisplayWatch(Runtime& runtime) : runtime(runtime), nameClock(runtime), autoProbeLock(runtime) {}

    // A text came. True when it is held back because of a probe: then the clock of names does not count it. Any thread.
    bool shown(Strip strip, std::string_view text);

    // How long no text has come: how the jobs that move the banks know that the surfaces have settled. Any thread.
    Duration age();

    // A bank or channel key goes down, so that names come: from now on only known modes are held back. Any thread, like
    // the next two.
    void pressed();

    // How long after a press its effect usually shows, and how long it may take (HostReaction).
    Duration usualReaction();
    Duration longestReaction();

    // One probe at a time: all of them run on the desk's thread.

    void beginProbe(Strip strip);

    // The strip has shown two modes since the probe began. Before a mode's key goes down, another track may be there.
    bool modeHasChanged();

    // Returns the mode that was shown last since the probe began, or unknown.
    std::uint8_t endProbe();

    // To be called `nameReturns` after a probe. If no other text has come for the strip since the one that is held
    // back, that was a name after all, as of a track that is called "Read": `onNameAfterAll` is called with it. Main
    // thread.
    void settle(Strip strip);
    std::function<void(Strip strip, const std::string& text)> onNameAfterAll; // set before the first probe

private:
    struct Display {
        std::string name;                // without spaces at the ends
        std::optional<std::string> held; // likewise
        TimePoint heldUntil = distantPast;
        bool namesCome = false; // so a word that is no known mode is a name
    };

    void expectNames() LUMBRINE_EXCLUDES(autoProbeLock);
    void noteName() LUMBRINE_EXCLUDES(nameClock);
    bool holdBack(Strip strip, std::string_view text) LUMBRINE_EXCLUDES(autoProbeLock);

    Runtime& runtime;

    Mutex nameClock;
    TimePoint lastNameChange LUMBRINE_GUARDED_BY(nameClock) = distantPast;
    HostReaction reaction LUMBRINE_GUARDED_BY(nameClock);

    Mutex autoProbeLock;
    std::optional<Strip> autoProbeStrip LUMBRINE_GUARDED_BY(autoProbeLock);
    std::uint8_t autoProbeResult LUMBRINE_GUARDED_BY(autoProbeLock) = autoModeUnknown;
    bool autoProbeChanged LUMBRINE_GUARDED_BY(autoProbeLock) = false;
    std::array<Display, stripCount> shownTexts LUMBRINE_GUARDED_BY(autoProbeLock);
};

} // namespace lumbrine
