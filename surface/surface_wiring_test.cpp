#include "platform/virtual/still_runtime.h"
#include "surface/surface_wiring.h"
#include "surface/testing/recording_midi_services.h"

namespace lumbrine {
namespace {

using Packets = std::vector<Bytes>;
using Texts = std::vector<std::string>;

// Records each call, with strips 0-15.
class Listener final : public SurfaceListener {
public:
    void surfaceLog(const std::string& line) override { lines.push_back(line); }
    void faderFeedback(Strip strip, double value) override {
        heard.push_back("fader " + of(strip) + " at " + std::to_string(value));
    }
    void trackNameShown(Strip strip, std::string_view text) override {
        heard.push_back("name " + of(strip) + " '" + std::string(text) + "'");
    }
    void meterShown(Strip strip, int side, int level) override {
        heard.push_back("meter " + of(strip) + " side " + std::to_string(side) + " at " + std::to_string(level));
    }
    void vpotShown(Strip strip, int value, bool centre, bool rightSide) override {
        heard.push_back("vpot " + of(strip) + " at " + std::to_string(value) + (centre ? " centre" : "") +
                        (rightSide ? " right" : " left"));
    }
    void ledShown(SurfaceID surface, int zone, int port, bool on) override {
        heard.push_back(of(surface) + " led " + std::to_string(zone) + "/" + std::to_string(port) +
                        (on ? " on" : " off"));
    }
    void autoLedShown(Strip strip, AutoLedColour colour) override {
        heard.push_back("auto led " + of(strip) + " " + std::to_string(static_cast<int>(colour)));
    }
    void pingReceived(SurfaceID surface, int pingCount, TimePoint at) override {
        lastPingAt = at;
        heard.push_back(of(surface) + " ping " + std::to_string(pingCount));
    }

    Texts lines;
    Texts heard;
    TimePoint lastPingAt{};

private:
    static std::string of(Strip strip) { return std::to_string(strip.index()); }
    static std::string of(SurfaceID surface) { return surface == SurfaceID::A ? "A" : "B"; }
};

class SurfaceWiring : public ::testing::Test {
protected:
    // One surface: its engine, its ports and the system behind them.
    struct Surface {
        Surface(SurfaceID surface, Runtime& runtime, const std::shared_ptr<Listener>& listener)
            : engine(std::make_shared<HUIEngine>(runtime, Bilingual(false))),
              host(std::make_shared<MIDIHost>(runtime, services, "ports", 1, 2)) {
            wireSurface(surface, engine, host, listener);
            EXPECT_TRUE(host->start());
        }

        void receive(const Bytes& packet) { services.deliver(packet); }

        RecordingMIDIServices services;
        std::shared_ptr<HUIEngine> engine;
        std::shared_ptr<MIDIHost> host;
    };

    StillRuntime runtime;
    std::shared_ptr<Listener> listener = std::make_shared<Listener>();
    Surface a{SurfaceID::A, runtime, listener};
    Surface b{SurfaceID::B, runtime, listener};
};

TEST_F(SurfaceWiring, SendsThroughTheSurfacesOwnPorts) {
    a.engine->touch(1);
    b.engine->touch(2);
    EXPECT_EQ(a.services.sent, (Packets{{0xB0, 0x0F, 0x01}, {0xB0, 0x2F, 0x40}}));
    EXPECT_EQ(b.services.sent, (Packets{{0xB0, 0x0F, 0x02}, {0xB0, 0x2F, 0x40}}));
}

TEST_F(SurfaceWiring, NumbersStripsAcrossBothSurfaces) {
    const Bytes fader{0xB0, 0x07, 0x7F, 0xB0, 0x27, 0x7F};
    a.receive(fader);
    b.receive(fader);
    b.receive({0xB0, 0x20, 0x00});
    EXPECT_EQ(listener->heard, (Texts{"fader 7 at 1.000000", "fader 15 at 1.000000", "fader 8 at 0.000000"}));
}

TEST_F(SurfaceWiring, PassesNamesUntrimmed) {
    const Bytes name{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x03, 0x20, 0x41, 0x62, 0x20, 0xF7};
    a.receive(name);
    b.receive(name);
    EXPECT_EQ(listener->heard, (Texts{"name 3 ' Ab '", "name 11 ' Ab '"}));
}

TEST_F(SurfaceWiring, LeavesTheSelectAssignDisplayUnconnected) {
    EXPECT_FALSE(a.engine->onSelectAssign);
    a.receive({0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x08, 0x50, 0x61, 0x6E, 0x20, 0xF7});
    EXPECT_EQ(listener->heard, Texts{});
}

TEST_F(SurfaceWiring, PassesMetersAtTheirFullRange) {
    a.receive({0xA0, 0x00, 0x1F});
    b.receive({0xA0, 0x02, 0x00});
    EXPECT_EQ(listener->heard, (Texts{"meter 0 side 1 at 15", "meter 10 side 0 at 0"}));
}

TEST_F(SurfaceWiring, DropsMetersOfNoSideAndNoStrip) {
    a.engine->onMeter(0, 2, 5);
    a.engine->onMeter(0, -1, 5);
    a.engine->onMeter(8, 0, 5);
    EXPECT_EQ(listener->heard, Texts{});
}

TEST_F(SurfaceWiring, DropsStripsThatTheSurfaceDoesNotHave) {
    for (const int strip : {-1, 8}) {
        a.engine->onFaderFeedback(strip, 0.5);
        a.engine->onTrackName(strip, "Kick");
        a.engine->onVpot(strip, 1, false, false);
        b.engine->onFaderFeedback(strip, 0.5);
    }
    EXPECT_EQ(listener->heard, Texts{});
}

TEST_F(SurfaceWiring, PassesRingsWithTheirSide) {
    a.receive({0xB0, 0x11, 0x46});
    b.engine->flipPanSide();
    b.receive({0xB0, 0x11, 0x0F});
    EXPECT_EQ(listener->heard, (Texts{"vpot 1 at 6 centre left", "vpot 9 at 15 right"}));
}

TEST_F(SurfaceWiring, PassesLedsOfEveryZoneWithTheirSurface) {
    a.receive({0xB0, 0x0C, 0x0E, 0xB0, 0x2C, 0x44});
    b.receive({0xB0, 0x0C, 0x07, 0xB0, 0x2C, 0x02});
    EXPECT_EQ(listener->heard, (Texts{"A led 14/4 on", "B led 7/2 off"}));
}

TEST_F(SurfaceWiring, AnswersAndReportsAPing) {
    a.receive({0x90, 0x00, 0x00});
    runtime.time = TimePoint{seconds(12.5)};
    a.receive({0x90, 0x00, 0x00});
    EXPECT_EQ(listener->lastPingAt, TimePoint{seconds(12.5)});
    runtime.time = TimePoint{seconds(13)};
    b.receive({0x90, 0x00, 0x00});
    EXPECT_EQ(listener->lastPingAt, TimePoint{seconds(13)});
    EXPECT_EQ(listener->heard, (Texts{"A ping 1", "A ping 2", "B ping 1"}));
    EXPECT_EQ(a.services.sent, (Packets{{0x90, 0x00, 0x7F}, {0x90, 0x00, 0x7F}}));
    EXPECT_EQ(b.services.sent, (Packets{{0x90, 0x00, 0x7F}}));
}

TEST_F(SurfaceWiring, ReportsTheLastPingOfAPacketAfterTheRest) {
    a.receive({0x90, 0x00, 0x00, 0xA0, 0x01, 0x02, 0x90, 0x00, 0x00, 0xA0, 0x02, 0x03});
    EXPECT_EQ(listener->heard, (Texts{"meter 1 side 0 at 2", "meter 2 side 0 at 3", "A ping 2"}));
}

TEST_F(SurfaceWiring, ReportsEveryPingThatWasAnsweredAndNoOther) {
    a.receive({0xA0, 0x01, 0x02, 0x90, 0x00, 0x00}); // after another message
    a.receive({0x90, 0x00});
    a.receive({0x90, 0x00, 0x7F});
    a.receive({0x90, 0x01, 0x00});
    a.receive({0xB0, 0x00, 0x00});
    a.receive({0xF0, 0x00, 0x00});
    a.receive({0x80, 0x00, 0x40}); // ends the message before it
    EXPECT_EQ(listener->heard, (Texts{"meter 1 side 0 at 2", "A ping 1", "A ping 2"}));
    EXPECT_EQ(a.services.sent.size(), 2u);
}

TEST_F(SurfaceWiring, BeginsAnewWhenThePortsAreBack) {
    a.engine->touch(1);
    a.receive({0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x03, 0x20, 0x41, 0x62, 0x20});
    a.services.sent.clear();
    a.services.portsAreBack();
    a.receive({0xF7});
    a.receive({0x90, 0x00, 0x00});
    EXPECT_EQ(listener->heard, Texts{"A ping 1"});
    EXPECT_EQ(a.services.sent, (Packets{{0x90, 0x00, 0x7F}, {0xB0, 0x0F, 0x01}, {0xB0, 0x2F, 0x00}}));
}

TEST_F(SurfaceWiring, MarksTheLogOfTheSecondSurface) {
    a.engine->log("← LED");
    b.engine->log("← LED");
    EXPECT_EQ(listener->lines, (Texts{"← LED", "[9-16] ← LED"}));
}

TEST_F(SurfaceWiring, DropsLogLinesAboutOtherMessages) {
    for (const Surface* surface : {&a, &b}) {
        surface->engine->log("← other: 1");
        surface->engine->log("← other");
        surface->engine->log("no ← other");
    }
    EXPECT_EQ(listener->lines, (Texts{"no ← other", "[9-16] no ← other"}));
}

TEST_F(SurfaceWiring, DropsWhatArrivesWhenNobodyListensAnyMore) {
    listener.reset();
    a.receive({0x90, 0x00, 0x00});
    a.engine->onFaderFeedback(0, 0.5);
    a.engine->onLed(0, 2, true);
    a.engine->log("line");
    EXPECT_EQ(a.services.sent, Packets{});
}

TEST_F(SurfaceWiring, DropsWhatArrivesWhenTheEngineIsGone) {
    a.engine.reset();
    a.services.portsAreBack();
    a.receive({0x90, 0x00, 0x00});
    EXPECT_EQ(listener->heard, Texts{});
    EXPECT_EQ(a.services.sent, Packets{});
}

TEST_F(SurfaceWiring, KeepsNeitherListenerNorEngineAlive) {
    const std::weak_ptr<HUIEngine> engine = a.engine;
    const std::weak_ptr<MIDIHost> host = a.host;
    const std::weak_ptr<Listener> heldBefore = listener;
    listener.reset();
    EXPECT_TRUE(heldBefore.expired());
    a.host.reset();
    EXPECT_FALSE(host.expired()); // the engine sends through it
    a.engine.reset();
    EXPECT_TRUE(engine.expired());
    EXPECT_TRUE(host.expired());
}

} // namespace
} // namespace lumbrine
