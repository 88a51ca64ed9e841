// The options of the simulated Pro Tools: behaviour of the real one that is not known for sure, and faults. A receiver
// must work with every setting.
#pragma once

#include "platform/api/time.h"
#include "simulator/packet_options.h"
#include "simulator/screen_options.h"
#include "simulator/scripting_options.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace lumbrine {

// The rule that shortens a track's name to the four characters of a display.
enum class ShortNameRule {
    cut,       // the first four characters
    vowels,    // drops small vowels until it fits, keeps the last character: "Guitar 1" is "Gtr1"
    colliding, // drops numbers and sides at the end first: "Vox 1" and "Vox 2" are both "Vox "
};

// The replacement for a character that is not ASCII in a display.
enum class NonASCIIRule {
    blank,
    questionMark,
    huiCharacters, // 00-1F for the accented letters of a HUI, 7F for all others
};

// The events after which the whole picture is sent to a surface.
enum class Fill {
    replyAndReset, // the first reply of the surface, its reset, and the opening of a session
    reset,         // its reset and the opening of a session
    sessionOpen,   // the opening of a session: a surface that appears later gets only changes
};

// The effect of a fader move without a touch.
enum class UntouchedMove { obeyed, ignored, pulledBack };

// Whether the value of a fader or pan that a surface moves replaces the track's name in the display for a moment.
enum class ValuesShown { withFine, always, never }; // withFine: while ALT/FINE is down

// The display text for trim.
enum class TrimWords { prefixed, alone }; // "TTch", or "Trim" whatever the mode is

// The position of the last bank: so that all strips have a track, or at a multiple of the width with blank strips at
// its end.
enum class EndOfSession { fill, blank };

enum class FaderEcho {
    whileTouched, // each move is sent back to the surface that made it
    afterRelease, // nothing is sent back while the fader is touched; its position is sent once at the release
};

// The surfaces that count for the width of a bank: those that answer pings, or all configured ones.
enum class BankWidth { answering, configured };

// The picture of a ring, bits 5-4 of its byte.
enum class RingPicture { dot = 0, boostCut = 1, wrap = 2, spread = 3 };

// The value for the two-coloured LED of an AUTO switch for a track in Read; `unlit` keeps the LED dark in every mode.
enum class AutoLED { green24, green34, unlit };

// The parts of the dump, which is sent to a surface when it appears and when a session opens.
enum class DumpPart { ping, displays, faders, rings, stripLEDs, globalLEDs, counter };

struct SimulatorOptions {
    int surfaces = 1; // 1 or 2
    std::array<std::string, 2> portNames{"Lumbrine", "Lumbrine B"};
    std::uint64_t seed = 1;   // decides all random choices
    bool opensSession = true; // a session is open at the start

    // ---- Presence.
    Duration pingInterval = seconds(1);
    Duration pingJitter = Duration::zero(); // the largest lateness of a ping
    int latePingOneIn = 0;                  // about one ping in N is late by `latePing`; 0 for none
    Duration latePing = seconds(0.8);
    Duration hostTimeout = seconds(3); // a surface is given up when a ping is unanswered for this long
    bool pingWithoutSession = true;
    bool resetIsGoodbye = false; // a surface that sends FF counts as gone until it replies again
    Fill fill = Fill::replyAndReset;
    std::vector<DumpPart> dumpOrder{DumpPart::ping,      DumpPart::displays,   DumpPart::faders, DumpPart::rings,
                                    DumpPart::stripLEDs, DumpPart::globalLEDs, DumpPart::counter}; // each part once

    // ---- Reaction.
    Duration latency = seconds(0.02); // from a surface's message to the reaction
    FaderEcho faderEcho = FaderEcho::whileTouched;
    int faderBits = 14; // precision of sent fader positions: 9, 10 or 14
    UntouchedMove untouchedMove = UntouchedMove::obeyed;
    int mostClicks = 0x3F; // the most clicks of one V-Pot message that count
    bool groups = true;    // fader groups are on: members follow the first touched fader, and automation modes

    // ---- Displays.
    ShortNameRule shortNames = ShortNameRule::cut;
    NonASCIIRule nonASCII = NonASCIIRule::questionMark;
    int displaysPerSysEx = 1;          // 1-9
    Duration modeShown = seconds(1.0); // how long a display shows a new automation mode
    TrimWords trimWords = TrimWords::prefixed;
    ValuesShown valuesShown = ValuesShown::withFine;
    Duration valueShownFor = seconds(0.8);
    bool mainDisplay = true; // the 80 characters and the counter are sent
    bool counter = true;

    // ---- LEDs, rings and meters.
    bool repeatZoneSelect = true; // select the zone before each port, not only when it changes within a burst
    bool runningStatus = false;   // use running status within a burst of controllers, which is then one packet
    AutoLED autoLED = AutoLED::green24;
    Duration ledOn = seconds(0.5); // on and off times of a flashing LED
    Duration ledOff = seconds(0.5);
    RingPicture panPicture = RingPicture::boostCut;
    bool ringMarksCentre = true;   // light the centre LED (bit 6) at the centre
    int clicksPerRingPosition = 9; // at least 1
    int meterRate = 25;            // meter updates per second while playing, 1-100
    bool clipHolds = false;        // a meter that has clipped stays at clip until the next play

    // ---- Banking.
    EndOfSession endOfSession = EndOfSession::fill;
    bool bankLeftAligns = true; // bank left goes to the next lower multiple of the width, not by the full width
    bool bankRightAligns = false;
    bool redrawOnBank = true; // after a move everything is sent again, not only the differences
    BankWidth bankWidth = BankWidth::answering;

    // ---- Dialogs and sessions.
    // While a dialog is on the screen, the main display shows its text and the surfaces do nothing.
    bool dialogFreezes = true;
    bool pingInDialog = true;
    Duration sessionOpensAfter = seconds(2); // time to exchange a session

    // ---- Faults.
    Duration grabPortsAfter = Duration::zero(); // from the start until it first uses the ports
    bool portsLost = false;                     // uses the ports only after grabPorts or OK in the Peripherals dialog
    int dropOnePressIn = 0;                     // about one press in N is ignored; 0 for none
    Duration restlessUserEvery = Duration::zero(); // average time between two actions of RestlessUser; 0 for none

    PacketOptions packets = {};
    ScriptingOptions scripting = {};
    ScreenOptions screen = {};

    // ---- Records.
    std::size_t logLimit = 100'000; // the most received packets kept for each surface
    bool keepsRecord = false;       // keep a HostRecord, which has no limit
};

// A description of what is wrong with the options; absent when they are valid.
std::optional<std::string> problemWith(const SimulatorOptions& options);

} // namespace lumbrine
