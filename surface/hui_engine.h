// The HUI protocol, as the control surface speaks it. Output (hui_output.cpp, hui_hands.cpp) turns calls into messages;
// input (hui_input.cpp) turns Pro Tools' bytes into callbacks. One engine serves one surface of 8 strips, numbered 0-7.
//
// All messages are on MIDI channel 1. A zone and a port together address a switch and its LED; strip n is zone n.
#pragma once

#include "base/bilingual.h"
#include "base/bytes.h"
#include "base/strip.h"
#include "platform/api/runtime.h"
#include "surface/auto_led_colour.h"
#include "surface/strip_label.h"

#include <array>
#include <atomic>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace lumbrine {

namespace hui {

// Zones other than those of the strips (0-7).
inline constexpr int bankZone = 0x0A;      // ports 0-3: channel left, bank left, channel right, bank right
inline constexpr int assignZone = 0x0B;    // port 2: pan, port 7: send A
inline constexpr int transportZone = 0x0E; // port 4: play, port 5: record
inline constexpr int autoModeZone = 0x18;  // ports: trim, latch, read, off, write, touch

// Ports in the zone of a strip.
inline constexpr int touchPort = 0;
inline constexpr int selectPort = 1;
inline constexpr int mutePort = 2;
inline constexpr int soloPort = 3;
inline constexpr int autoPort = 4;
inline constexpr int recArmPort = 7;

inline constexpr int panAssignPort = 2;
inline constexpr int sendAAssignPort = 7;

} // namespace hui

// Owned by a shared_ptr, because a switch release that is still pending holds its engine weakly.
class HUIEngine : public std::enable_shared_from_this<HUIEngine> {
public:
    // Until the callbacks are set, log lines go to standard output and messages go nowhere.
    HUIEngine(Runtime& runtime, Bilingual text);

    // ---- Callbacks. Set all of them before the first byte arrives and do not change them afterwards.

    std::function<void(ByteView message)> send;  // one complete outgoing message; called on any thread
    std::function<void(const std::string&)> log; // one finished log line; any thread

    // Called for messages from Pro Tools, on the thread that calls handleIncoming.
    std::function<void(int strip, double value)> onFaderFeedback;      // 0.0-1.0
    std::function<void(int strip, std::string_view text)> onTrackName; // four ASCII characters, untrimmed
    std::function<void(int strip, int side, int level)> onMeter;       // side 0 left, 1 right; level 0-15
    std::function<void(int zone, int port, bool on)> onLed;
    std::function<void(int strip, AutoLedColour colour)> onAutoLed;                // beside onLed
    std::function<void(int strip, int value, bool centre, bool rightSide)> onVpot; // ring value 0-15
    std::function<void(std::string_view text, std::optional<bool> flag)> onSelectAssign;

    // ---- Output. Any thread. The messages of one call are never interleaved with those of another. A call for a strip
    // outside 0-7 sends nothing.

    // Sends `value`, clamped to 0.0-1.0, as 14 bits with the high half first. NaN is a programming error.
    void sendFader(int strip, double value);
    void touch(int strip);
    void release(int strip);

    // Sends one edge of a switch: down when `on`, else up. The caller decides how long it stays down.
    void switchEdge(int zone, int port, bool on);

    // Presses a switch, logs the press and returns at once. A background job releases it 60 ms later, unless the engine
    // has been destroyed by then. `zone` is 0-255.
    void pressSwitch(int zone, int port);

    // Presses a bank or channel button (ports 0-3; other ports do nothing) and blocks the caller for the 30 ms that the
    // button is held.
    void channelMove(int port);

    // Makes the V-Pots show the left side of stereo pans, by assigning them to send A and then to pan again. Blocks for
    // 0.18 s.
    void resetPanAssignToLeft();

    // Turns a V-Pot by `delta` clicks, clockwise when positive, clamped to 63 in either direction. 0 sends nothing.
    void sendVpotDelta(int strip, int delta);

    // ---- What the client was shown. Any thread.

    // The display of a strip says this (StripLabel). Another name may be another track: a finger on its fader is let
    // go. True when it is another name.
    bool showLabel(int strip, std::string_view text, bool isName);

    // The client of that ownership was told this. On one thread; waits for nobody.
    void tellLabel(int strip, std::string_view text, bool isName, std::uint64_t owner);

    // The number of the name, while the client in control knows it (StripLabel::isNameKnownTo).
    std::optional<std::uint64_t> knownLabel(int strip);

    // The hands are those of another client. Releases the faders that hands have touched.
    void newOwner(HandsOwner owner);

    // ---- The client's hands, which act on what the client was shown. As touch, release, sendFader, pressSwitch and
    // sendVpotDelta, unless the surface is closed to hands, or the client does not know what the strip shows
    // (StripLabel): then nothing is sent, and they return false. A finger that was on a fader when the surface was
    // closed, or when the strip got another name, or was put there since, moves nothing until it touches again. Any
    // thread.

    bool touchByHand(int strip);

    // The finger is still there since `touchByHand`. As that, unless it was on the fader when the surface was closed.
    bool holdByHand(int strip);

    bool releaseByHand(int strip);
    bool moveByHand(int strip, double value);
    bool pressByHand(int zone, int port);
    bool turnByHand(int strip, int delta);

    // Closing comes before anything that makes the surface show other tracks. It releases what hands have touched and
    // pressed.
    void closeToHands();
    void openToHands();

    // The client was told that the strips of this surface are not there, or are there again: until then hands press
    // and turn nothing on them. Pro Tools itself leaves the faders alone of a surface that has gone.
    void hideStrips();
    void showStrips();

    // Releases the faders that hands have touched, as if the fingers had never been there.
    void letHandsGo();

    // Releases them too, but the fingers may still be there.
    void loseTouch();

    // ---- What is down: each switch and touch whose last edge went out as down. Any thread.

    bool isDown(int zone, int port);

    // Releases everything that is down, in the order of zones and then of ports. The timed releases of presses before
    // this (pressSwitch, channelMove, resetPanAssignToLeft) then send nothing.
    void letGo();

    // Lets go, and from now on sends no edge of a switch or touch at all. For the end of the program.
    void letGoForGood();

    // ---- Pan side: which side of stereo pans the V-Pots show. HUI does not report it, so the code that presses the
    // PAN key also calls flipPanSide. Any thread.

    bool showsRightPan();
    void flipPanSide();

    // ---- Input. Only on the MIDI receive thread.

    // Decodes the bytes of one packet and answers pings. A SysEx message may continue in the next packet; a voice
    // message, with running status or without, may not. A status byte ends every unfinished message, except realtime
    // bytes (F8-FF), which are skipped wherever they stand. Decoding voice messages allocates nothing.
    void handleIncoming(ByteView bytes);

    // To be called when the ports were lost and are there again. Forgets what is half received, because the rest will
    // not come: an unfinished SysEx message, the high halves of faders and the selected zone. The host may have missed
    // any release. So with its next ping, which shows that it listens again, everything that has been down since the
    // last such ping is released.
    void portsAreBack();

    std::atomic<int> pingCount{0};       // pings answered; readable from any thread
    std::optional<TimePoint> lastPingAt; // receive thread only

private:
    static constexpr int portsOfZone = 16;
    using Switches = std::bitset<std::size_t{256} * portsOfZone>; // a bit for each port of each zone

    static std::size_t switchAt(int zone, int port);

    bool putFinger(int strip) LUMBRINE_REQUIRES(txLock);
    void liftFingers() LUMBRINE_REQUIRES(txLock);
    void sendPair(std::array<std::uint8_t, 3> first, std::array<std::uint8_t, 3> second) LUMBRINE_REQUIRES(txLock);
    void sendEdge(int zone, int port, bool on) LUMBRINE_REQUIRES(txLock);
    void sendFaderPair(int strip, double value) LUMBRINE_REQUIRES(txLock);
    void sendTurn(int strip, int delta) LUMBRINE_REQUIRES(txLock);
    std::uint64_t press(int zone, int port) LUMBRINE_REQUIRES(txLock); // returns the number for `endPress`
    void endPressLater(int zone, int port, std::uint64_t number);
    void endPress(int zone, int port, std::uint64_t number);
    void pressAndWait(int zone, int port, Duration duration);
    void releaseAll(Switches switches) LUMBRINE_REQUIRES(txLock);
    void releaseAllAgain();
    bool isOpen(int strip) const LUMBRINE_REQUIRES(txLock);
    void liftFinger(int strip) LUMBRINE_REQUIRES(txLock);
    void takeSysexEdge(std::uint8_t status);
    void handleSysex(ByteView message);
    void reportDisplay(int display, ByteView bytes);
    void handleVoice(std::uint8_t status, std::uint8_t data1, std::uint8_t data2);
    void handleController(std::uint8_t controller, std::uint8_t value);
    void handlePing();
    void reportFader(int strip, double value);
    void reportUnknownController(std::uint8_t controller, std::uint8_t value);

    static constexpr std::size_t sysexLimit = 1024; // an incomplete message that grows beyond it is dropped

    Runtime& runtime;
    const Bilingual text;

    Mutex txLock; // held while `send` gets the messages of one action; the back end may take its own lock inside
    Switches down LUMBRINE_GUARDED_BY(txLock);
    Switches usedSinceReturn LUMBRINE_GUARDED_BY(txLock); // `down`, and what was down since the ports were lost last
    std::uint64_t timesLetGo LUMBRINE_GUARDED_BY(txLock) = 0;
    std::uint64_t timesHandsLetGo LUMBRINE_GUARDED_BY(txLock) = 0;
    bool ended LUMBRINE_GUARDED_BY(txLock) = false;
    bool closed LUMBRINE_GUARDED_BY(txLock) = false;                        // to hands
    bool hidden LUMBRINE_GUARDED_BY(txLock) = false;                        // the strips, from the client
    std::bitset<stripsPerSurface> fingers LUMBRINE_GUARDED_BY(txLock);      // put down and not lifted
    std::bitset<stripsPerSurface> strayFingers LUMBRINE_GUARDED_BY(txLock); // on faders that show other tracks since
    std::array<StripLabel, stripsPerSurface> labels;                        // but for telling: under txLock
    HandsOwner handsOwner LUMBRINE_GUARDED_BY(txLock);

    Mutex panLock;
    bool panRightSide LUMBRINE_GUARDED_BY(panLock) = false;

    // Receive thread only.
    std::array<std::uint8_t, 8> pendingHi{}; // last fader high byte for each strip
    Bytes sysexBuf;                          // the incomplete SysEx message; allocated once, in the constructor
    int rxZone = -1;                         // the zone that Pro Tools selected last; -1 before the first
    bool hostMissedReleases = false;         // from the return of the ports to the next ping
    std::bitset<256> seenUnknownCC;
};

} // namespace lumbrine
