// Which behaviour each of the client's larger requests starts, from the datagram on.
#include "model/testing/banking_host.h"
#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

// Connected, 20 tracks, the first ones shown. The tick 0.2 s later finds no pings, so that tests are over by then or
// have Pro Tools ping.
class ClientRequestsTest : public OwnedModelTest {
protected:
    ClientRequestsTest() {
        settle();
        bench.setTrackMap(numbers(20), 0);
        state.published.huiConnected = true;
        markAll();
    }

    void send(const Bytes& datagram) {
        phone->send(datagram);
        settle();
    }

    // Runs with Pro Tools and the client there.
    void runConnected(int seconds) {
        bench.surfaceA.pingEverySecond();
        for (int i = 0; i < seconds; ++i) {
            sendNothing();
            bench.run(1s);
        }
    }

    ReceiverState& state = bench.state();
    BankingHost host{bench, numbers(20)};
};

// ---- Banks

TEST_F(ClientRequestsTest, ASeekMovesTheSurfacesToItsTrack) {
    send({0x01, 0x0B, 0x00, 0x09});
    EXPECT_TRUE(state.published.banksUsedBy == BankUser::seek);
    runConnected(2);
    EXPECT_EQ(host.offset, 9);
    EXPECT_EQ(state.published.bankOffset, 9);
}

TEST_F(ClientRequestsTest, ASeekReadsBothBytesOfItsTrack) {
    send({0x01, 0x0B, 0x01, 0x00}); // 256: as far as it goes
    runConnected(2);
    EXPECT_EQ(host.offset, 12);
}

TEST_F(ClientRequestsTest, ARecalibrationReplacesTheMapThatIsThere) {
    send({0x01, 0x0C});
    EXPECT_TRUE(state.published.calibrating());
    EXPECT_THAT(bench.lines, testing::Contains("▶ Scanning all tracks… (PT's display will move briefly)"));
}

TEST_F(ClientRequestsTest, ARecalibrationAsksForTheFullNamesToo) {
    state.published.huiConnected = false;
    state.scripting.ptslWarned = false;
    send({0x01, 0x0C});
    EXPECT_THAT(bench.lines, testing::UnorderedElementsAre(
                                 "Scan: aborted (Pro Tools not connected)",
                                 "Track colors: unavailable (Cannot reach Pro Tools' PTSL (not running or disabled)) → "
                                 "names are read from the screen, no colors shown"));
}

// ---- Groups

TEST_F(ClientRequestsTest, GroupFadersMoveEachMemberToItsValue) {
    send({
        0x01, 0x23, 0x02,       // two entries
        0x00, 0x05, 0x20, 0x00, // track 5: 8192
        0x00, 0x02, 0x3F, 0xFF, // track 2: 16383
    });
    bench.run(60ms);
    EXPECT_THAT(bench.heardOn(bench.surfaceA),
                ElementsAre("0ms B0 0F 02", "0ms B0 2F 40", "0ms B0 02 7F", "0ms B0 22 7F", "30ms B0 0F 02",
                            "30ms B0 2F 00", //
                            "30ms B0 0F 05", "30ms B0 2F 40", "30ms B0 05 40", "30ms B0 25 00", "60ms B0 0F 05",
                            "60ms B0 2F 00"));
}

TEST_F(ClientRequestsTest, AGroupAutomationModePressesItsButtonWithEachMemberHeld) {
    send({
        0x01, 0x20, 0x05, 0x01, // port 5, one member
        0x00, 0x03,             // track 3
    });
    bench.run(110ms);
    EXPECT_THAT(bench.heardOn(bench.surfaceA), ElementsAre("0ms B0 0F 03", "0ms B0 2F 44", "50ms B0 0F 18",
                                                           "50ms B0 2F 45", "110ms B0 0F 18", "110ms B0 2F 05"));
}

TEST_F(ClientRequestsTest, AVisibleRangeIsCapturedFromItsFirstTrackOn) {
    send({0x01, 0x24, 0x00, 0x02, 0x03});
    runConnected(4);
    EXPECT_THAT(bench.lines, testing::Contains("✓ Captured auto/pan for visible range 3–5"));
}

} // namespace
} // namespace lumbrine
