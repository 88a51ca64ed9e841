// The input is HUI bytes in packets: a length byte before each packet, the last packet cut short by the end of the
// input.
#include "fuzz/require.h"
#include "platform/virtual/still_runtime.h"
#include "surface/hui_engine.h"

#include <algorithm>
#include <array>
#include <string>
#include <tuple>
#include <vector>

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
            heard.emplace_back("ping", 0, 0, "");
        };
        engine.log = [this](const std::string& line) { unknownLines += line.find("CC 0x") != std::string::npos; };
        engine.onFaderFeedback = [this](int strip, double value) {
            require(isStrip(strip) && value >= 0 && value <= 1);
            heard.emplace_back("fader", strip, 0, std::to_string(value));
        };
        engine.onTrackName = [this](int strip, std::string_view text) {
            require(isStrip(strip) && text.size() == 4);
            require(std::ranges::all_of(text, [](char character) { return character >= ' ' && character <= '~'; }));
            heard.emplace_back("name", strip, 0, text);
        };
        engine.onMeter = [this](int strip, int side, int level) {
            require(isStrip(strip) && (side == 0 || side == 1) && level >= 0 && level <= 15);
            heard.emplace_back("meter", strip * 2 + side, level, "");
        };
        engine.onLed = [this](int zone, int port, bool on) {
            require(zone >= 0 && zone <= 127 && port >= 0 && port <= 15);
            heard.emplace_back("led", zone * 16 + port, on, "");
        };
        engine.onVpot = [this](int strip, int value, bool centre, bool rightSide) {
            require(isStrip(strip) && value >= 0 && value <= 15 && !rightSide);
            heard.emplace_back("vpot", strip, value * 2 + centre, "");
        };
        engine.onSelectAssign = [this](std::string_view text, std::optional<bool> flag) {
            require(text.size() == 4 && !flag);
            heard.emplace_back("assign", 0, 0, text);
        };
    }

    std::vector<std::tuple<std::string, int, int, std::string>> heard; // what, where, value, text
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
    CheckedEngine withoutRealtime; // gets the same, except the bytes that mean nothing to it
    for (ByteView rest(data, size); !rest.empty();) {
        const std::size_t length = std::min<std::size_t>(rest[0], rest.size() - 1);
        Bytes packet(rest.begin() + 1, rest.begin() + 1 + static_cast<std::ptrdiff_t>(length));
        const int before = checked.replies;
        checked.engine.handleIncoming(packet);
        require(checked.replies - before >= pingsIn(packet));
        std::erase_if(packet, [](std::uint8_t byte) { return byte >= 0xF8; });
        withoutRealtime.engine.handleIncoming(packet);
        rest = rest.subspan(1 + length);
    }
    require(checked.engine.pingCount == checked.replies);
    require(checked.unknownLines <= 24);
    require(checked.heard == withoutRealtime.heard);

    // No input leaves the engine deaf.
    const int before = checked.replies;
    checked.engine.handleIncoming(ping);
    require(checked.replies == before + 1);
    return 0;
}
