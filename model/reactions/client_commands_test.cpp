// From datagram to MIDI bytes.
#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

class ClientCommandsTest : public OwnedModelTest {
protected:
    Lines heardOnA() { return bench.heardOn(bench.surfaceA); }
    Lines heardOnB() { return bench.heardOn(bench.surfaceB); }
    void send(const Bytes& datagram) {
        phone->send(datagram);
        settle();
    }
    void expectSilence() {
        EXPECT_THAT(heardOnA(), IsEmpty());
        EXPECT_THAT(heardOnB(), IsEmpty());
    }
    TimePoint now() { return world.runtime.now(); }
};

// ---- Faders

TEST_F(ClientCommandsTest, AFaderMoveReachesItsStripAtOnce) {
    send({0x01, 0x01, 0x03, 0x3F, 0xFF});
    EXPECT_THAT(heardOnA(), ElementsAre("0ms B0 03 7F", "0ms B0 23 7F"));
    EXPECT_THAT(heardOnB(), IsEmpty());
    EXPECT_EQ(bench.model->published().strips[3].fader, 1.0);
    EXPECT_EQ(bench.state().published.strips[3].movedByClient, now());
}

TEST_F(ClientCommandsTest, AFaderMoveBeyondTheSeventhStripReachesTheSecondSurface) {
    send({0x01, 0x01, 0x0B, 0x20, 0x00});
    EXPECT_THAT(heardOnA(), IsEmpty());
    EXPECT_THAT(heardOnB(), ElementsAre("0ms B0 03 40", "0ms B0 23 00"));
    EXPECT_EQ(bench.model->published().strips[11].fader, 8192 / 16383.0);
}

TEST_F(ClientCommandsTest, AFaderMoveAboveFullScaleIsPlayedAsFullScale) {
    send({0x01, 0x01, 0x00, 0xFF, 0xFF});
    EXPECT_THAT(heardOnA(), ElementsAre("0ms B0 00 7F", "0ms B0 20 7F"));
}

TEST_F(ClientCommandsTest, ATouchHoldsTheFader) {
    send({0x01, 0x02, 0x05});
    EXPECT_THAT(heardOnA(), ElementsAre("0ms B0 0F 05", "0ms B0 2F 40"));
    EXPECT_TRUE(bench.state().published.strips[5].touched);
    EXPECT_EQ(bench.state().published.strips[5].movedByClient, now());
}

TEST_F(ClientCommandsTest, AReleaseIsAnsweredWithTheFadersPosition) {
    send({0x01, 0x02, 0x0D});
    send({0x01, 0x01, 0x0D, 0x10, 0x00});
    markAll();
    const TimePoint moved = now();
    bench.run(1ms);
    bench.mark();
    send({0x01, 0x03, 0x0D});
    EXPECT_THAT(heardOnB(), ElementsAre("0ms B0 0F 05", "0ms B0 2F 00"));
    EXPECT_FALSE(bench.state().published.strips[13].touched);
    EXPECT_EQ(bench.state().published.strips[13].movedByClient, moved); // letting go is no move
    EXPECT_THAT(heard(0x12), ElementsAre("0ms 01 12 0D 10 00"));
}

TEST_F(ClientCommandsTest, AReleaseIsNotAnsweredWhileTheBanksMove) {
    bench.state().published.banksUsedBy = BankUser::seek;
    send({0x01, 0x03, 0x00});
    EXPECT_THAT(heardOnA(), ElementsAre("0ms B0 0F 00", "0ms B0 2F 00"));
    EXPECT_THAT(heard(0x12), IsEmpty());
}

TEST_F(ClientCommandsTest, AFaderBeyondTheLastStripMovesNothing) {
    for (const std::uint8_t strip : Bytes{0x10, 0x17, 0xFF}) {
        send({0x01, 0x01, strip, 0x3F, 0xFF});
        send({0x01, 0x02, strip});
        send({0x01, 0x03, strip});
        send({0x01, 0x07, strip, 0x01});
    }
    expectSilence();
    EXPECT_THAT(bench.state().published.strips, testing::Each(testing::Field(&StripState::fader, 0.0)));
    EXPECT_THAT(bench.state().published.strips, testing::Each(testing::Field(&StripState::touched, false)));
    EXPECT_THAT(heard(0x12), IsEmpty());
}

// ---- Switches

struct Switch {
    std::uint8_t opcode;
    int port;
};

class StripSwitchTest : public ClientCommandsTest, public testing::WithParamInterface<Switch> {};

TEST_P(StripSwitchTest, IsPressedFor60Milliseconds) {
    const std::string port = std::to_string(GetParam().port);
    send({0x01, GetParam().opcode, 0x02});
    bench.run(59ms);
    EXPECT_THAT(heardOnA(), ElementsAre("0ms B0 0F 02", "0ms B0 2F 4" + port));
    bench.run(1ms);
    EXPECT_THAT(heardOnA(), ElementsAre("60ms B0 0F 02", "60ms B0 2F 0" + port));
    EXPECT_THAT(heardOnB(), IsEmpty());
    EXPECT_THAT(bench.takeLines(), ElementsAre("→ switch zone2 port" + port + " pressed"));
}

TEST_P(StripSwitchTest, IsPressedOnTheSecondSurfaceToo) {
    const std::string port = std::to_string(GetParam().port);
    send({0x01, GetParam().opcode, 0x0F});
    EXPECT_THAT(heardOnB(), ElementsAre("0ms B0 0F 07", "0ms B0 2F 4" + port));
    EXPECT_THAT(heardOnA(), IsEmpty());
    EXPECT_THAT(bench.takeLines(), ElementsAre("[9-16] → switch zone7 port" + port + " pressed"));
}

TEST_P(StripSwitchTest, IsNotPressedBeyondTheLastStrip) {
    send({0x01, GetParam().opcode, 0x10});
    expectSilence();
    EXPECT_THAT(bench.lines, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(ClientCommandsTest, StripSwitchTest,
                         testing::Values(Switch{0x04, 2}, Switch{0x05, 3}, Switch{0x06, 7}, Switch{0x0D, 1}));

// ---- Pan

TEST_F(ClientCommandsTest, AVpotTurnsLeftForNegativeClicks) {
    send({0x01, 0x07, 0x03, 0xFF});
    send({0x01, 0x07, 0x03, 0x05});
    send({0x01, 0x07, 0x0A, 0x80});
    EXPECT_THAT(heardOnA(), ElementsAre("0ms B0 43 01", "0ms B0 43 45"));
    EXPECT_THAT(heardOnB(), ElementsAre("0ms B0 42 3F"));
}

TEST_F(ClientCommandsTest, ThePanSideIsToggledOnBothSurfaces) {
    send({0x01, 0x08});
    bench.run(60ms);
    for (HostEnd* surface : {&bench.surfaceA, &bench.surfaceB})
        EXPECT_THAT(bench.heardOn(*surface),
                    ElementsAre("0ms B0 0F 0B", "0ms B0 2F 42", "60ms B0 0F 0B", "60ms B0 2F 02"));
    EXPECT_THAT(heard(0x15), ElementsAre("0ms 01 15 01"));
    EXPECT_TRUE(bench.model->published().panRight);
    EXPECT_THAT(bench.takeLines(), ElementsAre("→ switch zone11 port2 pressed", "[9-16] → switch zone11 port2 pressed",
                                               "← Pan mode: Pan Right"));
}

TEST_F(ClientCommandsTest, ThePanSideIsToggledBack) {
    send({0x01, 0x08});
    markAll();
    send({0x01, 0x08});
    EXPECT_THAT(heard(0x15), ElementsAre("0ms 01 15 00"));
    EXPECT_EQ(bench.lines.back(), "← Pan mode: Pan Left");
}

TEST_F(ClientCommandsTest, RingsBelongToTheToggledSide) {
    send({0x01, 0x08});
    markAll();
    bench.surfaceA.ring(2, 9, true);
    EXPECT_THAT(heard(0x14), ElementsAre("0ms 01 14 02 01 09 01"));
}

// ---- Banks

TEST_F(ClientCommandsTest, ABankMoveWithoutAMapPressesTheButton) {
    for (const std::uint8_t kind : Bytes{0, 1, 2, 3}) {
        bench.run(1200ms);
        markAll();
        send({0x01, 0x0A, kind});
        bench.run(30ms);
        const std::string port = std::to_string(kind);
        EXPECT_THAT(heardOnA(),
                    ElementsAre("0ms B0 0F 0A", "0ms B0 2F 4" + port, "30ms B0 0F 0A", "30ms B0 2F 0" + port));
    }
    EXPECT_THAT(heardOnB(), IsEmpty());
}

TEST_F(ClientCommandsTest, BankButtonsOfAFormerOwnerAreNotPressedAnyMore) {
    const auto tablet = bench.phone("192.168.1.8");
    for (int tap = 0; tap < 3; ++tap)
        phone->send({0x01, 0x0A, 0x03});
    bench.run(10ms);
    tablet->send({0x01, 0x25});
    bench.run(1s);
    EXPECT_THAT(heardOnA(), ElementsAre("0ms B0 0F 0A", "0ms B0 2F 43", "30ms B0 0F 0A", "30ms B0 2F 03"));
    EXPECT_THAT(bench.lines, testing::Contains("✗ Dropped bank move: another device has taken control"));
}

TEST_F(ClientCommandsTest, ABankMoveOfAnotherKindDoesNothing) {
    bench.state().published.strips[0].mode = 1;
    send({0x01, 0x0A, 0x04});
    send({0x01, 0x0A, 0xFF});
    bench.run(30ms);
    expectSilence();
    EXPECT_EQ(bench.state().published.strips[0].mode, 1);
}

TEST_F(ClientCommandsTest, ABankMoveForgetsWhatBelongedToTheTracksBefore) {
    bench.state().published.strips[9].mode = 1;
    send({0x01, 0x0A, 0x00});
    EXPECT_EQ(bench.state().published.strips[9].mode, 0);
}

TEST_F(ClientCommandsTest, ABankMoveWithAMapIsLeftToTheSeek) {
    bench.setTrackMap({"1", "2", "3", "4", "5", "6", "7", "8", "9"}, 0);
    send({0x01, 0x0A, 0x02});
    bench.run(30ms);
    expectSilence();
}

TEST_F(ClientCommandsTest, ABankMovePressesTheButtonWhenEverythingFits) {
    bench.setTrackMap({"1", "2", "3", "4", "5", "6", "7", "8"}, 0);
    send({0x01, 0x0A, 0x02});
    EXPECT_THAT(heardOnA(), ElementsAre("0ms B0 0F 0A", "0ms B0 2F 42"));
}

TEST_F(ClientCommandsTest, ABankMovePressesTheButtonWhereThePositionIsUnknown) {
    bench.setTrackMap({"1", "2", "3", "4", "5", "6", "7", "8", "9"}, -1);
    send({0x01, 0x0A, 0x02});
    EXPECT_THAT(heardOnA(), ElementsAre("0ms B0 0F 0A", "0ms B0 2F 42"));
}

// ---- The receive thread

TEST_F(ClientCommandsTest, PressesAndMovesDoNotWaitForTheMainThread) {
    for (const Bytes& datagram : std::vector<Bytes>{{0x01, 0x01, 0x03, 0x3F, 0xFF},
                                                    {0x01, 0x02, 0x03},
                                                    {0x01, 0x03, 0x03},
                                                    {0x01, 0x04, 0x03},
                                                    {0x01, 0x05, 0x03},
                                                    {0x01, 0x06, 0x03},
                                                    {0x01, 0x07, 0x03, 0x01},
                                                    {0x01, 0x0D, 0x03}}) {
        phone->send(datagram);
        world.runtime.sleepFor(1ms); // runs no job of the main thread
        EXPECT_THAT(heardOnA(), testing::Not(IsEmpty())) << hex(datagram);
    }
    EXPECT_EQ(bench.model->published().strips[3].fader, 0.0);
    settle();
    EXPECT_EQ(bench.model->published().strips[3].fader, 1.0);
}

TEST_F(ClientCommandsTest, AFaderMoveIsAHandBeforeTheMainThreadKnowsIt) {
    ASSERT_FALSE(bench.state().handsOn(now()));
    phone->send({0x01, 0x01, 0x03, 0x3F, 0xFF});
    world.runtime.sleepFor(1ms); // runs no job of the main thread
    EXPECT_TRUE(bench.state().handsOn(now()));
}

// ---- What is dropped

TEST_F(ClientCommandsTest, ADatagramShorterThanItsMessageIsDropped) {
    for (const Bytes& datagram : std::vector<Bytes>{{0x01, 0x01, 0x03, 0x3F},
                                                    {0x01, 0x02},
                                                    {0x01, 0x03},
                                                    {0x01, 0x04},
                                                    {0x01, 0x07, 0x03},
                                                    {0x01, 0x09, 0x03},
                                                    {0x01, 0x0A},
                                                    {0x01, 0x0F, 0x03}})
        send(datagram);
    EXPECT_THAT(bench.heardBy(*phone), IsEmpty());
    bench.run(100ms);
    expectSilence();
    EXPECT_THAT(bench.lines, IsEmpty());
}

TEST_F(ClientCommandsTest, AReservedOrUnknownOpcodeDoesNothing) {
    for (int opcode = 0x10; opcode <= 0xFF; ++opcode)
        if (opcode < 0x20 || opcode > 0x24) send({0x01, static_cast<std::uint8_t>(opcode), 0, 0, 0, 0, 0, 0});
    EXPECT_THAT(bench.heardBy(*phone), IsEmpty());
    bench.run(100ms);
    expectSilence();
    EXPECT_THAT(bench.lines, IsEmpty());
}

TEST_F(ClientCommandsTest, BytesBehindAMessageAreIgnored) {
    send({0x01, 0x02, 0x05, 0x00, 0x99});
    EXPECT_THAT(heardOnA(), ElementsAre("0ms B0 0F 05", "0ms B0 2F 40"));
}

TEST_F(ClientCommandsTest, RequestsThatNeedProToolsDoNothingWithoutIt) {
    for (const Bytes& datagram : std::vector<Bytes>{{0x01, 0x0B, 0x00, 0x05},
                                                    {0x01, 0x0E, 0x02},
                                                    {0x01, 0x0E, 0x10},
                                                    {0x01, 0x20, 0x01, 0x01, 0x00, 0x02},
                                                    {0x01, 0x21, 0x01, 0x02, 0x00, 0x05, 0x01, 0x00},
                                                    {0x01, 0x22, 0x00, 0x01, 0x00, 0x05},
                                                    {0x01, 0x23, 0x00},
                                                    {0x01, 0x24, 0x00, 0x00, 0x08}})
        send(datagram);
    bench.run(100ms);
    expectSilence();
    EXPECT_THAT(bench.lines, testing::Each(testing::StartsWith("✗ Dropped")));
}

// ---- Signs of life

TEST_F(ClientCommandsTest, EveryDatagramOfTheProtocolIsASignOfLife) {
    const std::vector<Bytes> datagrams{{0x01, 0x00},
                                       {0x01, 0x01, 0x00, 0x00, 0x00},
                                       {0x01, 0x02, 0x00},
                                       {0x01, 0x03, 0x00},
                                       {0x01, 0x04, 0x00},
                                       {0x01, 0x07, 0x00, 0x01},
                                       {0x01, 0x08},
                                       {0x01, 0x09, 0x00, 0x00},
                                       {0x01, 0x0A, 0x09},
                                       {0x01, 0x0B, 0x00, 0x00},
                                       {0x01, 0x0C},
                                       {0x01, 0x0E, 0x00},
                                       {0x01, 0x0F, 0x00, 0x00},
                                       {0x01, 0x20, 0x00, 0x00},
                                       {0x01, 0x21, 0x00, 0x00},
                                       {0x01, 0x22, 0x00, 0x00},
                                       {0x01, 0x23, 0x00},
                                       {0x01, 0x24, 0x00, 0x00, 0x00},
                                       {0x01, 0x25},
                                       {0x01, 0xFF},
                                       {0x01, 0x01}};
    for (const Bytes& datagram : datagrams) {
        bench.run(1ms);
        send(datagram);
        EXPECT_EQ(bench.state().presence.lastUDP.load(), now()) << hex(datagram);
    }
}

TEST_F(ClientCommandsTest, AForeignDatagramIsNoSignOfLife) {
    const TimePoint before = bench.state().presence.lastUDP;
    for (const Bytes& datagram : std::vector<Bytes>{{0x02, 0x00}, {0x00, 0x01, 0x00, 0x00, 0x00}, {0x01}})
        send(datagram);
    EXPECT_EQ(bench.state().presence.lastUDP.load(), before);
}

TEST_F(ClientCommandsTest, ACommandOfAPhoneThatIsNotTheOwnerDoesNothing) {
    const auto other = bench.phone("192.168.1.8");
    other->send({0x01, 0x01, 0x03, 0x3F, 0xFF});
    settle();
    expectSilence();
    EXPECT_THAT(other->tape.takeBytes(), ElementsAre("01 7D"));
}

} // namespace
} // namespace lumbrine
