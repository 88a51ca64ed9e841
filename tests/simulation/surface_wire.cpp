#include "tests/simulation/surface_wire.h"

namespace lumbrine::simulation {

namespace {

// The first half of a sequence, waiting for its second.
struct Half {
    bool isZone = false; // a zone select, else a fader's high byte
    int number = 0;      // zone or strip
    int high = 0;
};

class WireReader {
public:
    void read(const ReceivedPacket& packet) {
        const Bytes& bytes = packet.bytes;
        if (bytes == Bytes{0xFF} || bytes == Bytes{0x90, 0x00, 0x7F}) return; // may fall between any two messages
        if (bytes.size() != 3 || bytes[0] != 0xB0) return complain("no message of a surface", packet);
        control(packet, bytes[1], bytes[2]);
    }

    SurfaceWire wire;
    std::optional<Half> half;

private:
    void control(const ReceivedPacket& packet, int controller, int value) {
        if (controller == 0x0F) return begin({.isZone = true, .number = value}, packet);
        if (controller < 8) return begin({.number = controller, .high = value}, packet);
        if (controller == 0x2F) return endEdge(packet, value);
        if (controller >= 0x20 && controller < 0x28) return endFader(packet, controller - 0x20, value);
        if (controller < 0x40 || controller >= 0x48) return complain("unknown controller", packet);
        if (half) complain("a V-Pot message inside a sequence", packet);
        add({packet.at, WireAction::Kind::vpot, controller - 0x40, 0, value});
    }

    void begin(Half next, const ReceivedPacket& packet) {
        if (half) complain("a sequence begins inside another", packet);
        half = next;
    }

    void endEdge(const ReceivedPacket& packet, int value) {
        if (!half || !half->isZone) return complain("a port without its zone", packet);
        add({packet.at, WireAction::Kind::edge, half->number, value & 0x0F, value >> 6 & 1});
        half.reset();
    }

    void endFader(const ReceivedPacket& packet, int strip, int low) {
        if (!half || half->isZone || half->number != strip) return complain("half a fader move", packet);
        add({packet.at, WireAction::Kind::fader, strip, 0, half->high << 7 | low});
        half.reset();
    }

    void add(const WireAction& action) { wire.actions.push_back(action); }

    void complain(const std::string& what, const ReceivedPacket& packet) {
        half.reset();
        std::string text = what + " at " + std::to_string(inSeconds(packet.at.time_since_epoch())) + " s:";
        for (const std::uint8_t byte : packet.bytes)
            text += " " + std::to_string(byte);
        wire.violations.push_back(text);
    }
};

} // namespace

std::string timeText(TimePoint at) {
    return std::to_string(inSeconds(at.time_since_epoch())) + " s";
}

bool WireAction::sameAs(const WireAction& other) const {
    return kind == other.kind && number == other.number && port == other.port && value == other.value;
}

std::string WireAction::text() const {
    const std::string kinds[] = {"fader", "edge", "V-Pot"};
    return kinds[static_cast<int>(kind)] + " " + std::to_string(number) + " port " + std::to_string(port) + " value " +
           std::to_string(value) + " at " + std::to_string(inSeconds(at.time_since_epoch())) + " s";
}

SurfaceWire readWire(const std::vector<ReceivedPacket>& packets) {
    WireReader reader;
    for (const ReceivedPacket& packet : packets)
        reader.read(packet);
    if (reader.half) reader.wire.violations.emplace_back("the wire ends inside a sequence");
    return std::move(reader.wire);
}

} // namespace lumbrine::simulation
