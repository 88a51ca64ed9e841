// The HUI protocol, from the surface's side: intentions in, MIDI messages out (hui_output.cpp); bytes from Pro Tools
// in, callbacks out (hui_input.cpp). One engine serves one surface of 8 strips, which it numbers 0-7.
//
// All messages are on MIDI channel 1. A switch or LED has an address of a zone and a port; strip n is zone n.
#pragma once

#include "base/bilingual.h"
#include "base/bytes.h"
#include "platform/api/runtime.h"

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

// Zones beyond those of the strips (0-7).
inline constexpr int bankZone = 0x0A;      // ports 0-3: channel left, bank left, channel right, bank right
inline constexpr int assignZone = 0x0B;    // port 2: pan, port 7: send A
inline constexpr int transportZone = 0x0E; // port 4: play, port 5: record
inline constexpr int autoModeZone = 0x18;  // ports: trim, latch, read, off, write, touch

// Ports of a strip's zone.
inline constexpr int touchPort = 0;
inline constexpr int selectPort = 1;
inline constexpr int mutePort = 2;
inline constexpr int soloPort = 3;
inline constexpr int autoPort = 4;
inline constexpr int recArmPort = 7;

inline constexpr int panAssignPort = 2;
inline constexpr int sendAAssignPort = 7;

} // namespace hui

// Lives in a shared_ptr: a release that is still to come holds its engine weakly.
class HUIEngine : public std::enable_shared_from_this<HUIEngine> {
public:
    // Prints its log lines to standard output and sends nowhere until the callbacks are set.
    HUIEngine(Runtime& rt, Bilingual bilingual);

    // ---- Callbacks. All are set before the first byte arrives and never changed after.

    std::function<void(ByteView message)> send;  // one complete outgoing message; called on any thread
    std::function<void(const std::string&)> log; // one finished log line; any thread

    // What Pro Tools sent, on the thread that calls handleIncoming.
    std::function<void(int strip, double value)> onFaderFeedback;      // 0.0-1.0; more if bytes were not 7-bit
    std::function<void(int strip, std::string_view text)> onTrackName; // four ASCII characters, untrimmed
    std::function<void(int strip, int side, int level)> onMeter;       // side 0 left, 1 right; level 0-15
    std::function<void(int zone, int port, bool on)> onLed;
    std::function<void(int strip, int value, bool centre, bool rightSide)> onVpot; // ring value 0-15
    std::function<void(std::string_view text, std::optional<bool> flag)> onSelectAssign;

    // ---- Output. Any thread. Messages that belong together stay together on the wire. A strip outside 0-7 sends
    // nothing.

    // `value` is clamped to 0.0-1.0 and sent as 14 bits, high half first. NaN is a programming error.
    void sendFader(int strip, double value);
    void touch(int strip);
    void release(int strip);

    // One edge of a switch; the caller decides how long it stays down.
    void switchEdge(int zone, int port, bool on);

    // Presses now and logs it; releases 60 ms later from a background queue, unless the engine is gone by then. Returns
    // at once. `zone` is 0-255.
    void pressSwitch(int zone, int port);

    // A bank or channel button (port 0-3; others do nothing), held for 30 ms; blocks the caller for those.
    void channelMove(int port);

    // Brings the V-Pots back to the left side of stereo pans by way of the send A assignment; blocks for 0.18 s.
    void resetPanAssignToLeft();

    // Turns a V-Pot by `delta` clicks, clockwise when positive, at most 63 either way; 0 sends nothing.
    void sendVpotDelta(int strip, int delta);

    // ---- Pan side: which side of stereo pans Pro Tools' V-Pots show at the moment.

    bool showsRightPan();
    void flipPanSide();

    // ---- Input. One thread, the MIDI receive thread.

    // The bytes of one packet. Answers pings by itself. Allocates nothing for voice messages.
    void handleIncoming(ByteView bytes);

    std::atomic<int> pingCount{0};       // pings answered; readable from any thread
    std::optional<TimePoint> lastPingAt; // of the receive thread

private:
    void sendPair(std::array<std::uint8_t, 3> first, std::array<std::uint8_t, 3> second) LUMBRINE_EXCLUDES(txLock);
    std::size_t takeSysex(ByteView bytes); // how many of the bytes belong to the message
    void handleSysex(ByteView message);
    void handleVoice(std::uint8_t status, std::uint8_t data1, std::uint8_t data2);
    void handleController(std::uint8_t controller, std::uint8_t value);
    void handlePing();
    void reportFader(int strip, double value);
    void reportUnknownController(std::uint8_t controller, std::uint8_t value);

    static constexpr std::size_t sysexLimit = 1024; // bytes of an incomplete message before it is given up

    Runtime& runtime;
    const Bilingual text;

    Mutex txLock; // held only while the messages of one step are handed to `send`, which may take the back end's lock
    Mutex panLock;
    bool panRightSide LUMBRINE_GUARDED_BY(panLock) = false;

    // Of the receive thread.
    std::array<std::uint8_t, 8> pendingHi{}; // last fader high byte for each strip
    Bytes sysexBuf;                          // a SysEx message that is still incomplete; storage made once
    int rxZone = -1;                         // zone that Pro Tools selected last
    std::bitset<256> seenUnknownCC;
};

} // namespace lumbrine
