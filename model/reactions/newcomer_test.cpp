// A client may act before it has said hello and before it was told anything. It loses no move.
#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

using testing::Not;

constexpr auto mutePress = std::to_array<std::uint8_t>({0x01, 0x04, 0x02});
constexpr auto takeOver = std::to_array<std::uint8_t>({0x01, 0x25});

// The displays have names, and no client has been heard yet.
class NewcomerTest : public ModelTest {
protected:
    NewcomerTest() {
        bench.start();
        for (int strip = 0; strip < stripsPerSurface; ++strip) {
            bench.surfaceA.name(strip, "In " + std::to_string(strip));
            bench.surfaceB.name(strip, "Out" + std::to_string(strip));
        }
        bench.run(3s);
        bench.mark();
        bench.lines.clear();
    }

    Lines heardOnA(Duration time = Duration::zero()) {
        bench.run(time);
        return bench.heardOn(bench.surfaceA);
    }

    std::unique_ptr<Phone> phone = bench.phone("192.168.1.7");
    std::unique_ptr<Phone> tablet = bench.phone("192.168.1.8");
};

TEST_F(NewcomerTest, PlaysAFaderWithItsFirstDatagram) {
    phone->send({0x01, 0x01, 0x03, 0x3F, 0xFF});
    phone->send({0x01, 0x01, 0x0B, 0x20, 0x00});
    EXPECT_THAT(heardOnA(), ElementsAre("0ms B0 03 7F", "0ms B0 23 7F"));
    EXPECT_THAT(bench.heardOn(bench.surfaceB), ElementsAre("0ms B0 03 40", "0ms B0 23 00"));
}

TEST_F(NewcomerTest, TouchesWithItsFirstDatagramAndKeepsTheFader) {
    phone->send({0x01, 0x02, 0x05});
    EXPECT_THAT(heardOnA(), ElementsAre("0ms B0 0F 05", "0ms B0 2F 40"));
    bench.run(2s); // it has been told the names
    bench.mark();
    phone->send({0x01, 0x01, 0x05, 0x20, 0x00});
    EXPECT_THAT(heardOnA(), ElementsAre("0ms B0 05 40", "0ms B0 25 00"));
}

TEST_F(NewcomerTest, PressesWithItsFirstDatagram) {
    phone->send(Bytes(mutePress.begin(), mutePress.end()));
    EXPECT_THAT(heardOnA(60ms), ElementsAre("0ms B0 0F 02", "0ms B0 2F 42", "60ms B0 0F 02", "60ms B0 2F 02"));
    EXPECT_THAT(bench.lines, Not(testing::Contains(testing::HasSubstr("Dropped"))));
}

TEST_F(NewcomerTest, TurnsWithItsFirstDatagram) {
    phone->send({0x01, 0x07, 0x03, 0xFF});
    EXPECT_THAT(heardOnA(), ElementsAre("0ms B0 43 01"));
}

TEST_F(NewcomerTest, SeeksAPanWithItsFirstDatagram) {
    phone->send({0x01, 0x09, 0x02, 0x05}); // from where no ring was shown
    EXPECT_THAT(heardOnA(), testing::Each("0ms B0 42 41"));
    EXPECT_TRUE(bench.state().published.strips[2].panSeek);
}

TEST_F(NewcomerTest, SetsAModeWithItsFirstDatagram) {
    phone->send({0x01, 0x0F, 0x02, 0x05});
    EXPECT_THAT(heardOnA(55ms), ElementsAre("0ms B0 0F 02", "0ms B0 2F 44", "50ms B0 0F 18", "50ms B0 2F 45"));
    EXPECT_THAT(bench.lines, Not(testing::Contains(testing::HasSubstr("Dropped"))));
}

TEST_F(NewcomerTest, LosesNoMoveUntilItIsTold) {
    std::size_t moves = 0;
    for (int i = 0; i < 200; ++i) {
        phone->send({0x01, 0x01, 0x03, 0x20, static_cast<std::uint8_t>(i)});
        moves += heardOnA(10ms).size();
    }
    EXPECT_EQ(moves, 400U);
}

TEST_F(NewcomerTest, DoesNothingOnAnotherTrackThanItWasTold) {
    phone->send({0x01, 0x07, 0x00, 0x00});
    bench.run(2s); // it has been told the names
    heardOnA();
    bench.surfaceA.name(2, "Bass");
    world.runtime.sleepFor(1ms); // the main thread, which tells the client, is late
    phone->send(Bytes(mutePress.begin(), mutePress.end()));
    world.runtime.sleepFor(1ms);
    EXPECT_THAT(bench.heardOn(bench.surfaceA), IsEmpty());
}

TEST_F(NewcomerTest, IsNobodyWhoHasBeenInControlBefore) {
    phone->send({0x01, 0x07, 0x00, 0x00});
    bench.run(2s); // it has been told the names
    tablet->send(Bytes(takeOver.begin(), takeOver.end()));
    bench.surfaceA.name(2, "Bass");
    bench.run(1s);
    heardOnA();
    phone->send(Bytes(takeOver.begin(), takeOver.end()));
    phone->send(Bytes(mutePress.begin(), mutePress.end())); // of what it still shows
    EXPECT_THAT(heardOnA(), IsEmpty());
    EXPECT_THAT(bench.takeLines(), testing::Contains("✗ Dropped button press: its track is no longer shown"));
}

} // namespace
} // namespace lumbrine
