// A client that falls silent: what it holds and for how long, and who may follow it.
#include "model/testing/model_test.h"

#include <algorithm>

namespace lumbrine {
namespace {

// With a finger on a fader of each surface.
class SilentClientTest : public OwnedModelTest {
protected:
    // Its last datagram is from the origin; ticks follow at 200 ms, 600 ms and so on.
    SilentClientTest() {
        phone->send({0x01, 0x02, 0x03});
        phone->send({0x01, 0x02, 0x0E});
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
    phone->send({0x01, 0x03, 0x03});
    phone->send({0x01, 0x03, 0x0E});
    settle();
    EXPECT_EQ(onBoth(), at("9800ms", releases));
}

TEST_F(SilentClientTest, For5100MillisecondsHoldsNothingButIsStillTheOwner) {
    bench.run(4999ms);
    EXPECT_EQ(held(), 2u);
    bench.run(1ms); // a tick
    EXPECT_EQ(held(), 0u);
    EXPECT_FALSE(bench.model->published().iosConnected);
    bench.run(100ms);
    phone->send({0x01, 0x01, 0x03, 0x20, 0x00});
    bench.run(300ms);
    EXPECT_THAT(onBoth(), ElementsAre("5100ms B0 03 40", "5100ms B0 23 00")); // and no release
    EXPECT_TRUE(bench.model->published().iosConnected);
    phone->send({0x01, 0x03, 0x03});
    phone->send({0x01, 0x03, 0x0E});
    settle();
    EXPECT_EQ(onBoth(), at("5400ms", releases));
}

TEST_F(SilentClientTest, For6SecondsMakesRoomForAnother) {
    const auto other = bench.phone("192.168.1.8");
    bench.run(5999ms);
    other->send({0x01, 0x02, 0x01});
    settle();
    EXPECT_THAT(other->tape.takeBytes(), ElementsAre("01 7D"));
    bench.run(1ms);
    other->send({0x01, 0x02, 0x01});
    bench.run(2s);
    // The touch of the new owner, and no release of what the old one held a second ago.
    EXPECT_THAT(onBoth(), ElementsAre("6000ms B0 0F 01", "6000ms B0 2F 40", "6200ms B0 0F 01", "6200ms B0 2F 00"));
}

TEST_F(SilentClientTest, IsReleasedWhenAnotherTakesOverInTime) {
    const auto other = bench.phone("192.168.1.8");
    bench.run(4900ms);
    other->send({0x01, 0x25});
    bench.run(5s);
    EXPECT_EQ(onBoth(), at("5000ms", releases)); // with the next tick
    EXPECT_EQ(held(), 0u);
}

TEST_F(SilentClientTest, StillGetsTheStateWith4900MillisecondsOfSilence) {
    bench.run(500ms);
    sendNothing();
    bench.run(4899ms);
    phone->tape.clear();
    bench.run(1ms); // a third tick
    EXPECT_THAT(heard(0x1C), ElementsAre("5400ms 01 1C 00 00 00 00 00 00 00 00"));
}

} // namespace
} // namespace lumbrine
