// Everything about the simulated Pro Tools that can be chosen before it starts: behaviour of the real one that is not
// known for sure, and faults. A receiver has to work with every setting.
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

// How a track's name becomes the four characters of its display.
enum class ShortNameRule {
    cut,       // the first four characters
    vowels,    // small vowels dropped until it fits, the last character kept: "Guitar 1" is "Gtr1"
    colliding, // numbers and sides at the end dropped first: "Vox 1" and "Vox 2" are both "Vox "
};

// What stands in a display for a character that is not ASCII.
enum class NonASCIIRule {
    blank,
    questionMark,
    huiCharacters, // 00-1F for the accented letters that a HUI has, 7F for all else
};

// What brings all of the picture to a surface again.
enum class Fill {
    replyAndReset, // its first reply, its reset, and a session that opens
    reset,         // not the reply
    sessionOpen,   // neither: a surface that was not there then is sent nothing but what changes
};

// What becomes of a fader that is moved and not touched.
enum class UntouchedMove { obeyed, ignored, pulledBack };

// Whether the value of a fader or a pan that a surface moves is written over the track's name for a moment.
enum class ValuesShown { withFine, always, never }; // withFine: while ALT/FINE is down

// How a display shows trim.
enum class TrimWords { prefixed, alone }; // "TTch", or "Trim" whatever the mode is

// Where the last bank begins: so that it is full, or at a multiple of the width with blank strips after the last track.
enum class EndOfSession { fill, blank };

enum class FaderEcho {
    whileTouched, // each move goes back to the surface that made it
    afterRelease, // nothing goes back while the fader is touched; its position goes out once when it is let go
};

// Which surfaces count for the width of a bank: those that answer pings, or all that are set up.
enum class BankWidth { answering, configured };

// The picture of a ring, bits 5-4 of its byte.
enum class RingPicture { dot = 0, boostCut = 1, wrap = 2, spread = 3 };

// What the two-coloured LED of an AUTO switch is sent for a track in Read; or that it is dark whatever the mode is.
enum class AutoLED { green24, green34, unlit };

// The parts of what a surface is sent when it appears and when a session opens.
enum class DumpPart { ping, displays, faders, rings, stripLEDs, globalLEDs, counter };

struct SimulatorOptions {
    int surfaces = 1; // 1 or 2
    std::array<std::string, 2> portNames{"Lumbrine", "Lumbrine B"};
    std::uint64_t seed = 1;   // decides all that is left to chance
    bool opensSession = true; // a session is open at the start

    // ---- Presence.
    Duration pingInterval = seconds(1);
    Duration pingJitter = Duration::zero(); // each ping is up to so late
    int latePingOneIn = 0;                  // about one ping in so many is late by `latePing`; 0 for none
    Duration latePing = seconds(0.8);
    Duration hostTimeout = seconds(3); // how long a ping may stay unanswered until the surface is given up
    bool pingWithoutSession = true;
    bool resetIsGoodbye = false; // a surface that sends FF counts as gone until it replies again
    Fill fill = Fill::replyAndReset;
    std::vector<DumpPart> dumpOrder{DumpPart::ping,      DumpPart::displays,   DumpPart::faders, DumpPart::rings,
                                    DumpPart::stripLEDs, DumpPart::globalLEDs, DumpPart::counter}; // each part once

    // ---- Reaction.
    Duration latency = seconds(0.02); // from a surface's message to the reaction
    FaderEcho faderEcho = FaderEcho::whileTouched;
    int faderBits = 14; // of what is sent: 9, 10 or 14
    UntouchedMove untouchedMove = UntouchedMove::obeyed;
    int mostClicks = 0x3F; // of one message of a V-Pot that count
    bool groups = true;    // the other members follow the first fader touched of their group, and automation modes

    // ---- Displays.
    ShortNameRule shortNames = ShortNameRule::cut;
    NonASCIIRule nonASCII = NonASCIIRule::questionMark;
    int displaysPerSysEx = 1;          // 1-9
    Duration modeShown = seconds(1.0); // how long a new automation mode stays in the display
    TrimWords trimWords = TrimWords::prefixed;
    ValuesShown valuesShown = ValuesShown::withFine;
    Duration valueShownFor = seconds(0.8);
    bool mainDisplay = true; // the 80 characters and the counter are sent
    bool counter = true;

    // ---- LEDs, rings and meters.
    bool repeatZoneSelect = true; // before each port, not only when the zone changes within a burst
    bool runningStatus = false;   // within a burst of controllers, which then is one packet
    AutoLED autoLED = AutoLED::green24;
    Duration ledOn = seconds(0.5); // of a flashing LED
    Duration ledOff = seconds(0.5);
    RingPicture panPicture = RingPicture::boostCut;
    bool ringMarksCentre = true;   // by bit 6
    int clicksPerRingPosition = 9; // at least 1
    int meterRate = 25;            // meters each second while playing, 1-100
    bool clipHolds = false;        // a meter that clipped stays at clip until the next play

    // ---- Banking.
    EndOfSession endOfSession = EndOfSession::fill;
    bool bankLeftAligns = true; // bank left from no multiple of the width goes to the next multiple below
    bool bankRightAligns = false;
    bool redrawOnBank = true; // everything is sent again after a move, not only what differs
    BankWidth bankWidth = BankWidth::answering;

    // ---- Dialogs and sessions.
    bool dialogFreezes =
        true; // while one is on the screen, its text is on the main display and the surfaces do nothing
    bool pingInDialog = true;
    Duration sessionOpensAfter = seconds(2); // from the order to exchange it

    // ---- Faults.
    Duration grabPortsAfter = Duration::zero(); // from the start until it first uses the ports
    bool portsLost = false;                     // it uses them only when it is told to on its screen, as by grabPorts
    int dropOnePressIn = 0;                     // about one press in so many is not seen; 0 for none
    Duration restlessUserEvery = Duration::zero(); // a random act on the host's own screen about so often; 0 for none

    PacketOptions packets = {};
    ScriptingOptions scripting = {};
    ScreenOptions screen = {};

    // ---- Records.
    std::size_t logLimit = 100'000; // received packets that are kept for each surface
    bool keepsRecord = false;       // of all that is done and shown, without a limit: see HostRecord
};

// What is wrong with the options, in words, or nothing.
std::optional<std::string> problemWith(const SimulatorOptions& options);

} // namespace lumbrine
