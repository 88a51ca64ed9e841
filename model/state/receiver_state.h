// Everything the receiver knows about Pro Tools and the client, in named groups. Main thread only; what other threads
// must see lives in small classes with a lock of their own (MeterBank, NameClock, ProbeExchange).
#pragma once

#include "model/state/published_state.h"
#include "platform/api/time.h"

#include <cstdint>

namespace lumbrine {

inline constexpr std::uint8_t autoModeUnknown = 0; // the other mode codes: automation_mode_text.h

// One LED that Pro Tools may flash, by switching it on and off.
struct FlashingLed {
    bool rawOn = false;
    TimePoint lastEdge = distantPast;
    TimePoint blinkUntil = distantPast; // before it the LED counts as blinking
    int shortStreak = 0;                // edges in a row that came quickly after the one before
};

// What the surfaces show, and what the client does with them.
struct SurfaceMirror {
    PerStrip<std::string> nameCache; // trimmed
    PerStrip<bool> selectCache{};
    PerStrip<bool> soloCache{};
    PerStrip<FlashingLed> mute;
    PerStrip<FlashingLed> rec;
    std::array<bool, 4> bankLed{}; // channel left, bank left, channel right, bank right
    bool transportPlaying = false;
    bool transportRecording = false;
    std::array<PerStrip<int>, 2> panPos{};  // side (0 left, 1 right), strip: ring position as received, 0-15
    std::array<PerStrip<bool>, 2> panCen{}; // the same for the centre LED
    PerStrip<bool> stripTouched{};          // the client's finger is on the fader
    PerStrip<TimePoint> lastClientFaderAt;

    SurfaceMirror() { lastClientFaderAt.fill(distantPast); }
};

// When whom was heard last.
struct Presence {
    TimePoint firstPingAt = distantPast; // start of the current run of pings, on either surface
    TimePoint lastPing = distantPast;    // surface A
    TimePoint lastPingB = distantPast;
    TimePoint lastUDP = distantPast;
};

struct AutomationAndPan {
    PerStrip<std::uint8_t> autoModeCache{};
    TimePoint lastAutoPollAll = distantPast;
    bool panRightMode = false;
    PerStrip<std::optional<int>> panSeekTarget; // ring position, 1-11
    PerStrip<int> panSeekIter{};                // steps taken
};

// One entry for each track of the track map.
struct SessionTable {
    std::vector<std::optional<double>> sessFaders;
    std::vector<bool> sessMutes;
    std::vector<bool> sessSolos;
    std::vector<bool> sessRecs;
    std::vector<bool> sessSelects;
    std::vector<std::uint8_t> sessAutoModes;
    std::vector<int> sessPanPos;
    std::vector<bool> sessPanCenter;
    std::vector<std::uint8_t> sessPanSide;
    std::vector<bool> sessPanKnown;
    std::vector<std::string> trackMapComments;
    bool sessAutoPanCaptured = false; // a walk over a visible range has completed
    bool fullTableDirty = false;      // the client has not yet been told of the latest changes
};

// Who is at the bank buttons, and how sure the position is.
struct BankState {
    bool seeking = false;
    bool groupApplying = false;
    int locateStuckTicks = 0;
    TimePoint lastAutoCalibrationAt = distantPast;
    bool calibrationRetried = false;
    bool warnedTransportSkip = false;
};

// How it goes with Pro Tools' scripting service.
struct ScriptingState {
    bool ptslOK = false;     // the last track list came
    bool ptslWarned = false; // the log has told of a failure
};

struct ReceiverState {
    PublishedState published;
    SurfaceMirror mirror;
    Presence presence;
    AutomationAndPan automation;
    SessionTable session;
    BankState bank;
    ScriptingState scripting;

    // Nobody is moving the banks, so what the surfaces show is what the user chose.
    bool quiet() const { return !bank.seeking && !published.calibrating && !bank.groupApplying; }
    bool transportRunning() const { return mirror.transportPlaying || mirror.transportRecording; }
    std::size_t shownStrips() const { return static_cast<std::size_t>(published.winW); }
};

} // namespace lumbrine
