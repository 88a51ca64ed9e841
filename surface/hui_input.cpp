#include "base/fader_value.h"
#include "base/strip.h"
#include "surface/hui_engine.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <utility>

namespace lumbrine {

namespace {

constexpr std::uint8_t firstStatus = 0x80;
constexpr std::uint8_t firstRealtime = 0xF8; // F8-FF may stand anywhere, also inside another message

constexpr std::uint8_t noteOff = 0x80;
constexpr std::uint8_t noteOn = 0x90;
constexpr std::uint8_t polyPressure = 0xA0;
constexpr std::uint8_t controlChangeStatus = 0xB0;
constexpr std::uint8_t sysexBegin = 0xF0;
constexpr std::uint8_t sysexEnd = 0xF7;

// Manufacturer 00 00 66 (Mackie), product 05 (HUI), device 00, command 10: the texts of small displays.
constexpr std::array<std::uint8_t, 7> displayHeader{sysexBegin, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10};
constexpr std::size_t displayTextLength = 4;
constexpr std::size_t displayFieldLength = 1 + displayTextLength;
constexpr int selectAssignDisplay = 8;

// A host that sends many controllers we do not know must not fill the log.
constexpr std::size_t maxReportedControllers = 24;
constexpr std::array<std::uint8_t, 3> pingReply{noteOn, 0x00, 0x7F};

constexpr bool isVoice(std::uint8_t status) {
    return status == noteOff || status == noteOn || status == polyPressure || status == controlChangeStatus;
}

// The strip of a controller in the group of eight that starts at `groupBegin`; -1 when it is outside the group.
constexpr int stripOf(std::uint8_t controller, int groupBegin) {
    const int strip = controller - groupBegin;
    return strip >= 0 && strip < stripsPerSurface ? strip : -1;
}

std::string twoHexDigits(std::uint8_t byte) {
    std::array<char, 3> digits{};
    std::snprintf(digits.data(), digits.size(), "%02X", byte);
    return digits.data();
}

std::string threeDecimals(double value) {
    std::array<char, 16> digits{};
    std::snprintf(digits.data(), digits.size(), "%.3f", value);
    return digits.data();
}

} // namespace

void HUIEngine::handleIncoming(ByteView bytes) {
    // Of the voice message that is being read. It does not continue in the next packet, nor does its status.
    std::uint8_t status = 0; // 0: data bytes belong to no message
    std::array<std::uint8_t, 2> data{};
    std::size_t dataCount = 0;
    for (const std::uint8_t byte : bytes) {
        if (byte >= firstRealtime) continue;
        if (byte >= firstStatus) {
            takeSysexEdge(byte);
            status = isVoice(byte) ? byte : 0;
            dataCount = 0;
        } else if (!sysexBuf.empty()) {
            sysexBuf.push_back(byte);
        } else if (status != 0) {
            data[dataCount++] = byte;
            if (dataCount < data.size()) continue;
            handleVoice(status, data[0], data[1]);
            dataCount = 0;
        }
    }
    // A message whose end was lost must not use memory without limit.
    if (sysexBuf.size() > sysexLimit) sysexBuf.clear();
}

void HUIEngine::portsAreBack() {
    sysexBuf.clear();
    pendingHi.fill(0);
    rxZone = -1;
    hostMissedReleases = true;
}

// Any status byte ends a SysEx message, but only F7 completes it: before any other, the rest of it was lost.
void HUIEngine::takeSysexEdge(std::uint8_t status) {
    if (status == sysexEnd && !sysexBuf.empty()) {
        sysexBuf.push_back(status);
        handleSysex(sysexBuf);
    }
    sysexBuf.clear();
    if (status == sysexBegin) sysexBuf.push_back(status);
}

// A display field is its number and four characters. Pro Tools sends one in a message, other hosts send several.
void HUIEngine::handleSysex(ByteView message) {
    if (message.size() <= displayHeader.size()) return;
    if (!std::ranges::equal(message.first(displayHeader.size()), displayHeader)) return;
    ByteView fields = message.subspan(displayHeader.size(), message.size() - displayHeader.size() - 1); // without F7
    for (; fields.size() >= displayFieldLength; fields = fields.subspan(displayFieldLength))
        reportDisplay(fields[0], fields.subspan(1, displayTextLength));
}

void HUIEngine::reportDisplay(int display, ByteView bytes) {
    std::array<char, displayTextLength> characters{};
    std::ranges::transform(bytes, characters.begin(), [](std::uint8_t byte) {
        return byte >= 0x20 && byte <= 0x7E ? static_cast<char>(byte) : ' ';
    });
    const std::string_view shown(characters.data(), characters.size());
    if (display < stripsPerSurface) {
        if (onTrackName) onTrackName(display, shown);
    } else if (display == selectAssignDisplay) {
        if (onSelectAssign) onSelectAssign(shown, std::nullopt);
    }
}

void HUIEngine::handleVoice(std::uint8_t status, std::uint8_t data1, std::uint8_t data2) {
    if (status == controlChangeStatus) {
        handleController(data1, data2);
    } else if (status == polyPressure) {
        // Only the low nibble is the strip: 10-17 mean the same meters as 00-07.
        const int strip = data1 & 0x0F;
        if (strip < stripsPerSurface && onMeter) onMeter(strip, data2 >> 4 & 1, data2 & 0x0F);
    } else if (data1 == 0 && (data2 == 0 || status == noteOff)) {
        // 90 00 00, about once a second. On its way it may have become a note-off with any velocity.
        handlePing();
    }
}

void HUIEngine::handleController(std::uint8_t controller, std::uint8_t value) {
    const bool flag = (value & 0x40) != 0; // of a V-Pot ring: the centre LED; of a port: on
    if (const int high = stripOf(controller, 0x00); high >= 0) {
        // A fader position comes as a high half and a low half. The low half completes it.
        pendingHi[static_cast<std::size_t>(high)] = value;
    } else if (const int low = stripOf(controller, 0x20); low >= 0) {
        reportFader(low, FaderValue::ofHalves(pendingHi[static_cast<std::size_t>(low)], value).unit());
    } else if (const int ring = stripOf(controller, 0x10); ring >= 0) {
        const bool rightSide = showsRightPan();
        if (onVpot) onVpot(ring, value & 0x0F, flag, rightSide);
    } else if (controller == 0x0C || controller == 0x0F) {
        // 0C/2C is the host's pair of controllers for a zone and a port. 0F/2F, the surface's pair, means the same.
        rxZone = value;
    } else if (controller == 0x2C || controller == 0x2F) {
        const int port = value & 0x0F;
        if (rxZone >= 0 && onLed) onLed(rxZone, port, flag);
        if (stripOf(static_cast<std::uint8_t>(rxZone), 0) >= 0 && port == hui::autoPort && onAutoLed)
            onAutoLed(rxZone, autoLedColourOf(value));
    } else {
        reportUnknownController(controller, value);
    }
}

void HUIEngine::reportFader(int strip, double value) {
    if (onFaderFeedback) {
        onFaderFeedback(strip, value);
    } else {
        log("← PT fader " + std::to_string(strip) + " = " + threeDecimals(value));
    }
}

void HUIEngine::reportUnknownController(std::uint8_t controller, std::uint8_t value) {
    if (seenUnknownCC.test(controller) || seenUnknownCC.count() >= maxReportedControllers) return;
    seenUnknownCC.set(controller);
    log(text("← unknown CC 0x", "← 未知CC 0x") + twoHexDigits(controller) + " (val 0x" + twoHexDigits(value) +
        text(") first seen", ") 初出"));
}

void HUIEngine::handlePing() {
    // Without txLock: the answer to a ping must not wait for another thread that is sending. A single message cannot be
    // interleaved.
    send(pingReply);
    if (std::exchange(hostMissedReleases, false)) releaseAllAgain();
    const int count = ++pingCount;
    lastPingAt = runtime.now();
    if (count == 1 || count % 10 == 0)
        log("♥ ping #" + std::to_string(count) +
            text(" received → replied (connection alive)", " 受信 → 応答 (接続維持中)"));
}

} // namespace lumbrine
