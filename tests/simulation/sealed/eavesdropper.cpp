#include "tests/simulation/sealed/eavesdropper.h"

#include "seal/seal_trailer.h"
#include "tests/simulation/phone.h"

#include <array>
#include <utility>

namespace lumbrine::simulation {

namespace {

constexpr const char* ownAddress = "192.168.1.66";

// Longer than any detour: what is played after that has arrived or is lost. Before that, playing it from another
// address would be to carry it, as networks that translate addresses do.
constexpr Duration longestWay = seconds(4);

} // namespace

Eavesdropper::Eavesdropper(VirtualRuntime& rt, VirtualNetwork& virtualNetwork, std::uint64_t seed)
    : runtime(rt), network(virtualNetwork), chance(seed * 29 + 3) {
    network.host(ownAddress);
}

void Eavesdropper::act() {
    if (resting) return;
    for (std::uint64_t i = 1 + chance.below(4); i > 0; --i)
        forge();
    runtime.postMainAfter(seconds(0.001) * static_cast<int>(5 + chance.below(60)), [this] { act(); });
}

bool Eavesdropper::hear(const std::string& host, std::uint16_t port, ByteView bytes) {
    if (std::exchange(speaking, false)) return false;
    recording.push_back({runtime.now(), host, port, Bytes(bytes.begin(), bytes.end())});
    return true;
}

void Eavesdropper::forge() {
    if (recording.empty()) return;
    const Heard& played = anyHeard();
    const bool isOld = runtime.now() - played.at > longestWay;
    const Heard& other = isOld && chance.oneIn(3) ? anyHeard() : played;
    const bool fromHimself = isOld && chance.oneIn(4);
    const std::string host = fromHimself ? ownAddress : other.host;
    const auto port = static_cast<std::uint16_t>(fromHimself ? 1000 + chance.below(50) : other.port);
    switch (chance.below(4)) {
    case 0:
        return say(host, port, changed(played.bytes));
    case 1:
        return say(host, port, ownWords());
    default:
        return say(host, port, played.bytes);
    }
}

// Cut, mixed or with another bit.
Bytes Eavesdropper::changed(const Bytes& original) {
    Bytes bytes = original;
    switch (chance.below(4)) {
    case 0: // without its trailer
        if (bytes.size() > seal::trailerSize) bytes.resize(bytes.size() - seal::trailerSize);
        return bytes;
    case 1: { // under another one's trailer
        const Bytes& other = anyHeard().bytes;
        if (bytes.size() <= seal::trailerSize || other.size() <= seal::trailerSize) return bytes;
        std::copy(other.end() - seal::trailerSize, other.end(), bytes.end() - seal::trailerSize);
        return bytes == original ? ownWords() : bytes;
    }
    default:
        if (!bytes.empty())
            bytes[static_cast<std::size_t>(chance.below(bytes.size()))] ^=
                static_cast<std::uint8_t>(1 << chance.below(8));
        return bytes;
    }
}

// What a client without a key could say, with a trailer that he makes up or without one.
Bytes Eavesdropper::ownWords() {
    const auto strip = static_cast<std::uint8_t>(chance.below(16));
    const auto any = [this] { return static_cast<std::uint8_t>(chance.below(256)); };
    const std::array<Bytes, 9> words{
        Bytes{0x01, 0x01, strip, static_cast<std::uint8_t>(chance.below(64)), any()},
        Bytes{0x01, 0x02, strip},
        Bytes{0x01, 0x03, strip},
        Bytes{0x01, 0x04, strip},
        Bytes{0x01, 0x05, strip},
        Bytes{0x01, 0x09, static_cast<std::uint8_t>(chance.below(4))},
        Bytes{0x01, 0x25},
        Bytes{0x01, 0x00},
        Bytes{0x01, 0x00, 0, 0, 0, 0, 0, 0, 0, static_cast<std::uint8_t>(100 + chance.below(3))}};
    Bytes bytes = words[static_cast<std::size_t>(chance.below(words.size()))];
    if (chance.oneIn(2)) return bytes;
    append(bytes, Bytes{0xFF, 0x5E, 0xA1});
    for (std::size_t i = 3; i < seal::trailerSize; ++i)
        bytes.push_back(any());
    return bytes;
}

// Often a new one: what is overheard is played at once.
const Eavesdropper::Heard& Eavesdropper::anyHeard() {
    const std::uint64_t all = recording.size();
    const std::uint64_t back = chance.oneIn(2) ? chance.below(std::min<std::uint64_t>(all, 30)) : chance.below(all);
    return recording[static_cast<std::size_t>(all - 1 - back)];
}

void Eavesdropper::say(const std::string& host, std::uint16_t port, const Bytes& bytes) {
    ++count;
    speaking = true;
    network.forge(host, port, receiverAddress, receiverPort, bytes);
    speaking = false;
}

} // namespace lumbrine::simulation
