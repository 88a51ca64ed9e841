// The input is HUI bytes in packets: a length byte before each packet, the last packet cut short by the end of the
// input.
#include "fuzz/require.h"
#include "platform/virtual/still_runtime.h"
#include "surface/hui_engine.h"

#include <algorithm>
#include <array>

namespace {

using namespace lumbrine;

constexpr std::array<std::uint8_t, 3> ping{0x90, 0x00, 0x00};
constexpr std::array<std::uint8_t, 3> reply{0x90, 0x00, 0x7F};

bool isStrip(int strip) {
    return strip >= 0 && strip < 8;
}

// An engine whose callbacks abort if an argument is out of range.
struct CheckedEngine {
    CheckedEngine() {
        engine.send = [this](ByteView message) {
            require(std::ranges::equal(message, reply));
            ++replies;
        };
        engine.log = [this](const std::string& line) { unknownLines += line.find("CC 0x") != std::string::npos; };
        engine.onFaderFeedback = [](int strip, double value) {
            require(isStrip(strip) && value >= 0 && value <= 32767 / 16383.0);
        };
        engine.onTrackName = [](int strip, std::string_view text) {
            require(isStrip(strip) && text.size() == 4);
            require(std::ranges::all_of(text, [](char character) { return character >= ' ' && character <= '~'; }));
        };
        engine.onMeter = [](int strip, int side, int level) {
            require(isStrip(strip) && (side == 0 || side == 1) && level >= 0 && level <= 15);
        };
        engine.onLed = [](int zone, int port, bool) { require(zone >= 0 && zone <= 255 && port >= 0 && port <= 15); };
        engine.onVpot = [](int strip, int value, bool, bool rightSide) {
            require(isStrip(strip) && value >= 0 && value <= 15 && !rightSide);
        };
        engine.onSelectAssign = [](std::string_view text, std::optional<bool> flag) {
            require(text.size() == 4 && !flag);
        };
    }

    StillRuntime runtime;
    HUIEngine engine{runtime, Bilingual(false)};
    int replies = 0;
    int unknownLines = 0;
};

int pingsIn(ByteView packet) {
    int count = 0;
    for (; packet.size() >= ping.size(); packet = packet.subspan(1))
        count += std::ranges::equal(packet.first(ping.size()), ping);
    return count;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CheckedEngine checked;
    int pings = 0;
    for (ByteView rest(data, size); !rest.empty();) {
        const std::size_t length = std::min<std::size_t>(rest[0], rest.size() - 1);
        const Bytes packet(rest.begin() + 1, rest.begin() + 1 + static_cast<std::ptrdiff_t>(length));
        checked.engine.handleIncoming(packet);
        pings += pingsIn(packet);
        rest = rest.subspan(1 + length);
    }
    require(checked.replies <= pings && checked.engine.pingCount == checked.replies);
    require(checked.unknownLines <= 24);

    // No input may leave the engine deaf: 1025 data bytes overflow any open SysEx message, and the next ping is
    // answered.
    const int before = checked.replies;
    checked.engine.handleIncoming(Bytes(1025));
    checked.engine.handleIncoming(ping);
    require(checked.replies == before + 1);
    return 0;
}
