// The two surfaces as the system sees them: under which names and identities their ports are made, and what becomes of
// them when a port cannot be made.
#include "model/hands/surface_desk.h"
#include "model/testing/model_test.h"
#include "platform/virtual/still_runtime.h"

#include <functional>
#include <utility>

namespace lumbrine {
namespace {

// Writes down which ports are made and what leaves them, and makes no port of the name that is to fail.
class PortRegister final : public MIDIServices {
public:
    Lines made; // "source Lumbrine", "Lumbrine is LmRS"
    Lines sent; // "Lumbrine: FF"
    std::string failing;
    MIDIStatus sentStatus = 0;
    std::function<void()> onSent = [] {};

    MIDIStatus createClient(const std::string& name, MIDIClientRef& client) override {
        made.push_back("client " + name);
        client = 1;
        return 0;
    }

    MIDIStatus createSource(MIDIClientRef, const std::string& name, MIDIEndpointRef& source) override {
        if (name == failing) return -10830;
        return make("source", name, source);
    }

    MIDIStatus createDestination(MIDIClientRef, const std::string& name, MIDIReadBlock, MIDIEndpointRef& end) override {
        return make("destination", name, end);
    }

    MIDIStatus setUniqueID(MIDIEndpointRef endpoint, std::int32_t uniqueID) override {
        std::string code;
        for (const int shift : {24, 16, 8, 0})
            code += static_cast<char>(uniqueID >> shift & 0xFF);
        made.push_back(endpoints.at(endpoint - 1) + " is " + code);
        return 0;
    }

    MIDIStatus received(MIDIEndpointRef source, ByteView message) override {
        sent.push_back(endpoints.at(source - 1) + ": " + hex(message));
        onSent();
        return sentStatus;
    }

private:
    MIDIStatus make(const std::string& kind, const std::string& name, MIDIEndpointRef& endpoint) {
        endpoints.push_back(kind + " " + name);
        made.push_back(endpoints.back());
        endpoint = static_cast<MIDIEndpointRef>(endpoints.size());
        return 0;
    }

    Lines endpoints;
};

class SurfacesTest : public ::testing::Test {
protected:
    void start() {
        surfaces.wire({});
        surfaces.startSurfaces();
        runtime.runFor(1s);
    }

    VirtualRuntime runtime;
    Jobs jobs{runtime};
    PublishedState published;
    Lines lines;
    ActivityLog log{jobs, published, Bilingual(false), [this](const std::string& line) { lines.push_back(line); }};
    PortRegister ports;
    Surfaces surfaces{runtime, published, ports, log};
};

TEST_F(SurfacesTest, HaveThePortsByWhichProToolsKnowsThem) {
    start();
    EXPECT_THAT(ports.made,
                ElementsAre("client Lumbrine", "source Lumbrine", "destination Lumbrine", "source Lumbrine is LmRS",
                            "destination Lumbrine is LmRD", //
                            "client Lumbrine B", "source Lumbrine B", "destination Lumbrine B",
                            "source Lumbrine B is LmSB", "destination Lumbrine B is LmDB"));
}

TEST_F(SurfacesTest, AreBothLeftAloneWhenTheFirstCannotBeMade) {
    ports.failing = "Lumbrine";
    start();
    EXPECT_THAT(ports.made, ElementsAre("client Lumbrine"));
    EXPECT_THAT(lines, ElementsAre("✗ MIDI failed: MIDISourceCreate failed: -10830"));
    EXPECT_THAT(ports.sent, IsEmpty());
}

TEST_F(SurfacesTest, AreNotAnnouncedWhenTheSecondCannotBeMade) {
    ports.failing = "Lumbrine B";
    start();
    EXPECT_EQ(ports.made.back(), "client Lumbrine B");
    EXPECT_THAT(lines, ElementsAre("✗ MIDI failed: MIDISourceCreate failed: -10830"));
    EXPECT_THAT(ports.sent, IsEmpty());
}

TEST_F(SurfacesTest, KeepTheFirstWhenTheSecondCannotBeMade) {
    ports.failing = "Lumbrine B";
    start();
    surfaces.engine(SurfaceID::A).touch(3);
    surfaces.engine(SurfaceID::B).touch(3);
    EXPECT_THAT(ports.sent, ElementsAre("source Lumbrine: B0 0F 03", "source Lumbrine: B0 2F 40"));
}

TEST_F(SurfacesTest, AreCompletedWhenTheMIDIServiceIsThereAtLast) {
    ports.failing = "Lumbrine B";
    start();
    ports.failing.clear();
    ports.made.clear();
    lines.clear();
    surfaces.serviceChanged(true);
    runtime.runFor(1s);
    EXPECT_THAT(ports.made, ElementsAre("source Lumbrine B", "destination Lumbrine B", "source Lumbrine B is LmSB",
                                        "destination Lumbrine B is LmDB"));
    EXPECT_THAT(lines, ElementsAre("✓ Virtual MIDI 'Lumbrine' + 'Lumbrine B' created (ch 1-8 + 9-16)"));
    EXPECT_THAT(ports.sent, testing::SizeIs(6));
}

TEST_F(SurfacesTest, SayOnceWhyTheyCannotBeMade) {
    ports.failing = "Lumbrine";
    start();
    surfaces.serviceChanged(false);
    surfaces.serviceChanged(true);
    EXPECT_THAT(lines, ElementsAre("✗ MIDI failed: MIDISourceCreate failed: -10830"));
}

TEST_F(SurfacesTest, SayThatTheMIDIServiceIsLostAndBack) {
    start();
    lines.clear();
    surfaces.serviceChanged(false);
    surfaces.serviceChanged(true);
    EXPECT_THAT(lines, ElementsAre("⚠️ MIDI server lost", "✓ MIDI server back"));
    EXPECT_THAT(ports.made, testing::SizeIs(10)); // as at the start
}

TEST_F(SurfacesTest, AreAnnouncedThreeTimesEach) {
    start();
    EXPECT_THAT(ports.sent,
                testing::UnorderedElementsAre("source Lumbrine: FF", "source Lumbrine B: FF", "source Lumbrine: FF",
                                              "source Lumbrine B: FF", "source Lumbrine: FF", "source Lumbrine B: FF"));
}

TEST_F(SurfacesTest, SayOnceHowManyMessagesOfARunCouldNotBeSent) {
    start();
    lines.clear();
    ports.sentStatus = -11;
    surfaces.engine(SurfaceID::A).touch(3);
    surfaces.reportDropped();
    surfaces.engine(SurfaceID::B).touch(3);
    surfaces.reportDropped();
    EXPECT_THAT(lines, IsEmpty()); // the run goes on
    surfaces.reportDropped();
    surfaces.reportDropped();
    EXPECT_THAT(lines, ElementsAre("⚠️ MIDI: 4 messages dropped"));
    surfaces.announce(SurfaceID::A);
    runtime.runFor(seconds(0.1));
    surfaces.reportDropped();
    surfaces.reportDropped();
    EXPECT_THAT(lines, ElementsAre("⚠️ MIDI: 4 messages dropped", "⚠️ MIDI: 1 message dropped"));
}

TEST_F(SurfacesTest, LetGoOfWhatIsDownAndSendNothingDownAfterwards) {
    start();
    surfaces.engine(SurfaceID::A).touch(3);
    surfaces.hwMute(9, hui::mutePort);
    ports.sent.clear();
    surfaces.letGo();
    const auto releases = ElementsAre("source Lumbrine: B0 0F 03", "source Lumbrine: B0 2F 00",
                                      "source Lumbrine B: B0 0F 01", "source Lumbrine B: B0 2F 02");
    EXPECT_THAT(ports.sent, releases);
    surfaces.engine(SurfaceID::A).touch(4);
    surfaces.hwMute(10, hui::soloPort);
    runtime.runFor(1s);
    EXPECT_THAT(ports.sent, releases);
}

TEST(SurfacesPanSide, IsTurnedBeforeProToolsHearsOfIt) {
    StillRuntime runtime;
    Jobs jobs(runtime);
    ReceiverState state;
    ActivityLog log(jobs, state.published, Bilingual(false), [](const std::string&) {});
    PortRegister ports;
    Surfaces surfaces(runtime, state.published, ports, log);
    surfaces.wire({});
    surfaces.startSurfaces();
    std::vector<std::pair<bool, bool>> sides; // of A and B at each message
    ports.onSent = [&] {
        sides.emplace_back(surfaces.engine(SurfaceID::A).showsRightPan(),
                           surfaces.engine(SurfaceID::B).showsRightPan());
    };
    SurfaceDesk desk(jobs, surfaces);
    for (const SurfaceID surface : {SurfaceID::A, SurfaceID::B})
        desk.flipPanSide(surface);
    EXPECT_THAT(sides, ElementsAre(std::pair(true, false), std::pair(true, false), //
                                   std::pair(true, true), std::pair(true, true)));
}

} // namespace
} // namespace lumbrine
