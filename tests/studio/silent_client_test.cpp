// A client that falls silent: what it holds and for how long, and who may follow it.
#include "model/testing/model_test.h"
#include "remote/command_builder.h"
#include "remote/testing/in_words.h"

#include <algorithm>

namespace lumbrine {
namespace {

// With a finger on a fader of each surface.
class SilentClientTest : public OwnedModelTest {
protected:
    // Its last datagram is from the origin; ticks follow at 200 ms, 600 ms and so on.
    SilentClientTest() {
        phone->send(remote::faderTouchCommand(onA));
        phone->send(remote::faderTouchCommand(onB));
        settle();
        markAll();
    }

    Lines onBoth() {
        Lines lines = bench.heardOn(bench.surfaceA);
        for (const std::string& line : bench.heardOn(bench.surfaceB))
            lines.push_back(line);
        return lines;
    }

    std::size_t held() {
        return static_cast<std::size_t>(std::ranges::count(bench.state().published.strips, true, &StripState::touched));
    }

    const Strip onA = *Strip::of(3);
    const Strip onB = *Strip::of(14);
    const Lines releases{"B0 0F 03", "B0 2F 00", "B0 0F 06", "B0 2F 00"};
    static Lines at(const std::string& time, const Lines& bytes) {
        Lines lines;
        for (const std::string& line : bytes)
            lines.push_back(time + " " + line);
        return lines;
    }
};

TEST_F(SilentClientTest, For4900MillisecondsHoldsItsFaders) {
    bool everGone = false;
    bench.model->onChange([&] { everGone |= !bench.model->published().iosConnected; });
    bench.run(4900ms);
    sendNothing();
    bench.run(4900ms);
    EXPECT_THAT(onBoth(), IsEmpty());
    EXPECT_EQ(held(), 2u);
    EXPECT_FALSE(everGone);
    phone->send(remote::faderReleaseCommand(onA));
    phone->send(remote::faderReleaseCommand(onB));
    settle();
    EXPECT_EQ(onBoth(), at("9800ms", releases));
}

TEST_F(SilentClientTest, For5100MillisecondsHoldsNothingButIsStillTheOwner) {
    bench.run(4999ms);
    EXPECT_EQ(held(), 2u);
    bench.run(1ms); // a tick
    EXPECT_EQ(held(), 0u);
    EXPECT_EQ(onBoth(), at("5000ms", releases));
    EXPECT_FALSE(bench.model->published().iosConnected);
    bench.run(100ms);
    phone->send(remote::faderMoveCommand(onA, FaderValue::ofRaw(0x2000)));
    bench.run(300ms);
    EXPECT_THAT(onBoth(), ElementsAre("5100ms B0 03 40", "5100ms B0 23 00"));
    EXPECT_TRUE(bench.model->published().iosConnected);
    phone->send(remote::faderReleaseCommand(onA));
    phone->send(remote::faderReleaseCommand(onB));
    settle();
    EXPECT_EQ(onBoth(), at("5400ms", releases));
}

TEST_F(SilentClientTest, For6SecondsMakesRoomForAnother) {
    const auto other = bench.phone("192.168.1.8");
    bench.run(5999ms);
    EXPECT_EQ(onBoth(), at("5000ms", releases));
    other->send(remote::faderTouchCommand(*Strip::of(1)));
    settle();
    EXPECT_THAT(remote::inWords(other->tape.takeBytes()), ElementsAre("busy"));
    bench.run(1ms);
    other->send(remote::faderTouchCommand(*Strip::of(1)));
    bench.run(2s);
    // The touch of the new owner, and no release of what the old one held more than a second ago.
    EXPECT_THAT(onBoth(), ElementsAre("6000ms B0 0F 01", "6000ms B0 2F 40"));
}

TEST_F(SilentClientTest, IsReleasedWhenAnotherTakesOverInTime) {
    const auto other = bench.phone("192.168.1.8");
    bench.run(4900ms);
    other->send(remote::takeOverCommand());
    bench.run(5s);
    EXPECT_EQ(onBoth(), at("4900ms", releases));
    EXPECT_EQ(held(), 0u);
}

TEST_F(SilentClientTest, StillGetsTheStateWith4900MillisecondsOfSilence) {
    bench.run(500ms);
    sendNothing();
    bench.run(4899ms);
    phone->tape.clear();
    bench.run(1ms); // a third tick
    EXPECT_THAT(remote::inWords(heard(0x1C)), ElementsAre(testing::StartsWith("5400ms automation 1=")));
}

} // namespace
} // namespace lumbrine
