#include "tools/blackbox/wire_facts.h"

#include "blackbox/payload.h"

#include <algorithm>
#include <utility>

namespace lumbrine::blackbox {

namespace {

constexpr std::int64_t tenth = 100'000'000;  // of a second
constexpr std::int64_t silence = 50 * tenth; // after which a surface gets a whole dump
constexpr std::int64_t dumpLasts = 10 * tenth;
constexpr std::array<std::uint8_t, 6> huiHeader{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00};
constexpr std::size_t displaySize = 5; // its number and four characters

std::size_t dataBytes(std::uint8_t status) {
    return (status & 0xE0) == 0xC0 || status == 0xF1 || status == 0xF3 ? 1 : status == 0xF2 || status < 0xF0 ? 2 : 0;
}

bool isRealtime(std::uint8_t byte) {
    return byte >= 0xF8;
}

} // namespace

void WireFacts::came(const TimedRecord& record) {
    packet(record, surfaces[record.record.channel]);
}

// A dump comes when the surface answers its first ping, or says that it was switched on.
void WireFacts::sent(const TimedRecord& record) {
    if (record.record.payload.size() <= sizeof(ResultHead)) return;
    Surface& surface = surfaces[record.record.channel];
    const ByteView bytes = behind<ResultHead>(record.record);
    if (bytes[0] != 0xFF && !(surface.lastPing && !surface.dumpBegan)) return;
    endDump(surface, order);
    surface.dumpBegan = record.record.time;
}

void WireFacts::packet(const TimedRecord& record, Surface& surface) {
    Bytes bytes; // without what the system may put between any two
    std::ranges::copy_if(record.record.payload, std::back_inserter(bytes),
                         [](std::uint8_t byte) { return !isRealtime(byte); });
    surface.status.reset();
    long messages = 0;
    for (std::size_t at = 0; at < bytes.size(); ++messages) {
        std::size_t size = 0;
        Bytes whole;
        if (bytes[at] == 0xF0) {
            const auto end = std::find(bytes.begin() + static_cast<std::ptrdiff_t>(at), bytes.end(), 0xF7);
            size = static_cast<std::size_t>(end - bytes.begin()) - at + (end == bytes.end() ? 0 : 1);
            surface.status.reset();
        } else if (bytes[at] >= 0x80) {
            surface.status = bytes[at];
            size = std::min(1 + dataBytes(bytes[at]), bytes.size() - at);
        } else {
            if (!surface.status) return; // the rest of what began in another packet
            size = std::min(dataBytes(*surface.status), bytes.size() - at);
            if (size == 0) return;
            whole.push_back(*surface.status);
            vote(running, "used", record);
        }
        append(whole, ByteView(bytes).subspan(at, size));
        message(record, surface, whole);
        at += size;
    }
    if (messages > 0) vote(packing, messages > 1 ? "several" : "one", record);
}

void WireFacts::message(const TimedRecord& record, Surface& surface, ByteView message) {
    if (message[0] == 0xF0) {
        const bool isHUI =
            message.size() > huiHeader.size() + 2 && std::ranges::equal(message.first(huiHeader.size()), huiHeader);
        if (!isHUI) return;
        const std::uint8_t what = message[huiHeader.size()];
        partOfDump(record, surface, what == 0x11 ? "counter" : "displays");
        const std::size_t count = (message.size() - huiHeader.size() - 2) / displaySize;
        if (what == 0x10 && count > 0) vote(displays, std::to_string(count), record);
    } else if (message.size() == 3 && message[0] == 0xB0) {
        control(record, surface, message);
    } else if (message.size() == 3 && (message[0] & 0xEF) == 0x80 && message[1] == 0) {
        ping(record, surface);
    }
}

void WireFacts::control(const TimedRecord& record, Surface& surface, ByteView message) {
    const std::uint8_t controller = message[1];
    const std::uint8_t value = message[2];
    if (controller == 0x0C) {
        surface.isZoneFresh = true;
        zone = value;
    } else if (controller == 0x2C) {
        vote(zones, std::exchange(surface.isZoneFresh, false) ? "before each port" : "once for several ports", record);
        partOfDump(record, surface, zone < 8 ? "strip LEDs" : "global LEDs");
        if (zone < 8 && (value & 0x0F) == 4 && (value == 0x24 || value == 0x34))
            vote(autoLED, value == 0x24 ? "24" : "34", record);
    } else if (controller >= 0x20 && controller < 0x28) {
        partOfDump(record, surface, "faders");
        ++faders;
        lowFaderBits |= value;
    } else if (controller >= 0x10 && controller < 0x18) {
        partOfDump(record, surface, "rings");
    }
}

void WireFacts::ping(const TimedRecord& record, Surface& surface) {
    const std::int64_t now = record.record.time;
    partOfDump(record, surface, "ping");
    if (surface.lastPing) {
        const std::int64_t gap = now - *surface.lastPing;
        if (gap > silence) surface.dumpBegan.reset();
        // To the tenth, and late ones apart.
        if (gap < 15 * tenth) vote(pings, std::to_string((gap + tenth / 2) / tenth), record);
    }
    surface.lastPing = now;
}

void WireFacts::partOfDump(const TimedRecord& record, Surface& surface, const std::string& kind) {
    if (!surface.dumpBegan || record.record.time - *surface.dumpBegan > dumpLasts) return;
    if (std::ranges::find(surface.dump, kind) == surface.dump.end()) surface.dump.push_back(kind);
    if (surface.dump.size() == 1 || order.example.empty()) order.example = dateAndTime(record.wall);
}

// One in which nothing is missing: another was interrupted, or there was none.
void WireFacts::endDump(Surface& surface, Fact& order) {
    std::string text;
    int parts = 0;
    for (const std::string& kind : surface.dump) {
        if (kind != "displays" && kind != "faders" && kind != "rings" && kind != "strip LEDs") continue;
        text += (text.empty() ? "" : ", ") + kind;
        ++parts;
    }
    if (parts == 4) ++order.votes[text];
    surface.dump.clear();
}

std::vector<Fact> WireFacts::finish() {
    for (auto& [number, surface] : surfaces)
        endDump(surface, order);
    if (order.votes.empty()) order.example.clear();
    if (faders > 0)
        precision.votes[(lowFaderBits & 0x0F) != 0   ? "14 bits"
                        : (lowFaderBits & 0x1F) != 0 ? "10 bits"
                                                     : "9 bits or more"] = faders;
    if (!packing.votes.empty() && running.votes.empty()) running.votes["not used"] = 1;
    if (packing.votes.contains("several")) packing.votes.erase("one"); // a packet may hold one of several
    if (zones.votes.contains("once for several ports")) zones.votes.erase("before each port");
    if (!pings.votes.empty()) {
        const auto most = std::ranges::max_element(pings.votes, {}, &std::pair<const std::string, long>::second);
        pings.votes = {{most->first + " tenths of a second", most->second}};
    }
    if (displays.votes.size() > 1) {
        const auto most = std::ranges::max_element(displays.votes, {}, [](const auto& vote) { return vote.first; });
        displays.votes = {{"up to " + most->first, most->second}};
    }
    return {packing, running, displays, zones, pings, order, precision, autoLED};
}

void WireFacts::vote(Fact& fact, const std::string& answer, const TimedRecord& record) {
    if (++fact.votes[answer] == 1) fact.example = dateAndTime(record.wall);
}

} // namespace lumbrine::blackbox
