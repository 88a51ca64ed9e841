// The model as a whole: what starting it opens and says, its log, and its life and death.
#include "model/testing/model_bench.h"
#include "model/testing/model_test.h"
#include "model/testing/session_columns.h"

namespace lumbrine {
namespace {

TEST(ReceiverModel, SaysWhatItHasOpened) {
    ModelWorld world;
    ModelBench bench(world);
    bench.model->start();
    EXPECT_THAT(bench.takeLines(), ElementsAre("✓ Virtual MIDI 'Lumbrine' + 'Lumbrine B' created (ch 1-8 + 9-16)",
                                               "✓ UDP listening on :52700", "✓ Bonjour advertising: Studio"));
}

TEST(ReceiverModel, SaysItInJapanese) {
    ModelWorld world;
    ModelBench bench(world, {.japanese = true});
    bench.model->start();
    EXPECT_THAT(bench.takeLines(), ElementsAre("✓ 仮想MIDI 'Lumbrine' + 'Lumbrine B' 生成（8ch＋9〜16ch）",
                                               "✓ UDP 受信開始 :52700", "✓ Bonjour 広告: Studio"));
}

TEST(ReceiverModel, OpensNothingBeforeItIsStarted) {
    ModelWorld world;
    ModelBench bench(world);
    bench.run(1s);
    EXPECT_THAT(bench.lines, IsEmpty());
    EXPECT_THAT(bench.computer.published, IsEmpty());
    EXPECT_THAT(bench.surfaceA.presence.takeBytes(), IsEmpty());
}

TEST(ReceiverModel, AnnouncesBothSurfacesThreeTimes) {
    ModelWorld world;
    ModelBench bench(world);
    bench.mark();
    bench.model->start();
    bench.run(1s);
    EXPECT_THAT(bench.surfaceA.presence.take(bench.origin), ElementsAre("0ms FF", "120ms FF", "240ms FF"));
    EXPECT_THAT(bench.surfaceB.presence.take(bench.origin), ElementsAre("0ms FF", "120ms FF", "240ms FF"));
}

TEST(ReceiverModel, AdvertisesItsPortUnderTheComputersName) {
    ModelWorld world;
    ModelBench bench(world, {.variables = {{"QV_PORT", "5000"}}});
    bench.model->start();
    EXPECT_EQ(bench.model->port(), 5000);
    EXPECT_THAT(bench.computer.published, ElementsAre("Studio _lumbrine._udp. local. 5000"));
}

TEST(ReceiverModel, HasANameForAComputerWithoutOne) {
    ModelWorld world;
    ModelBench bench(world);
    bench.computer.name.reset();
    bench.model->start();
    EXPECT_THAT(bench.computer.published, ElementsAre("Lumbrine Mac _lumbrine._udp. local. 52700"));
    EXPECT_EQ(bench.lines.back(), "✓ Bonjour advertising: Lumbrine Mac");
}

TEST(ReceiverModel, AdvertisesNothingWhenToldSo) {
    for (const bool japanese : {false, true}) {
        ModelWorld world;
        ModelBench bench(world, {.japanese = japanese, .variables = {{"QV_NO_BONJOUR", "0"}}});
        bench.model->start();
        EXPECT_THAT(bench.computer.published, IsEmpty());
        EXPECT_EQ(bench.lines.back(), japanese ? "⚠️ Bonjour 広告なし（QV_NO_BONJOUR 実験モード）"
                                               : "⚠️ Bonjour advertising off (QV_NO_BONJOUR experimental mode)");
    }
}

TEST(ReceiverModel, AdvertisesThePortEvenWhenItCannotListen) {
    ModelWorld world;
    ModelBench bench(world);
    world.network.fail("192.168.1.2", VirtualNetwork::Call::bind, 98);
    bench.model->start();
    EXPECT_THAT(bench.takeLines(),
                ElementsAre(testing::_, "✗ UDP failed: bind: Address already in use", "✓ Bonjour advertising: Studio"));
    EXPECT_THAT(bench.computer.published, testing::SizeIs(1));
    bench.run(10s);
}

TEST(ReceiverModel, SaysInJapaneseThatItCannotListen) {
    ModelWorld world;
    ModelBench bench(world, {.japanese = true});
    world.network.fail("192.168.1.2", VirtualNetwork::Call::open, 24);
    bench.model->start();
    EXPECT_EQ(bench.lines.at(1), "✗ UDP 失敗: socket: Too many open files");
}

TEST(ReceiverModel, GoesOnWithoutItsPorts) {
    for (const bool japanese : {false, true}) {
        ModelWorld world;
        ModelBench bench(world, {.japanese = japanese});
        bench.midi.fail(MemoryMIDI::Call::createSource, -10830);
        bench.model->start();
        bench.run(1s);
        EXPECT_EQ(bench.lines.front(), japanese ? "✗ MIDI 失敗: MIDISourceCreate failed: -10830"
                                                : "✗ MIDI failed: MIDISourceCreate failed: -10830");
        EXPECT_THAT(bench.lines, testing::SizeIs(3));
        EXPECT_THAT(bench.surfaceA.presence.takeBytes(), IsEmpty());
        EXPECT_THAT(bench.surfaceB.presence.takeBytes(), IsEmpty());
    }
}

TEST(ReceiverModel, OpensItsPortsWhenTheMIDIServiceIsThereAtLast) {
    for (const bool japanese : {false, true}) {
        ModelWorld world;
        ModelBench bench(world, {.japanese = japanese});
        bench.midi.serviceChanged(true);
        bench.run(1s);
        EXPECT_THAT(bench.lines, IsEmpty()); // it is not started yet
        bench.midi.fail(MemoryMIDI::Call::createClient, -19);
        bench.start();
        bench.midi.fail(MemoryMIDI::Call::createClient, 0);
        bench.mark();
        bench.midi.serviceChanged(true);
        bench.run(1s);
        EXPECT_THAT(bench.takeLines(),
                    ElementsAre(japanese ? "✓ 仮想MIDI 'Lumbrine' + 'Lumbrine B' 生成（8ch＋9〜16ch）"
                                         : "✓ Virtual MIDI 'Lumbrine' + 'Lumbrine B' created (ch 1-8 + 9-16)"));
        EXPECT_THAT(bench.surfaceA.presence.take(bench.origin), ElementsAre("0ms FF", "120ms FF", "240ms FF"));
    }
}

TEST(ReceiverModel, SaysOnceForEachSurfaceThatItsPortsHaveNoIDs) {
    ModelWorld world;
    ModelBench bench(world);
    bench.midi.fail(MemoryMIDI::Call::setUniqueID, -10843);
    bench.model->start();
    bench.run(10s);
    const auto about = [](const char* name) {
        return "⚠️ MIDI: '" + std::string(name) +
               "' has no lasting identity (MIDIObjectSetIntegerProperty failed: -10843); Pro Tools may have to be "
               "given its ports again";
    };
    EXPECT_EQ(std::ranges::count(bench.lines, about("Lumbrine")), 1);
    EXPECT_EQ(std::ranges::count(bench.lines, about("Lumbrine B")), 1);
}

TEST(ReceiverModel, SaysThatTheMIDIServiceIsLostAndBack) {
    for (const bool japanese : {false, true}) {
        ModelWorld world;
        ModelBench bench(world, {.japanese = japanese});
        bench.start();
        bench.midi.serviceChanged(false);
        bench.midi.serviceChanged(true);
        EXPECT_THAT(bench.takeLines(), ElementsAre(japanese ? "⚠️ MIDI サーバー切断" : "⚠️ MIDI server lost",
                                                   japanese ? "✓ MIDI サーバー復帰" : "✓ MIDI server back"));
        bench.model.reset();
        bench.midi.serviceChanged(false);
        EXPECT_THAT(bench.lines, IsEmpty());
    }
}

TEST(ReceiverModel, StartsOnce) {
    ModelWorld world;
    ModelBench bench(world);
    bench.start();
    bench.model->start();
    bench.run(1s);
    EXPECT_THAT(bench.lines, IsEmpty());
    EXPECT_THAT(bench.computer.published, testing::SizeIs(1));
    EXPECT_THAT(bench.surfaceA.presence.takeBytes(), IsEmpty());
}

TEST(ReceiverModel, PublishesTheComputersAddress) {
    ModelWorld world;
    ModelBench bench(world);
    EXPECT_EQ(bench.model->published().localIP, "127.0.0.1");
    bench.model->start();
    EXPECT_EQ(bench.model->published().localIP, "192.168.1.2");
}

TEST(ReceiverModel, PublishesTheLoopbackAddressWithoutAnother) {
    ModelWorld world;
    ModelBench bench(world);
    bench.computer.address.reset();
    bench.model->start();
    EXPECT_EQ(bench.model->published().localIP, "127.0.0.1");
}

TEST(ReceiverModel, ReadsTheAddressAgainWhenTheNetworkMayBeAnotherOne) {
    ModelWorld world;
    ModelBench bench(world);
    bench.model->start();
    EXPECT_FALSE(bench.model->readAddress());
    bench.computer.address = "10.0.0.7";
    EXPECT_TRUE(bench.model->readAddress());
    EXPECT_EQ(bench.model->published().localIP, "10.0.0.7");
    bench.computer.address.reset();
    EXPECT_TRUE(bench.model->readAddress());
    EXPECT_EQ(bench.model->published().localIP, "127.0.0.1");
}

TEST(ReceiverModel, BeginsNeutral) {
    ModelWorld world;
    ModelBench bench(world);
    const PublishedState& published = bench.model->published();
    EXPECT_EQ(published.winW, 8);
    EXPECT_EQ(published.bankOffset, -1);
    EXPECT_FALSE(published.huiConnected);
    EXPECT_FALSE(published.iosConnected);
    EXPECT_EQ(published.iosClientDesc, "");
    EXPECT_TRUE(published.session.empty());
    EXPECT_THAT(published.logLines, IsEmpty());
    EXPECT_THAT(published.strips, testing::Each(testing::Field(&StripState::fader, 0.0)));
    EXPECT_THAT(published.strips, testing::Each(testing::Field(&StripState::name, "")));
}

// ---- The log

TEST(ReceiverModel, KeepsTheLast120LinesOfTheLog) {
    ModelWorld world;
    ModelBench bench(world);
    for (int i = 1; i <= 120; ++i)
        bench.model->appendLog("line " + std::to_string(i));
    EXPECT_EQ(bench.model->published().logLines.front(), "line 1");
    for (int i = 121; i <= 200; ++i) {
        bench.model->appendLog("line " + std::to_string(i));
        EXPECT_THAT(bench.model->published().logLines, testing::SizeIs(120));
    }
    EXPECT_EQ(bench.model->published().logLines.front(), "line 81");
    EXPECT_EQ(bench.model->published().logLines.back(), "line 200");
    EXPECT_THAT(bench.lines, testing::SizeIs(200));
}

TEST(ReceiverModel, TakesLogLinesFromAnyThread) {
    ModelWorld world;
    ModelBench bench(world);
    world.runtime.background(Priority::normal, [&bench] { bench.model->appendLog("from elsewhere"); });
    bench.run(0s);
    EXPECT_THAT(bench.lines, ElementsAre("from elsewhere"));
    EXPECT_THAT(bench.model->published().logLines, ElementsAre("from elsewhere"));
}

TEST(ReceiverModel, PrintsALineOfTheLogBeforeItIsShown) {
    Lines printedWhenShown;
    ModelWorld world;
    ModelBench bench(world);
    bench.model->onChange([&] { printedWhenShown = bench.lines; });
    bench.model->appendLog("one");
    EXPECT_THAT(printedWhenShown, ElementsAre("one"));
}

TEST(ReceiverModel, KeepsTextsFromOutsideToOneLineOf500Bytes) {
    ModelWorld world;
    ModelBench bench(world);
    bench.model->appendLog("✗ the service says:\r\n\x1B[2Jno");
    bench.model->appendLog(std::string(498, 'x') + "ボ");
    bench.model->appendLog(std::string(497, 'x') + "ボ");
    EXPECT_THAT(bench.lines,
                ElementsAre("✗ the service says: [2Jno", std::string(498, 'x'), std::string(497, 'x') + "ボ"));
    EXPECT_EQ(bench.model->published().logLines, bench.lines);
}

TEST(ReceiverModel, TellsItsObserverOfEachChange) {
    ModelWorld world;
    ModelBench bench(world);
    int changes = 0;
    bench.model->onChange([&changes] { ++changes; });
    bench.model->appendLog("one");
    EXPECT_EQ(changes, 1);
    bench.model->appendLog("two");
    EXPECT_EQ(changes, 2);
}

// ---- Life and death

TEST(ReceiverModel, LivesBesideAnotherOne) {
    ModelWorld world;
    ModelBench studio(world);
    ModelBench stage(world, {.address = "192.168.1.3"});
    studio.start();
    stage.start();
    const auto phone = stage.phone("192.168.1.7");
    studio.mark();
    stage.mark();
    phone->send({0x01, 0x01, 0x00, 0x3F, 0xFF});
    stage.run(0s);
    EXPECT_THAT(stage.heardOn(stage.surfaceA), ElementsAre("0ms B0 00 7F", "0ms B0 20 7F"));
    EXPECT_THAT(studio.heardOn(studio.surfaceA), IsEmpty());
    EXPECT_EQ(stage.model->published().strips[0].fader, 1.0);
    EXPECT_EQ(studio.model->published().strips[0].fader, 0.0);
}

TEST(ReceiverModel, MayGoAtAnyMoment) {
    for (int tenths = 0; tenths < 30; ++tenths) {
        ModelWorld world;
        ModelBench bench(world);
        bench.model->start();
        const auto phone = bench.phone("192.168.1.7");
        bench.surfaceA.pingEverySecond();
        bench.surfaceB.pingEverySecond();
        phone->send({0x01, 0x00});
        bench.run(tenths * 100ms);
        phone->send({0x01, 0x0F, 0x02, 0x05}); // SetAutoMode: under way for 0.26 s
        phone->send({0x01, 0x08});             // PanModeToggle: releases are due 60 ms later
        phone->send({0x01, 0x0A, 0x03});       // BankMove: 30 ms
        phone->send({0x01, 0x09, 0x00, 0x0B}); // PanSeek: steps every 35 ms
        bench.run(20ms);
    }
}

TEST(ReceiverModel, IsKeptByAJobThatRunsAndByNoneThatWaits) {
    ModelWorld world;
    ModelBench bench(world);
    bench.start();
    const auto phone = bench.phone("192.168.1.7");
    phone->send({0x01, 0x0F, 0x02, 0x05}); // holds the strip's switch for 0.26 s
    phone->send({0x01, 0x0F, 0x03, 0x05}); // waits behind it
    bench.run(10ms);
    bench.mark();
    const std::weak_ptr<const void> gone = bench.model->lifetime();
    bench.model.reset();
    bench.run(249ms);
    EXPECT_FALSE(gone.expired());
    bench.run(1ms);
    EXPECT_TRUE(gone.expired());
    bench.run(1s);
    EXPECT_THAT(bench.heardOn(bench.surfaceA), ElementsAre("40ms B0 0F 18", "40ms B0 2F 45", "100ms B0 0F 18",
                                                           "100ms B0 2F 05", "250ms B0 0F 02", "250ms B0 2F 04"));
}

} // namespace
} // namespace lumbrine
