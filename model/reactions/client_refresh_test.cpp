// What a client gets from the periodic tick.
#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

class ClientRefreshTest : public OwnedModelTest {
protected:
    ReceiverState& state = bench.state();

    // The message types of the next tick in their order, repetitions once; meters left out.
    std::string nextTick() {
        phone->tape.clear();
        bench.run(400ms);
        std::string order;
        for (const std::string& message : phone->tape.takeBytes()) {
            const std::string type = message.substr(3, 2);
            if (type != "11" && !order.ends_with(type)) order += (order.empty() ? "" : " ") + type;
        }
        return order;
    }
};

TEST_F(ClientRefreshTest, EveryThirdTickResendsTheState) {
    state.published.strips[2].name = "Gt";
    EXPECT_EQ(nextTick(), "");
    EXPECT_EQ(nextTick(), "13 10 12 14 15 17 18 19 1A 1C");
    sendNothing();
    EXPECT_EQ(nextTick(), "");
    EXPECT_EQ(nextTick(), "");
    EXPECT_EQ(nextTick(), "13 10 12 14 15 17 18 19 1A 1C");
}

TEST_F(ClientRefreshTest, AResendHoldsBackWhatIsInMotion) {
    nextTick();
    state.published.banksUsedBy = BankUser::walk;
    EXPECT_EQ(nextTick(), "13 15");
}

TEST_F(ClientRefreshTest, ChangedSwitchesAreSentInAnyTick) {
    state.published.strips[0].solo = true;
    EXPECT_EQ(nextTick(), "13");
}

TEST_F(ClientRefreshTest, AClientIsServedForFiveSecondsAfterItsLastDatagram) {
    sendNothing();
    settle();
    bench.run(4900ms); // ticks at 200, 600 (resend), ... 4200 (resend), 4600
    state.published.strips[0].solo = true;
    sendNothing();
    settle();
    state.presence.lastUDP = world.runtime.now() - 4900ms;
    EXPECT_EQ(nextTick(), ""); // 5000 ms after the datagram
    state.presence.lastUDP = world.runtime.now() - 4599ms;
    EXPECT_EQ(nextTick(), "13"); // 4999 ms after it
}

TEST_F(ClientRefreshTest, NothingIsSentWithoutAClient) {
    bench.run(6s);
    state.published.strips[0].solo = true;
    phone->tape.clear();
    bench.run(3s);
    EXPECT_THAT(phone->tape.takeBytes(), IsEmpty());
}

// ---- The table

TEST_F(ClientRefreshTest, AChangedTableIsSentWithTheNextResend) {
    bench.setTrackMap({"a", "b"}, 0);
    state.fullTableDirty = true;
    EXPECT_EQ(nextTick(), "");
    EXPECT_EQ(nextTick(), "13 12 14 15 17 18 19 1A 1C 1B");
    EXPECT_FALSE(state.fullTableDirty);
    nextTick();
    nextTick();
    EXPECT_EQ(nextTick(), "13 12 14 15 17 18 19 1A 1C");
}

TEST_F(ClientRefreshTest, ATableWithoutTracksStaysDue) {
    state.fullTableDirty = true;
    nextTick();
    nextTick();
    EXPECT_TRUE(state.fullTableDirty);
}

// ---- Automation modes

class ModePollTest : public ClientRefreshTest {
protected:
    ModePollTest() {
        bench.setTrackMap({"x"}, 0); // so that no scan is due
        bench.surfaceA.pingEverySecond();
        sendNothing();
        bench.run(1500ms); // ticks at 200, 600, 1000, 1400; the one at 1000 has polled strip 0
        markAll();
    }

    // The strips whose AUTO switch was pressed, in order.
    std::string polled() { return polledOn(bench.surfaceA); }
    static std::string polledOn(HostEnd& surface) {
        std::string strips;
        std::string zone;
        for (const std::string& message : surface.tape.takeBytes()) {
            if (message.starts_with("B0 0F")) zone = message.substr(6);
            if (message == "B0 2F 44") strips += (strips.empty() ? "" : " ") + zone;
        }
        return strips;
    }

    void run(Duration duration) {
        for (Duration passed = 0ms; passed < duration; passed += 400ms) {
            sendNothing();
            bench.run(400ms);
        }
    }
};

TEST_F(ModePollTest, OneStripIsAskedEveryThirdTickRoundTheWindow) {
    run(10800ms);
    EXPECT_EQ(polled(), "01 02 03 04 05 06 07 00 01");
}

TEST_F(ModePollTest, TheWiderWindowIsGoneRoundOnBothSurfaces) {
    bench.surfaceB.pingEverySecond();
    run(19200ms);
    EXPECT_EQ(polled(), "01 02 03 04 05 06 07 00");
    EXPECT_EQ(polledOn(bench.surfaceB), "00 01 02 03 04 05 06 07");
}

TEST_F(ModePollTest, NoStripIsAskedWhileTheTransportRunsAndNoneIsSkipped) {
    state.transportPlaying = true;
    run(2400ms);
    EXPECT_EQ(polled(), "");
    state.transportPlaying = false;
    run(1200ms);
    EXPECT_EQ(polled(), "01");
}

TEST_F(ModePollTest, NoStripIsAskedWhileTheBanksMove) {
    state.published.banksUsedBy = BankUser::seek;
    run(2400ms);
    EXPECT_EQ(polled(), "");
}

TEST_F(ModePollTest, NoStripIsAskedWithoutProTools) {
    bench.surfaceA.stopPinging();
    run(2000ms);
    polled();
    run(2400ms);
    EXPECT_EQ(polled(), "");
}

TEST_F(ModePollTest, NoStripIsAskedWithoutAClient) {
    bench.run(6s);
    polled();
    bench.run(5s);
    EXPECT_EQ(polled(), "");
}

} // namespace
} // namespace lumbrine
