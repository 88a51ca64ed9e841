#include "simulator/packet_maker.h"

#include <algorithm>
#include <array>
#include <utility>

namespace lumbrine {

namespace {

constexpr std::uint8_t sysExBegin = 0xF0;
constexpr std::uint64_t oneMessageIn = 4; // about one message in four gets a realtime byte

const Bytes plainPing{0x90, 0x00, 0x00};

Bytes inForm(PingForm form) {
    switch (form) {
    case PingForm::noteOn:
        break;
    case PingForm::noteOff:
        return {0x80, 0x00, 0x40};
    case PingForm::noteOffWithoutVelocity:
        return {0x80, 0x00, 0x00};
    }
    return plainPing;
}

// Moves pings after the last message that may share their packet.
void movePingsBack(std::vector<Bytes>& messages) {
    const auto pings = std::erase(messages, plainPing);
    const auto last = std::find_if(messages.rbegin(), messages.rend(),
                                   [](const Bytes& message) { return message.front() != sysExBegin; });
    messages.insert(last.base(), pings, plainPing);
}

std::vector<Bytes> packed(std::vector<Bytes> messages, int most) {
    std::vector<Bytes> packets;
    int inLast = 0;
    for (Bytes& message : messages) {
        const bool joins =
            !packets.empty() && inLast < most && packets.back().front() != sysExBegin && message.front() != sysExBegin;
        if (joins) {
            packets.back().insert(packets.back().end(), message.begin(), message.end());
            ++inLast;
        } else {
            packets.push_back(std::move(message));
            inLast = 1;
        }
    }
    return packets;
}

} // namespace

std::vector<Bytes> PacketMaker::packetsOf(std::vector<Bytes> messages) {
    if (options.messagesPerPacket > 1) movePingsBack(messages);
    std::ranges::replace(messages, plainPing, inForm(options.ping));
    return packed(disturbed(std::move(messages)), options.messagesPerPacket);
}

std::vector<Bytes> PacketMaker::disturbed(std::vector<Bytes> messages) {
    if (options.realtime == RealtimeBytes::none) return messages;
    constexpr std::array<std::uint8_t, 2> realtimeBytes{0xF8, 0xFE}; // clock, active sensing
    std::vector<Bytes> all;
    for (Bytes& message : messages) {
        if (chance.oneIn(oneMessageIn)) {
            const std::uint8_t byte = realtimeBytes[chance.below(realtimeBytes.size())];
            const bool within = options.realtime == RealtimeBytes::within && chance.oneIn(2);
            if (within) {
                const auto place = static_cast<std::ptrdiff_t>(1 + chance.below(message.size() - 1));
                message.insert(message.begin() + place, byte);
            } else {
                all.push_back({byte});
            }
        }
        all.push_back(std::move(message));
    }
    return all;
}

Bytes PacketMaker::cutSysEx() {
    return {sysExBegin, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x00, 'K'};
}

} // namespace lumbrine
