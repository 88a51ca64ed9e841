// MIDI from Pro Tools on its whole way in, on two surfaces: packets through ports and engine to the listener. Input is
// one packet after another, each behind a byte whose top bit is the surface and whose other bits are the length.
#include "fuzz/require.h"
#include "platform/virtual/still_runtime.h"
#include "surface/surface_wiring.h"
#include "surface/testing/recording_midi_services.h"

#include <algorithm>
#include <tuple>

namespace {

using namespace lumbrine;

// Everything that reaches the listener is in range and of the surface whose bytes are being delivered.
class CheckedListener final : public SurfaceListener {
public:
    using Heard = std::tuple<int, int, double, std::string>; // what, where, value, text

    void surfaceLog(const std::string& line) override {
        require(line.starts_with("[9-16] ") == (delivering == SurfaceID::B));
        require(line.find('\n') == std::string::npos && line.size() <= 500);
        heard.emplace_back(0, 0, 0, line);
    }
    void faderFeedback(Strip strip, double value) override {
        require(value >= 0 && value <= 1);
        note(1, strip, value, {});
    }
    void trackNameShown(Strip strip, std::string_view text) override {
        require(text.size() == 4);
        require(std::ranges::all_of(text, [](char character) { return character >= ' ' && character <= '~'; }));
        note(2, strip, 0, std::string(text));
    }
    void meterShown(Strip strip, int side, int level) override {
        require((side == 0 || side == 1) && level >= 0 && level <= 15);
        note(3 + side, strip, level, {});
    }
    void vpotShown(Strip strip, int value, bool, bool) override {
        require(value >= 0 && value <= 15);
        note(5, strip, value, {});
    }
    void ledShown(SurfaceID surface, int zone, int port, bool on) override {
        require(surface == delivering && zone >= 0 && zone <= 127 && port >= 0 && port <= 15);
        heard.emplace_back(6, zone * 16 + port, on, "");
    }
    void autoLedShown(Strip strip, AutoLedColour colour) override { note(8, strip, static_cast<int>(colour), {}); }
    void pingReceived(SurfaceID surface, int pingCount, TimePoint) override {
        require(surface == delivering && pingCount > answeredBefore);
        answeredBefore = pingCount;
        ++pings;
        heard.emplace_back(7, 0, pingCount, "");
    }

    SurfaceID delivering = SurfaceID::A;
    std::vector<Heard> heard;
    int pings = 0;
    int answeredBefore = 0; // the count of pings, as it was told last

private:
    void note(int what, Strip strip, double value, std::string text) {
        require(strip.surface() == delivering && strip.index() >= 0 && strip.index() < 16);
        heard.emplace_back(what, strip.index(), value, std::move(text));
    }
};

class Surface {
public:
    explicit Surface(SurfaceID surface) : id(surface) {
        wireSurface(surface, engine, host, listener);
        require(host->start().has_value());
    }

    void deliver(ByteView packet) {
        listener->delivering = id;
        services.deliver(packet);
        require(std::ranges::all_of(services.sent,
                                    [](const Bytes& message) { return message == Bytes{0x90, 0x00, 0x7F}; }));
        require(engine->pingCount == static_cast<int>(services.sent.size()));
        require(engine->pingCount == listener->answeredBefore);
    }

    // Whatever came before, the next ping is answered and told.
    void requireAlive() {
        const int answered = engine->pingCount, told = listener->pings;
        deliver(Bytes{0x90, 0x00, 0x00});
        require(engine->pingCount == answered + 1 && listener->pings == told + 1);
    }

    const SurfaceID id;
    StillRuntime runtime;
    RecordingMIDIServices services;
    std::shared_ptr<CheckedListener> listener = std::make_shared<CheckedListener>();
    std::shared_ptr<HUIEngine> engine = std::make_shared<HUIEngine>(runtime, Bilingual(false));
    std::shared_ptr<MIDIHost> host = std::make_shared<MIDIHost>(runtime, services, "Lumbrine", 1, 2);
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Surface a(SurfaceID::A), b(SurfaceID::B);
    for (ByteView rest(data, size); !rest.empty();) {
        const bool isB = (rest[0] & 0x80) != 0;
        const std::size_t length = std::min<std::size_t>(rest[0] & 0x7F, rest.size() - 1);
        if (length > 0) (isB ? b : a).deliver(rest.subspan(1, length));
        rest = rest.subspan(1 + length);
    }
    a.requireAlive();
    b.requireAlive();
    return 0;
}
