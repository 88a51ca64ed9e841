// The observer of the published state is called when it changes.
#include "model/testing/banking_host.h"
#include "model/testing/model_test.h"
#include "model/testing/session_columns.h"

namespace lumbrine {
namespace {

class PublishedStateTest : public OwnedModelTest {
protected:
    PublishedStateTest() {
        bench.model->onChange([this] {
            ++changes;
            seen = state.published;
        });
    }
    ~PublishedStateTest() override { bench.model->onChange({}); }

    // Whether that changes anything, itself and what it brings about at the same moment.
    template <typename Event>
    bool isTold(Event event) {
        changes = 0;
        event();
        settle();
        return changes > 0;
    }

    ReceiverState& state = bench.state();
    int changes = 0;
    PublishedState seen; // by somebody who looks only when told
};

TEST_F(PublishedStateTest, IsToldOfWhatProToolsShows) {
    EXPECT_TRUE(isTold([this] { bench.surfaceA.fader(3, 0.5); }));
    EXPECT_TRUE(isTold([this] { bench.surfaceA.name(3, "Kick"); }));
    EXPECT_TRUE(isTold([this] { bench.surfaceA.led(3, 1, true); })); // select
    EXPECT_TRUE(isTold([this] { bench.surfaceA.led(3, 2, true); })); // mute
    EXPECT_TRUE(isTold([this] { bench.surfaceB.led(3, 3, true); })); // solo
    EXPECT_TRUE(isTold([this] { bench.surfaceA.ping(); }));
    EXPECT_TRUE(isTold([this] { bench.surfaceA.ping(); })); // without a line in the log
}

TEST_F(PublishedStateTest, IsToldOfTheClientsMoves) {
    EXPECT_TRUE(isTold([this] { phone->send({0x01, 0x01, 0x03, 0x20, 0x00}); }));
}

TEST_F(PublishedStateTest, IsNotToldOfWhatItDoesNotShow) {
    EXPECT_FALSE(isTold([this] { bench.surfaceA.led(0x0E, 4, true); })); // transport
    EXPECT_FALSE(isTold([this] { bench.surfaceA.ring(2, 6, true); }));
    EXPECT_FALSE(isTold([this] { bench.surfaceA.send({0xA0, 0x00, 0x0C}); })); // meter
    EXPECT_FALSE(isTold([this] { bench.surfaceA.name(3, "    "); }));          // as it was
    EXPECT_FALSE(isTold([this] { bench.surfaceA.led(3, 2, false); }));         // as it was
}

TEST_F(PublishedStateTest, IsToldOfThePosition) {
    bench.setTrackMap({"Kick", "Snr"}, 0);
    EXPECT_TRUE(isTold([this] { bench.parts().bankMap.relocalize(); })); // not found: unknown from now on
    EXPECT_EQ(state.published.bankOffset, -1);
    EXPECT_FALSE(isTold([this] { bench.parts().bankMap.relocalize(); }));
}

TEST_F(PublishedStateTest, IsToldOfEachStepOfASeek) {
    BankingHost host(bench, numbers(20));
    bench.surfaceA.pingEverySecond();
    bench.run(1s);
    bench.setTrackMap(numbers(20), 0);
    settle();
    host.deaf = true;
    bench.parts().seekWorker.seekBank(8);
    bench.run(150ms + 30ms); // a poll may come to its end
    EXPECT_EQ(seen.bankOffset, 8);
}

TEST_F(PublishedStateTest, IsToldOfTheBeginningOfAScanItsMapAndItsEnd) {
    bench.surfaceA.pingEverySecond();
    bench.run(2s);
    BankingHost host(bench, numbers(20));
    bench.parts().calibration.calibrateBanks(true);
    bench.run(150ms); // a poll may come to its end
    EXPECT_TRUE(seen.calibrating());
    ASSERT_TRUE(world.runtime.runUntil([this] { return !state.published.session.empty(); }, 20s));
    EXPECT_EQ(displaysOf(seen.session), numbers(20));
    ASSERT_TRUE(world.runtime.runUntil([this] { return !state.published.calibrating(); }, 20s));
    EXPECT_FALSE(seen.calibrating());
}

TEST_F(PublishedStateTest, IsToldThatAMapIsGoneThoughNoScanBegins) {
    bench.setTrackMap({"a", "b"}, -1);
    state.published.huiConnected = true;
    state.presence.firstPingAt = world.runtime.now();
    state.published.strips[0].name = "x";
    for (int tick = 0; tick < 12; ++tick)
        bench.parts().position.watchStuckPosition();
    EXPECT_FALSE(state.published.calibrating());
    EXPECT_THAT(displaysOf(seen.session), IsEmpty());
}

TEST_F(PublishedStateTest, IsToldOfTheMutesThatEndWithTheLastSolo) {
    bench.surfaceA.led(0, 3, true); // solo
    for (const bool on : {true, false, true})
        bench.surfaceA.led(4, 2, on); // mute
    settle();
    EXPECT_TRUE(seen.strips[4].mute.rawOn);
    bench.surfaceA.led(0, 3, false);
    settle();
    EXPECT_FALSE(seen.strips[4].mute.rawOn);
    EXPECT_FALSE(seen.strips[0].solo);
}

TEST_F(PublishedStateTest, IsToldWhenTheClientHasGone) {
    sendNothing();
    bench.run(4990ms);
    ASSERT_TRUE(state.published.iosConnected);
    EXPECT_TRUE(isTold([this] { bench.run(400ms); })); // its address stays known for another second
    EXPECT_FALSE(state.published.iosConnected);
    EXPECT_NE(state.published.iosClientDesc, "");
    EXPECT_TRUE(isTold([this] { bench.run(900ms); }));
    EXPECT_EQ(state.published.iosClientDesc, "");
}

TEST_F(PublishedStateTest, IsToldWhenProToolsComes) {
    bench.setTrackMap({"Kick"}, 0);
    bench.surfaceA.ping();
    settle();
    EXPECT_TRUE(isTold([this] { bench.run(200ms); })); // the next tick
    EXPECT_TRUE(state.published.huiConnected);
}

TEST_F(PublishedStateTest, IsToldOfAnotherAddress) {
    bench.computer.address = "10.0.0.7";
    EXPECT_TRUE(isTold([this] { bench.model->readAddress(); }));
}

} // namespace
} // namespace lumbrine
